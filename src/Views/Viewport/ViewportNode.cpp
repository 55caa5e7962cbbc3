#include "Views/Viewport/ViewportNode.h"

#include "Rendering/RhiError.h"

#include <QQuickWindow>
#include <QSGRendererInterface>

#include <utility>

namespace ostrella {

namespace {

/// The frame without body and flow.
FrameEncoding surroundingsOf(FrameEncoding frame) {
    std::erase_if(frame.draws, [](const DrawCommand& draw) {
        return draw.pipeline != Pipeline::grid && draw.pipeline != Pipeline::ring &&
               draw.pipeline != Pipeline::gizmo;
    });
    return frame;
}

} // namespace

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
    if (!target_ || target_->pixelSize() != picture.pixels || targetSamples_ != picture.samples) {
        // The old one first: a device has to have room for one of them only.
        texture_.set(nullptr);
        target_.reset();
        target_ = std::make_unique<RhiTarget>(rhi_, picture.pixels, picture.samples);
        targetSamples_ = picture.samples;
        texture_.set(&target_->texture());
        setTexture(&texture_);
        hasPicture_ = false;
    }
    setRect(rect);
    waiting_ = std::move(picture);
    markDirty(QSGNode::DirtyMaterial);
}

QRhiCommandBuffer* ViewportNode::redirectedCommands() const {
    return static_cast<QRhiCommandBuffer*>(window_.rendererInterface()->getResource(
        &window_, QSGRendererInterface::RhiRedirectCommandBuffer));
}

QRhiCommandBuffer* ViewportNode::commands() const {
    // What is drawn into a picture of the window has commands of its own.
    if (QRhiCommandBuffer* redirected = redirectedCommands())
        return redirected;
    auto* chain = static_cast<QRhiSwapChain*>(window_.rendererInterface()->getResource(
        &window_, QSGRendererInterface::RhiSwapchainResource));
    return chain != nullptr ? chain->currentFrameCommandBuffer() : nullptr;
}

void ViewportNode::record() {
    QRhiCommandBuffer* buffer = waiting_ ? commands() : nullptr;
    if (buffer == nullptr)
        return;
    Picture picture = *std::exchange(waiting_, std::nullopt);
    try {
        // A picture of the window is asked for once.
        const bool isAlone = redirectedCommands() != nullptr;
        if (isAlone || scene_->bring(*buffer, picture.frame, picture.buffers, bytesPerFrame)) {
            draw(*buffer, picture, picture.frame);
            if (onDrawn)
                onDrawn();
            return;
        }
        if (!hasPicture_)
            draw(*buffer, picture, surroundingsOf(picture.frame));
        waiting_ = std::move(picture);
        if (onUnfinished)
            onUnfinished();
    } catch (const RhiError& error) {
        if (onFailure)
            onFailure(error.what());
    }
}

void ViewportNode::draw(
    QRhiCommandBuffer& commands, const Picture& picture, const FrameEncoding& frame) {
    scene_->render(commands, *target_, frame, picture.buffers, picture.pointScale);
    hasPicture_ = true;
}

} // namespace ostrella
