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
/// in the window. It owns all that the viewport has on the device, and goes with the device: by the
/// time the item hears of that it would be too late. On the thread of the scene graph.
class ViewportNode final : public QObject, public QSGSimpleTextureNode {
public:
    /// What a frame is drawn from.
    struct Picture {
        FrameEncoding frame;
        SceneBuffers buffers;
        QSize pixels;
        float pointScale = 1;
    };

    ViewportNode(QQuickWindow& window, QRhi& rhi);
    ~ViewportNode() override;

    /// The device that draws this window; null where nothing was drawn yet, where the device is
    /// gone, and where Qt draws without one.
    static QRhi* deviceOf(const QQuickWindow& window);

    QRhi& rhi() const { return rhi_; }
    /// The device's copies of the scene, for others that draw it; gone with the node.
    std::weak_ptr<RhiScene> scene() const { return scene_; }

    /// Has this drawn with the window's next frame, and shown in a rectangle of the item.
    void setPicture(Picture picture, const QRectF& rect);

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
    QRhiCommandBuffer* commands() const;

    QQuickWindow& window_;
    QRhi& rhi_;
    Texture texture_;
    std::unique_ptr<RhiTarget> target_;
    std::shared_ptr<RhiScene> scene_;
    std::optional<Picture> waiting_; ///< for the window's next frame
};

} // namespace ostrella
