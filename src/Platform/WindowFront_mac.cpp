#include "Platform/WindowFront.h"

namespace ostrella {

bool WindowFront::ask(QWindow&) {
    return false;
}

} // namespace ostrella
