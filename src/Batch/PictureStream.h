#pragma once

#include "Batch/PictureScene.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace ostrella {

/// How ostrella-batch and the program that draws for it talk: over one socket between two programs
/// of one build on one machine, so that values pass as they lie in memory.
namespace PictureStream {

/// What the drawing program says.
enum class Kind : std::uint32_t {
    info,    ///< a line for the log
    device,  ///< the name of what draws
    failure, ///< why there is no picture; the last message
    picture  ///< a whole PNG file; the last message
};
struct Message {
    Kind kind = Kind::failure;
    std::string text;
};

// Each returns false, or nothing, where the other end has gone, or said what cannot be.
bool sendScene(int socket, const PictureScene& scene);
std::optional<PictureScene> receiveScene(int socket);
bool sendMessage(int socket, Kind kind, const std::string& text);
std::optional<Message> receiveMessage(int socket);

/// Waits until something can be read, or the other end has gone. False after `limit`.
bool waitForMessage(int socket, std::chrono::milliseconds limit);

} // namespace PictureStream

} // namespace ostrella
