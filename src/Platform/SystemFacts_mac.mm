#include "Platform/SystemFacts.h"

#include "Platform/AppBundle.h"

#import <Foundation/Foundation.h>
#import <Metal/Metal.h>

#include <sys/sysctl.h>

namespace ostrella::SystemFacts {

const PlatformWords& words() {
    return PlatformWords::mac();
}

LogStore::BootFacts bootFacts(const std::optional<std::string>& graphics) {
    LogStore::BootFacts facts;
    facts.version = AppBundle::version();
    const NSOperatingSystemVersion system = NSProcessInfo.processInfo.operatingSystemVersion;
    facts.systemMajor = static_cast<int>(system.majorVersion);
    facts.systemMinor = static_cast<int>(system.minorVersion);
    facts.graphicsLabel = graphics ? *graphics : graphicsLabel();
    return facts;
}

std::string graphicsLabel() {
    const int major =
        static_cast<int>(NSProcessInfo.processInfo.operatingSystemVersion.majorVersion);
    const id<MTLDevice> device = MTLCreateSystemDefaultDevice();
    if (!device) {
        return metalLabel(major, {});
    }
    return metalLabel(major, [device](int family) {
        return static_cast<bool>([device supportsFamily:static_cast<MTLGPUFamily>(family)]);
    });
}

std::optional<std::string> chipName() {
    constexpr const char* key = "machdep.cpu.brand_string";
    std::size_t size = 0;
    if (sysctlbyname(key, nullptr, &size, nullptr, 0) != 0 || size == 0) {
        return std::nullopt;
    }
    std::string name(size, '\0');
    if (sysctlbyname(key, name.data(), &size, nullptr, 0) != 0) {
        return std::nullopt;
    }
    name.resize(name.find('\0') == std::string::npos ? name.size() : name.find('\0'));
    const auto begin = name.find_first_not_of(" \t");
    if (begin == std::string::npos) {
        return std::nullopt;
    }
    return name.substr(begin, name.find_last_not_of(" \t") + 1 - begin);
}

std::optional<std::int64_t> availableCapacity(const std::filesystem::path& path) {
    NSURL* url = [NSURL fileURLWithPath:@(path.c_str())];
    NSNumber* bytes = nil;
    // What the user may fill; the system clears what it can do without to make room for it.
    if (![url getResourceValue:&bytes
                        forKey:NSURLVolumeAvailableCapacityForImportantUsageKey
                         error:nil] ||
        bytes == nil) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(bytes.longLongValue);
}

} // namespace ostrella::SystemFacts
