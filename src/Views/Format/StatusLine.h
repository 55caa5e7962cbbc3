#pragma once

#include "Models/RunState.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella {

/// Tone of a status; its users map it to colours.
enum class ChromeTone { idle, ok, run, warn, err };

/// "idle", "ok", "run", "warn" or "err".
std::string_view rawValue(ChromeTone tone);

/// One figure at the right of the status bar.
struct StatusCounter {
    std::string text;
    /// Set in the monospaced face.
    bool mono = false;

    bool operator==(const StatusCounter&) const = default;
};

/// What the status bar says. Every state of the application has exactly one line.
struct StatusLine {
    std::string text;
    ChromeTone tone = ChromeTone::idle;
    std::vector<StatusCounter> counters = {};

    struct Inputs {
        /// The phase to show.
        RunPhase phase = {};
        /// Triangles of the loaded model.
        std::optional<std::int64_t> facets = {};
        /// Cells of the volume mesh.
        std::optional<std::int64_t> cells = {};
        /// Iterations done so far.
        std::optional<std::int64_t> iteration = {};
        /// Iteration limit of the run.
        std::int64_t maxIterations = 0;
        /// Figures of the finished run.
        std::optional<RunSummary> summary = {};
    };

    static StatusLine make(const Inputs& inputs);

    /// The first sentence of an error's text, without its full stop; if that has more than `limit`
    /// characters (grapheme clusters), its first words and "…".
    static std::string shortMessage(std::string_view message, std::size_t limit);

    bool operator==(const StatusLine&) const = default;
};

} // namespace ostrella
