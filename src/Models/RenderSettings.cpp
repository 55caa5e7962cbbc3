#include "Models/RenderSettings.h"

#include <utility>

namespace ostrella {

RenderSettings::RenderSettings(QObject* parent)
    : QObject(parent), reframeRequestID_(QUuid::createUuid()) {}

void RenderSettings::setWireframe(bool value) {
    wireframe_ = value;
    Q_EMIT wireframeChanged();
}

void RenderSettings::setShowGrid(bool value) {
    showGrid_ = value;
    Q_EMIT showGridChanged();
}

void RenderSettings::setColormapEnabled(bool value) {
    colormapEnabled_ = value;
    Q_EMIT colormapEnabledChanged();
}

void RenderSettings::setStreamlinesEnabled(bool value) {
    streamlinesEnabled_ = value;
    Q_EMIT streamlinesEnabledChanged();
}

void RenderSettings::setVortexEnabled(bool value) {
    vortexEnabled_ = value;
    Q_EMIT vortexEnabledChanged();
}

void RenderSettings::setOrientMode(bool value) {
    orientMode_ = value;
    Q_EMIT orientModeChanged();
}

void RenderSettings::setFlowAnimation(bool value) {
    flowAnimation_ = value;
    Q_EMIT flowAnimationChanged();
}

void RenderSettings::setViewportInsets(const ViewportInsets& value) {
    viewportInsets_ = value;
    Q_EMIT viewportInsetsChanged();
}

void RenderSettings::setReframeRequestID(QUuid value) {
    reframeRequestID_ = value;
    Q_EMIT reframeRequestIDChanged();
}

void RenderSettings::setViewPresetIsCurrent(bool value) {
    viewPresetIsCurrent_ = value;
    Q_EMIT viewPresetIsCurrentChanged();
}

void RenderSettings::requestView(ViewPreset preset) {
    viewPreset_ = preset;
    Q_EMIT viewPresetChanged();
    setViewPresetIsCurrent(true);
    viewPresetRequestID_ = QUuid::createUuid();
    Q_EMIT viewPresetRequestIDChanged();
}

void RenderSettings::requestSnapshot(SnapshotCompletion completion) {
    snapshotCompletion_ = std::move(completion);
    snapshotRequestID_ = QUuid::createUuid();
    Q_EMIT snapshotRequestIDChanged();
}

void RenderSettings::deliverSnapshot(const QImage* image) {
    const SnapshotCompletion completion = std::exchange(snapshotCompletion_, nullptr);
    snapshotRequestID_.reset();
    Q_EMIT snapshotRequestIDChanged();
    if (completion) {
        completion(image);
    }
}

} // namespace ostrella
