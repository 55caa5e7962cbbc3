#include "Views/GraphicsChoice.h"

#include "Models/PlatformWords.h"
#include "Rendering/OffscreenDevice.h"

#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QSurfaceFormat>

namespace ostrella {

namespace {

QSGRendererInterface::GraphicsApi apiOf(OffscreenDevice::Backend backend) {
    switch (backend) {
    case OffscreenDevice::Backend::vulkan:
        return QSGRendererInterface::Vulkan;
    case OffscreenDevice::Backend::metal:
        return QSGRendererInterface::Metal;
    case OffscreenDevice::Backend::openGL:
        break;
    }
    return QSGRendererInterface::OpenGL;
}

} // namespace

void GraphicsChoice::prepare() {
    // Scene and window are drawn where events are dealt with: no state is ever seen half changed,
    // and pictures can be taken at any time.
    qputenv("QSG_RENDER_LOOP", "basic");
    QSurfaceFormat format;
    format.setVersion(4, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setDepthBufferSize(24);
    format.setStencilBufferSize(8);
    QSurfaceFormat::setDefaultFormat(format);
}

bool GraphicsChoice::settle() {
    if (qEnvironmentVariableIsSet("QSG_RHI_BACKEND") ||
        qEnvironmentVariableIsSet("QT_QUICK_BACKEND"))
        return true;
    for (const OffscreenDevice::Backend backend : OffscreenDevice::candidates()) {
        if (OffscreenDevice::create(backend)) {
            QQuickWindow::setGraphicsApi(apiOf(backend));
            return true;
        }
    }
    return false;
}

std::optional<std::string> GraphicsChoice::label(
    QSGRendererInterface::GraphicsApi api, const PlatformWords& words) {
    switch (api) {
    case QSGRendererInterface::OpenGL:
        return "OpenGL";
    case QSGRendererInterface::Vulkan:
        return "Vulkan";
    case QSGRendererInterface::Metal:
        return std::nullopt;
    default:
        return std::string(words.noGraphicsDevice);
    }
}

std::optional<std::string> GraphicsChoice::label(const PlatformWords& words) {
    return label(QQuickWindow::graphicsApi(), words);
}

} // namespace ostrella
