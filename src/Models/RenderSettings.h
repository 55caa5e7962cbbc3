#pragma once

#include "Models/ViewPreset.h"

#include <QObject>
#include <QUuid>

#include <functional>
#include <optional>

class QImage;

namespace ostrella {

/// What the user interface tells the viewport: display toggles, margins, and the requests for a
/// view, a reframe or a snapshot. Main thread only; a setter notifies at every set.
class RenderSettings : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool wireframe READ wireframe WRITE setWireframe NOTIFY wireframeChanged)
    Q_PROPERTY(bool showGrid READ showGrid WRITE setShowGrid NOTIFY showGridChanged)
    Q_PROPERTY(bool colormapEnabled READ colormapEnabled WRITE setColormapEnabled NOTIFY
            colormapEnabledChanged)
    Q_PROPERTY(bool streamlinesEnabled READ streamlinesEnabled WRITE setStreamlinesEnabled NOTIFY
            streamlinesEnabledChanged)
    Q_PROPERTY(
        bool vortexEnabled READ vortexEnabled WRITE setVortexEnabled NOTIFY vortexEnabledChanged)
    Q_PROPERTY(bool orientMode READ orientMode WRITE setOrientMode NOTIFY orientModeChanged)
    Q_PROPERTY(
        bool flowAnimation READ flowAnimation WRITE setFlowAnimation NOTIFY flowAnimationChanged)
    Q_PROPERTY(QUuid reframeRequestID READ reframeRequestID WRITE setReframeRequestID NOTIFY
            reframeRequestIDChanged)
    Q_PROPERTY(bool viewPresetIsCurrent READ viewPresetIsCurrent WRITE setViewPresetIsCurrent NOTIFY
            viewPresetIsCurrentChanged)

public:
    /// Receives the picture, or null where none could be made.
    using SnapshotCompletion = std::function<void(const QImage*)>;

    explicit RenderSettings(QObject* parent = nullptr);

    bool wireframe() const { return wireframe_; }
    bool showGrid() const { return showGrid_; }
    bool colormapEnabled() const { return colormapEnabled_; }
    bool streamlinesEnabled() const { return streamlinesEnabled_; }
    bool vortexEnabled() const { return vortexEnabled_; }
    bool orientMode() const { return orientMode_; }
    bool flowAnimation() const { return flowAnimation_; }
    const ViewportInsets& viewportInsets() const { return viewportInsets_; }
    /// A change asks the viewport to reframe.
    QUuid reframeRequestID() const { return reframeRequestID_; }
    ViewPreset viewPreset() const { return viewPreset_; }
    /// A change asks the viewport to take the preset's view; absent until the first request.
    const std::optional<QUuid>& viewPresetRequestID() const { return viewPresetRequestID_; }
    /// False once the user has orbited away from the preset.
    bool viewPresetIsCurrent() const { return viewPresetIsCurrent_; }
    /// A change asks for a snapshot; absent where none is pending.
    const std::optional<QUuid>& snapshotRequestID() const { return snapshotRequestID_; }

    void setWireframe(bool value);
    void setShowGrid(bool value);
    void setColormapEnabled(bool value);
    void setStreamlinesEnabled(bool value);
    void setVortexEnabled(bool value);
    void setOrientMode(bool value);
    void setFlowAnimation(bool value);
    void setViewportInsets(const ViewportInsets& value);
    void setReframeRequestID(QUuid value);
    void setViewPresetIsCurrent(bool value);

    /// Asks for a view, also for the one already shown.
    void requestView(ViewPreset preset);
    /// Asks for a picture of the viewport. A pending request is dropped without a call.
    void requestSnapshot(SnapshotCompletion completion);
    /// Ends the pending request: its receiver is called once with the picture.
    void deliverSnapshot(const QImage* image);

Q_SIGNALS:
    void wireframeChanged();
    void showGridChanged();
    void colormapEnabledChanged();
    void streamlinesEnabledChanged();
    void vortexEnabledChanged();
    void orientModeChanged();
    void flowAnimationChanged();
    void viewportInsetsChanged();
    void reframeRequestIDChanged();
    void viewPresetChanged();
    void viewPresetRequestIDChanged();
    void viewPresetIsCurrentChanged();
    void snapshotRequestIDChanged();

private:
    bool wireframe_ = false;
    bool showGrid_ = true;
    bool colormapEnabled_ = false;
    bool streamlinesEnabled_ = false;
    bool vortexEnabled_ = false;
    bool orientMode_ = false;
    bool flowAnimation_ = true;
    ViewportInsets viewportInsets_;
    QUuid reframeRequestID_;
    ViewPreset viewPreset_ = ViewPreset::iso;
    std::optional<QUuid> viewPresetRequestID_;
    bool viewPresetIsCurrent_ = true;
    std::optional<QUuid> snapshotRequestID_;
    SnapshotCompletion snapshotCompletion_;
};

} // namespace ostrella
