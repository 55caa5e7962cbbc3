#pragma once

#include <functional>
#include <memory>

class QWindow;

namespace ostrella {

/// Tells whether other windows hide a window altogether, where the window system tells that apart
/// from a window that is not on the screen. On X11 it does unless a compositor draws the screen,
/// which keeps even what is hidden; elsewhere the window counts as not exposed, and never as
/// covered. Main thread only; the window outlives this.
class WindowCover {
public:
    /// `onChange` is called when the answer has changed.
    WindowCover(QWindow& window, std::function<void()> onChange);
    ~WindowCover();
    WindowCover(const WindowCover&) = delete;
    WindowCover& operator=(const WindowCover&) = delete;

    bool isCovered() const;

private:
    class Watch;
    std::unique_ptr<Watch> watch_;
};

} // namespace ostrella
