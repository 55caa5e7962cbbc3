#pragma once

#include "Rendering/FrameEncoding.h"
#include "Rendering/Rhi.h"
#include "Rendering/RhiScene.h"
#include "Rendering/RhiTarget.h"
#include "Rendering/SceneBuffers.h"

#include <QObject>
#include <QSGSimpleTextureNode>
#include <QSGTexture>

#include <functional>
#include <memory>
#include <optional>
#include <string>

class QQuickWindow;

namespace ostrella {

/// Draws the viewport's scene into a texture of its own ahead of the window's pass, and shows that
/// in the window. What a large scene draws with comes to the device over several frames, so that
/// none of them takes long: until it is there as a whole, the picture before stays, or where there
/// is none, the surroundings come without body and flow. It owns all that the viewport has on the
/// device, and goes with the device: by the time the item hears of that it would be too late. On
/// the thread of the scene graph.
class ViewportNode final : public QObject, public QSGSimpleTextureNode {
public:
    /// What a frame is drawn from.
    struct Picture {
        FrameEncoding frame;
        SceneBuffers buffers;
        QSize pixels;
        float pointScale = 1;
        int samples = RhiTarget::preferredSamples; ///< a pixel, at most
    };

    ViewportNode(QQuickWindow& window, QRhi& rhi);
    ~ViewportNode() override;

    /// The device that draws this window; null where nothing was drawn yet, where the device is
    /// gone, and where Qt draws without one.
    static QRhi* deviceOf(const QQuickWindow& window);

    QRhi& rhi() const { return rhi_; }
    /// The device's copies of the scene, for others that draw it; gone with the node.
    std::weak_ptr<RhiScene> scene() const { return scene_; }

    /// Bytes that come to the device with one frame.
    static constexpr std::size_t bytesPerFrame = std::size_t(16) << 20;

    /// Has this drawn with the window's next frame, or if it takes longer with one of those that
    /// follow, and shown in a rectangle of the item. It takes the place of one that is on its way.
    void setPicture(Picture picture, const QRectF& rect);

    /// Called when a picture has been drawn.
    std::function<void()> onDrawn;
    /// Called when a picture wants another frame of the window. Still within this one.
    std::function<void()> onUnfinished;
    /// Called with what went wrong when the device had no room for a frame.
    std::function<void(const std::string&)> onFailure;

private:
    /// The target's texture as the scene graph takes it.
    class Texture final : public QSGTexture {
    public:
        void set(QRhiTexture* texture) { texture_ = texture; }

        qint64 comparisonKey() const override { return qint64(quintptr(texture_)); }
        QRhiTexture* rhiTexture() const override { return texture_; }
        QSize textureSize() const override;
        bool hasAlphaChannel() const override { return false; }
        bool hasMipmaps() const override { return false; }

    private:
        QRhiTexture* texture_ = nullptr;
    };

    void record();
    void draw(QRhiCommandBuffer& commands, const Picture& picture, const FrameEncoding& frame);
    /// That of the window's picture of itself, if one is being made; null if not.
    QRhiCommandBuffer* redirectedCommands() const;
    QRhiCommandBuffer* commands() const;

    QQuickWindow& window_;
    QRhi& rhi_;
    Texture texture_;
    std::unique_ptr<RhiTarget> target_;
    int targetSamples_ = 0; ///< that it was asked for
    std::shared_ptr<RhiScene> scene_;
    std::optional<Picture> waiting_; ///< for the window's next frame
    bool hasPicture_ = false;        ///< in the target, as large as it is now
};

} // namespace ostrella
