#pragma once

#include "Models/IsoSurface.h"
#include "Models/Streamlines.h"
#include "Models/SurfaceField.h"
#include "Models/TriangleMesh.h"
#include "Models/ViewPreset.h"
#include "Rendering/ArcBallCamera.h"
#include "Rendering/CameraPose.h"
#include "Rendering/FrameEncoding.h"
#include "Rendering/GridGeometry.h"
#include "Rendering/ModelPlacement.h"
#include "Rendering/OrientationAxis.h"
#include "Rendering/OrientationRings.h"
#include "Rendering/PreparedModel.h"
#include "Rendering/SceneBuffers.h"
#include "Rendering/SceneContents.h"
#include "Rendering/SceneFrame.h"
#include "Rendering/ScreenProjector.h"
#include "Rendering/Tween.h"

#include <functional>
#include <optional>

namespace ostrella {

/// The scene of the viewport and what a frame of it draws: one model, up to three layers of
/// results, the ground grid, the orientation rings and the gizmo, seen through one camera. It keeps
/// everything in memory and knows no device: RhiScene draws what `encodeScene` says, on whichever
/// device there is. Main thread only.
class MetalRenderer {
public:
    /// Media clock in seconds; handed in so that tests decide what time it is.
    using MediaClock = std::function<double()>;

    explicit MetalRenderer(MediaClock clock);

    // What the glue sets. Angles in radians, points are view points.
    ArcBallCamera camera;
    bool wireframe = false;
    bool glassBeforeRun = true; ///< false: a body without a result is shaded as one with it
    bool showGrid = true;
    bool colormapEnabled = false;
    bool streamlinesEnabled = false;
    bool vortexEnabled = false;
    bool flowAnimation = true;
    bool reduceMotion = false;
    std::optional<Vec3> freeStream = Vec3(1, 0, 0);
    bool orientMode = false;
    std::optional<OrientationAxis> hoveredRing;
    std::optional<OrientationAxis> activeRing;

    Vec3 modelRotation() const { return modelRotation_; }
    /// True, and the grid renewed, if the rotation has changed.
    bool setModelRotation(const Vec3& radians);
    void refreshGrid();

    // Contents.
    void upload(const TriangleMesh& mesh);
    /// The same for a model that was prepared elsewhere, which takes no time; a large one that the
    /// pointer will be over wants its pick tree.
    void upload(const PreparedModel& model);
    void uploadSurface(const SurfaceField& field);
    void uploadStreamlines(const Streamlines& lines);
    void uploadVortex(const IsoSurface& surface);
    /// Drops the model; results stay.
    void clear();
    /// Drops surface, ribbons and vortex.
    void clearResults();

    bool hasModel() const;
    bool hasResult() const;
    const SceneBuffers& buffers() const { return buffers_; }
    const SceneContents& contents() const { return contents_; }
    /// Where the model stands in the world, and its results.
    ModelPlacement placement() const;

    // Framing and tweens.
    void reframe(bool keepOrientation);
    void refitAfterOrienting();
    void applyPreset(ViewPreset preset, bool animated);
    void setInsets(const ViewportInsets& insets);
    void cancelCameraTween() { cameraTween_.reset(); }
    Vec2 lensShift() const { return lensShift_; }

    // Frames.
    /// Pixels and points of the view; a fit that waited for them happens now.
    void drawableSizeWillChange(Vec2 pixels, Vec2 points);
    Vec2 viewportSize() const { return viewportSize_; }
    Vec2 viewSizePoints() const { return viewSizePoints_; }
    float pointScale() const { return pointScale_; }
    /// Moves the tweens to now and gives the frame of the view.
    FrameEncoding draw();
    /// What a frame of this size at this time draws. A snapshot leaves gizmo and rings out.
    FrameEncoding encodeScene(Vec2 pixelSize, double time, bool includeGizmo);
    /// Frames have to follow one another without being asked for.
    bool wantsContinuousRedraw() const;

    // Where the pointer is, in view points from the lower left corner.
    bool modelHit(Vec2 point) const;
    std::optional<OrientationAxis> ringHit(Vec2 point) const;
    std::optional<OrientationRings::Drag> beginRingDrag(OrientationAxis axis, Vec2 point) const;

private:
    /// What the rings' circles were made for.
    struct RingKey {
        Vec3 centre{0.0F};
        float radius = 0;
        bool operator==(const RingKey&) const = default;
    };

    bool hasSurface() const { return contents_.surfaceIndexCount > 0; }
    bool hasRibbons() const { return contents_.ribbonIndexCount > 0; }
    bool hasVortex() const { return contents_.vortexIndexCount > 0; }
    bool flowMoves() const;
    /// The view has been laid out: no side is one point or less.
    bool hasView() const;

    void hold(const PreparedModel& model);

    // Framing: what the camera is to see, and the grid to lie below.
    std::optional<BoundingBox> framingBounds() const;
    BoundingBox gridBounds() const;
    std::optional<float> fitDistance() const;
    Vec2 shiftForInsets() const;
    void snapLensShift();
    Vec2 currentLensShift(double time) const;
    void advanceAnimations(double time);

    // Half the diagonal of the model's own box; rings stand a little outside of it.
    float modelRadius() const;
    float ringRadius() const;
    ScreenProjector projectorNow() const;

    // Passes, in the order of the frame.
    void addUniforms(SceneFrame& frame) const;
    void encodeGrid(SceneFrame& frame) const;
    void encodeBody(SceneFrame& frame) const;
    DrawCommand modelDraw(const SceneFrame& frame) const;
    void encodePreRun(SceneFrame& frame) const;
    void encodeFeatureEdges(SceneFrame& frame, float alpha) const;
    void encodeRibbons(SceneFrame& frame) const;
    void encodeVortex(SceneFrame& frame) const;
    void encodeRings(SceneFrame& frame);
    void encodeGizmo(SceneFrame& frame);

    float flowBodyLength() const;
    RibbonUniforms ribbonUniforms(Vec2 pixelSize, double time) const;
    RingStyle ringStyle(OrientationAxis axis, Vec2 pixelSize) const;
    void renewRings();

    MediaClock clock_;
    double timeOrigin_;
    SceneBuffers buffers_;
    SceneContents contents_;
    PreparedModel model_;
    Vec3 modelRotation_{0.0F};
    std::optional<RingKey> ringKey_;
    Vec2 viewportSize_{1.0F, 1.0F};
    Vec2 viewSizePoints_{0.0F, 0.0F};
    float pointScale_ = 1;
    ViewportInsets insets_;
    std::optional<Tween<CameraPose>> cameraTween_;
    std::optional<Tween<Vec2>> shiftTween_;
    Vec2 lensShift_{0.0F, 0.0F};
    std::optional<bool> pendingFit_; ///< keepOrientation of a fit that waits for the view's size
};

} // namespace ostrella
