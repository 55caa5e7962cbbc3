#include "Views/Viewport/ViewportNode.h"

#include "Rendering/RhiError.h"

#include <QQuickWindow>
#include <QSGRendererInterface>

#include <utility>

namespace ostrella {

QSize ViewportNode::Texture::textureSize() const {
    return texture_ != nullptr ? texture_->pixelSize() : QSize();
}

ViewportNode::ViewportNode(QQuickWindow& window, QRhi& rhi)
    : window_(window), rhi_(rhi), scene_(std::make_shared<RhiScene>(rhi)) {
    setOwnsTexture(false);
    // One texel is one pixel.
    setFiltering(QSGTexture::Nearest);
    if (rhi.isYUpInFramebuffer())
        setTextureCoordinatesTransform(MirrorVertically);
    connect(
        &window, &QQuickWindow::beforeRendering, this, [this] { record(); }, Qt::DirectConnection);
}

ViewportNode::~ViewportNode() = default;

QRhi* ViewportNode::deviceOf(const QQuickWindow& window) {
    QSGRendererInterface* interface = window.rendererInterface();
    if (interface == nullptr || !QSGRendererInterface::isApiRhiBased(interface->graphicsApi()))
        return nullptr;
    return static_cast<QRhi*>(interface->getResource(
        const_cast<QQuickWindow*>(&window), QSGRendererInterface::RhiResource));
}

void ViewportNode::setPicture(Picture picture, const QRectF& rect) {
    if (!target_ || target_->pixelSize() != picture.pixels) {
        // The old one first: a device has to have room for one of them only.
        texture_.set(nullptr);
        target_.reset();
        target_ = std::make_unique<RhiTarget>(rhi_, picture.pixels);
        texture_.set(&target_->texture());
        setTexture(&texture_);
    }
    setRect(rect);
    waiting_ = std::move(picture);
    markDirty(QSGNode::DirtyMaterial);
}

QRhiCommandBuffer* ViewportNode::commands() const {
    QSGRendererInterface* interface = window_.rendererInterface();
    // What is drawn into a picture of the window has commands of its own.
    using Resource = QSGRendererInterface;
    if (auto* redirected = static_cast<QRhiCommandBuffer*>(
            interface->getResource(&window_, Resource::RhiRedirectCommandBuffer)))
        return redirected;
    auto* chain = static_cast<QRhiSwapChain*>(
        interface->getResource(&window_, Resource::RhiSwapchainResource));
    return chain != nullptr ? chain->currentFrameCommandBuffer() : nullptr;
}

void ViewportNode::record() {
    QRhiCommandBuffer* buffer = waiting_ ? commands() : nullptr;
    if (buffer == nullptr)
        return;
    const Picture picture = *std::exchange(waiting_, std::nullopt);
    try {
        scene_->render(*buffer, *target_, picture.frame, picture.buffers, picture.pointScale);
    } catch (const RhiError& error) {
        if (onFailure)
            onFailure(error.what());
    }
}

} // namespace ostrella
