#pragma once

#include "Models/Vector.h"

namespace ostrella {

/// The region around the body in which streamlines and vortices are looked for. The stream runs
/// along +x.
struct StreamlineFocus {
    Vec3 center{0.0F};             ///< centre of the body's box, m
    Vec3 size{0.0F};               ///< edge lengths of the body's box, m
    bool isVolumetric = false;     ///< seeds form a plane of rows and columns, else one column
    float upstreamFactor = 0.0F;   ///< from the leading face to the seeds, in body lengths
    float downstreamFactor = 0.0F; ///< from the trailing face to the lines' limit, in body lengths

    /// The focus of a body with this box; volumetric where the box is not flat in z.
    static StreamlineFocus around(const Vec3& boundingMin, const Vec3& boundingMax,
        float upstreamFactor, float downstreamFactor);

    /// The largest edge of the box, m.
    float largestExtent() const;
    /// The length of the body along the stream, m: at least a quarter of its largest extent.
    float bodyLength() const;
    /// From the seeds to the lines' limit, m.
    float pathLength() const;
    /// Half the edge of the cube around the centre outside which points have no say, m.
    float cropHalfWidth() const;

    bool operator==(const StreamlineFocus&) const = default;
};

} // namespace ostrella
