#pragma once

#include "Models/RunState.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

namespace ostrella {

/// Small readers for what the mesher and the solver leave behind besides the flow results. Each
/// answers with nothing where it finds nothing.
namespace SU2Output {

using StopReason = ostrella::StopReason;

/// The counts at the head of a SU2 mesh file.
struct MeshHeader {
    /// 2 or 3.
    int dimensions = 0;
    /// Number of volume elements.
    std::int64_t elements = 0;

    bool operator==(const MeshHeader&) const = default;
};

/// The first counts within the first 64 KiB of a mesh file; nothing unless both are there.
std::optional<MeshHeader> readMeshHeader(const std::filesystem::path& path);

/// Why the solver stopped, from one line or a whole log. Convergence has priority over the limit of
/// iterations, wherever the two stand.
std::optional<StopReason> stopReason(std::string_view text);

} // namespace SU2Output

} // namespace ostrella
