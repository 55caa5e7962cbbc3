#pragma once

#include "Rendering/DeviceUniforms.h"
#include "Rendering/FrameEncoding.h"
#include "Rendering/Rhi.h"
#include "Rendering/RhiBuffers.h"
#include "Rendering/RhiPipelines.h"
#include "Rendering/RhiTarget.h"
#include "Rendering/SceneBuffers.h"

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace ostrella {

/// Draws what a frame's encoding says on one device. It holds nothing but copies: after the loss of
/// the device it is thrown away, and another one on a new device draws the same. It must go before
/// its QRhi does.
class RhiScene {
public:
    struct Options {
        /// Draw triangles as a line list even where the device has a line fill mode.
        bool lineLists = false;
    };

    explicit RhiScene(QRhi& rhi) : RhiScene(rhi, Options()) {}
    RhiScene(QRhi& rhi, Options options);
    ~RhiScene();
    RhiScene(const RhiScene&) = delete;
    RhiScene& operator=(const RhiScene&) = delete;

    /// Whether the device can run the scene's functions at all.
    static bool isSupported(QRhi& rhi);

    /// Brings what such a frame draws with to the device, at most about so many bytes of it with
    /// the frame that is being recorded; true once all of it is there. Contents that the scene has
    /// replaced in the meantime are let go of. Throws RhiError where the device has no room.
    bool bring(QRhiCommandBuffer& commands, const FrameEncoding& frame, const SceneBuffers& buffers,
        std::size_t mostBytes);

    /// Records one pass into a frame that is being recorded. What it draws with and was not brought
    /// before comes with it, as a whole. `pointScale` is pixels per point;
    /// `afterwards` (may be null) is carried out behind the pass, and always taken over. Each scene
    /// is to be given the same buffers every time. Throws RhiError where the device has no room.
    void render(QRhiCommandBuffer& commands, RhiTarget& target, const FrameEncoding& frame,
        const SceneBuffers& buffers, float pointScale,
        QRhiResourceUpdateBatch* afterwards = nullptr);

private:
    /// A draw as the device takes it.
    struct Prepared {
        QRhiGraphicsPipeline* pipeline = nullptr;
        QRhiShaderResourceBindings* bindings = nullptr;
        QRhiBuffer* vertices = nullptr; ///< as attributes; null where functions read them
        QRhiBuffer* indices = nullptr;
        quint32 count = 0;
        quint32 instances = 1;
        std::array<quint32, 3> offsets{}; ///< of slots 1, 2 and 3
        PixelRect box;
    };
    /// What functions read by themselves; null for none.
    using Storage = std::pair<QRhiBuffer*, QRhiBuffer*>;

    quint32 quadsOf(const DrawCommand& draw) const;
    bool drawsEdges(const DrawCommand& draw) const;
    void writeUniforms(const FrameEncoding& frame, QSize pixels, float pointScale);
    quint32 writeSlot(const void* bytes, std::size_t size);
    void uploadUniforms(QRhiResourceUpdateBatch& updates);
    void prepare(const DrawCommand& draw, std::size_t number, RhiTarget& target,
        const SceneBuffers& scene, QRhiResourceUpdateBatch& updates);
    void submit(QRhiCommandBuffer& commands, QSize pixels) const;
    QRhiShaderResourceBindings& bindingsFor(const Storage& storage);

    QRhi& rhi_;
    Options options_;
    bool hasLineFill_;
    RhiBuffers buffers_;
    std::optional<RhiPipelines> pipelines_;
    std::unique_ptr<QRhiBuffer> uniforms_;
    std::map<Storage, std::unique_ptr<QRhiShaderResourceBindings>> bindings_;
    std::uint64_t bindingsGeneration_ = 0;

    // Of the frame in hand, kept for their memory.
    std::vector<std::byte> slots_;
    std::vector<quint32> blockOffsets_;
    std::vector<quint32> extraOffsets_; ///< of each draw
    quint32 filledOffset_ = 0;          ///< of the device's block for triangles, and for lines
    quint32 linesOffset_ = 0;
    std::vector<Prepared> prepared_;
};

} // namespace ostrella
