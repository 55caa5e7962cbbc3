#include "golden/GoldenDevice.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

#include <cstdio>
#include <string_view>

namespace ostrella {

GoldenDevice& GoldenDevice::current() {
    static GoldenDevice golden;
    return golden;
}

} // namespace ostrella

/// Runs all tests on one back end. Without a device every one of them would say nothing, so that is
/// a failure.
int main(int argc, char** argv) {
    using ostrella::GoldenDevice;
    using ostrella::OffscreenDevice;
    testing::InitGoogleTest(&argc, argv);
    QGuiApplication application(argc, argv);
    GoldenDevice& golden = GoldenDevice::current();
    golden.name = QStringLiteral("opengl");
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument(argv[i]);
        if (argument == "--update")
            golden.update = true;
        else if (argument.starts_with("--backend="))
            golden.name = QString::fromUtf8(argv[i] + std::string_view("--backend=").size());
    }
    const bool isVulkan = golden.name == QStringLiteral("vulkan");
    golden.backend = isVulkan ? OffscreenDevice::Backend::vulkan : OffscreenDevice::Backend::openGL;
    if (golden.name == QStringLiteral("metal"))
        golden.backend = OffscreenDevice::Backend::metal;
    golden.other = isVulkan ? QStringLiteral("opengl") : QStringLiteral("vulkan");
    golden.device = OffscreenDevice::create(golden.backend);
    if (!golden.device) {
        std::fprintf(stderr, "there is no %s device to draw with\n", qPrintable(golden.name));
        return 2;
    }
    std::printf("drawing with %s\n", golden.device->description().c_str());
    const int result = RUN_ALL_TESTS();
    golden.device.reset();
    return result;
}
