#include "Platform/DisplayProbe.h"

#include "Platform/FileDescriptor.h"
#include "Platform/VirtualDisplay.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <sys/socket.h>
#include <sys/un.h>

namespace ostrella {

#ifndef __APPLE__

namespace {

namespace fs = std::filesystem;

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

bool takesConnections(const fs::path& socketFile) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string& name = socketFile.native();
    if (name.size() >= sizeof address.sun_path) {
        return false;
    }
    std::copy(name.begin(), name.end(), address.sun_path);
    const FileDescriptor connection(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    return connection.get() >= 0 &&
           ::connect(
               connection.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

bool waylandAnswers() {
    const std::string display = variable("WAYLAND_DISPLAY");
    if (display.empty()) {
        return false;
    }
    // An absolute name stands for itself.
    return takesConnections(fs::path(variable("XDG_RUNTIME_DIR")) / display);
}

} // namespace

#endif

bool DisplayProbe::canShowWindows() {
#ifdef __APPLE__
    return true;
#else
    return !variable("QT_QPA_PLATFORM").empty() || waylandAnswers() ||
           (!variable("DISPLAY").empty() && VirtualDisplay::anotherAnswers());
#endif
}

} // namespace ostrella
