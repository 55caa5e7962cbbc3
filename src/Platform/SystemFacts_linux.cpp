#include "Platform/SystemFacts.h"

#include "Platform/AppBundle.h"

#include <dlfcn.h>
#include <sys/utsname.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <limits>
#include <sstream>
#include <system_error>

namespace ostrella::SystemFacts {

namespace {

/// Whether OpenGL can be had: EGL, the door that needs no window system, opens on its default
/// display or on the one that draws into memory.
bool hasOpenGL() {
    // Never unloaded: drivers leave threads, thread-local values and memory of their own behind.
    void* const egl = dlopen("libEGL.so.1", RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
    if (!egl) {
        return false;
    }
    using GetPlatformDisplay = void* (*)(unsigned, void*, const std::intptr_t*);
    using Initialize = unsigned (*)(void*, int*, int*);
    using Terminate = unsigned (*)(void*);
    const auto getPlatformDisplay =
        reinterpret_cast<GetPlatformDisplay>(dlsym(egl, "eglGetPlatformDisplay"));
    const auto initialize = reinterpret_cast<Initialize>(dlsym(egl, "eglInitialize"));
    const auto terminate = reinterpret_cast<Terminate>(dlsym(egl, "eglTerminate"));
    if (!getPlatformDisplay || !initialize || !terminate) {
        return false;
    }
    constexpr unsigned surfacelessPlatform = 0x31DD; // EGL_PLATFORM_SURFACELESS_MESA
    void* const display = getPlatformDisplay(surfacelessPlatform, nullptr, nullptr);
    if (!display || !initialize(display, nullptr, nullptr)) {
        return false;
    }
    terminate(display);
    return true;
}

} // namespace

const PlatformWords& words() {
    return PlatformWords::freedesktop();
}

LogStore::BootFacts bootFacts(const std::optional<std::string>& graphics) {
    LogStore::BootFacts facts;
    facts.version = AppBundle::version();
    utsname system{};
    if (uname(&system) == 0) {
        std::sscanf(system.release, "%d.%d", &facts.systemMajor, &facts.systemMinor);
    }
    facts.graphicsLabel = graphics ? *graphics : graphicsLabel();
    return facts;
}

std::string graphicsLabel() {
    return hasOpenGL() ? "OpenGL" : std::string(words().noGraphicsDevice);
}

std::optional<std::string> chipName() {
    std::ifstream file("/proc/cpuinfo");
    std::ostringstream text;
    text << file.rdbuf();
    return chipNameIn(text.str());
}

std::optional<std::int64_t> availableCapacity(const std::filesystem::path& path) {
    std::error_code failure;
    const auto space = std::filesystem::space(path, failure);
    if (failure || space.available > std::numeric_limits<std::int64_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(space.available);
}

} // namespace ostrella::SystemFacts
