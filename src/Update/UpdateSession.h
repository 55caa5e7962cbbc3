#pragma once

#include "Update/AppcastItem.h"

#include <cstdint>
#include <string>

namespace ostrella {

/// Where a search for an update, and what follows from it, stands: all that a window needs to tell
/// the user of it.
struct UpdateSession {
    enum class Stage {
        /// Nothing is going on, or it is kept from the user until a run has ended.
        idle,
        /// The feed is being read.
        checking,
        /// There is nothing newer; waits to be acknowledged.
        upToDate,
        /// `item` is newer; waits for install, remind later or skip.
        found,
        /// `item` is newer, but this copy is not ours to replace; waits to be acknowledged.
        noticeOnly,
        /// The archive is on its way: `received` of `expected` bytes. Can be cancelled.
        downloading,
        /// The archive is being checked and unpacked. Can be cancelled.
        preparing,
        /// Waits for install and restart, or for the end of the application.
        ready,
        /// `text` tells why; waits to be acknowledged.
        failed
    };

    Stage stage = Stage::idle;
    /// From `found` on.
    AppcastItem item = {};
    /// What the user reads: of `failed` the reason, of `noticeOnly` who keeps this copy, if known.
    std::string text = {};
    /// Bytes.
    std::int64_t received = 0;
    /// Bytes; 0 where it is not known.
    std::int64_t expected = 0;
    /// The user asked for it; otherwise it came by the clock.
    bool userInitiated = false;
};

} // namespace ostrella
