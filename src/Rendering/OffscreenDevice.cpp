#include "Rendering/OffscreenDevice.h"

#include "Models/Precondition.h"
#include "Rendering/RhiScene.h"

#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QSurfaceFormat>
#if QT_CONFIG(vulkan)
#include <QVulkanInstance>
#endif

namespace ostrella {

namespace {

/// Whether the platform that the application runs on can give devices at all: those without a
/// display fail in the middle of the attempt rather than at its beginning.
bool platformHasDevices() {
    const QString platform = QGuiApplication::platformName();
    return platform != QStringLiteral("minimal") && platform != QStringLiteral("offscreen") &&
           platform != QStringLiteral("vnc") && platform != QStringLiteral("linuxfb");
}

#if QT_CONFIG(vulkan)
/// The one Vulkan instance of all devices, null where there is none. The interface remembers the
/// last one of the process in places that outlive the device it was given for, so it stays as long
/// as the application.
QVulkanInstance* sharedVulkanInstance() {
    static std::unique_ptr<QVulkanInstance> instance;
    if (!instance) {
        auto made = std::make_unique<QVulkanInstance>();
        made->setExtensions(QRhiVulkanInitParams::preferredInstanceExtensions());
        if (!made->create())
            return nullptr;
        instance = std::move(made);
        qAddPostRoutine([] { instance.reset(); });
    }
    return instance.get();
}
#endif

} // namespace

OffscreenDevice::OffscreenDevice() = default;
OffscreenDevice::~OffscreenDevice() = default;

std::vector<OffscreenDevice::Backend> OffscreenDevice::candidates() {
#if defined(Q_OS_MACOS)
    return {Backend::metal};
#else
    std::vector<Backend> all;
#if QT_CONFIG(opengl)
    all.push_back(Backend::openGL);
#endif
#if QT_CONFIG(vulkan)
    all.push_back(Backend::vulkan);
#endif
    return all;
#endif
}

std::unique_ptr<OffscreenDevice> OffscreenDevice::create(Backend backend) {
    precondition(qGuiApp != nullptr, "devices come from an application with a display");
    std::unique_ptr<OffscreenDevice> device(new OffscreenDevice);
    if (!platformHasDevices())
        return nullptr;
    switch (backend) {
    case Backend::openGL: {
#if QT_CONFIG(opengl)
        QSurfaceFormat format;
        format.setVersion(4, 3);
        format.setProfile(QSurfaceFormat::CoreProfile);
        format.setDepthBufferSize(24);
        format.setStencilBufferSize(8);
        device->surface_.reset(QRhiGles2InitParams::newFallbackSurface(format));
        QRhiGles2InitParams params;
        params.format = format;
        params.fallbackSurface = device->surface_.get();
        device->rhi_.reset(QRhi::create(QRhi::OpenGLES2, &params));
#endif
        break;
    }
    case Backend::vulkan: {
#if QT_CONFIG(vulkan)
        QRhiVulkanInitParams params;
        params.inst = sharedVulkanInstance();
        if (params.inst == nullptr)
            return nullptr;
        device->rhi_.reset(QRhi::create(QRhi::Vulkan, &params));
#endif
        break;
    }
    case Backend::metal: {
#if defined(Q_OS_MACOS)
        QRhiMetalInitParams params;
        device->rhi_.reset(QRhi::create(QRhi::Metal, &params));
#endif
        break;
    }
    }
    if (!device->rhi_ || !RhiScene::isSupported(*device->rhi_))
        return nullptr;
    return device;
}

std::unique_ptr<OffscreenDevice> OffscreenDevice::create() {
    for (const Backend backend : candidates()) {
        if (auto device = create(backend))
            return device;
    }
    return nullptr;
}

std::string OffscreenDevice::description() const {
    const QByteArray name = rhi_->driverInfo().deviceName;
    return std::string(rhi_->backendName()) + " · " + name.toStdString();
}

} // namespace ostrella
