#include "Platform/WindowCover.h"

namespace ostrella {

/// The system does not expose a window that is covered: there is nothing to watch.
class WindowCover::Watch {};

WindowCover::WindowCover(QWindow&, std::function<void()>) {}

WindowCover::~WindowCover() = default;

bool WindowCover::isCovered() const {
    return false;
}

} // namespace ostrella
