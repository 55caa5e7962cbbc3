#include "Batch/PictureStream.h"

#include "Models/LargeBuffer.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <type_traits>
#include <utility>
#include <vector>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace ostrella::PictureStream {

namespace {

static_assert(std::is_trivially_copyable_v<Uniforms>);
static_assert(std::is_trivially_copyable_v<DrawCommand>);

#if defined(MSG_NOSIGNAL)
constexpr int withoutSignal = MSG_NOSIGNAL;
#else
constexpr int withoutSignal = 0;
#endif

/// More than any scene has, so that nonsense is told from a size.
constexpr std::uint64_t mostBytes = std::uint64_t(1) << 40U;

bool sendBytes(int socket, const void* bytes, std::size_t count) {
    const auto* next = static_cast<const std::byte*>(bytes);
    while (count > 0) {
        const ssize_t sent = send(socket, next, count, withoutSignal);
        if (sent < 0 && errno == EINTR) {
            continue;
        }
        if (sent <= 0) {
            return false;
        }
        next += sent;
        count -= static_cast<std::size_t>(sent);
    }
    return true;
}

bool receiveBytes(int socket, void* bytes, std::size_t count) {
    auto* next = static_cast<std::byte*>(bytes);
    while (count > 0) {
        const ssize_t received = recv(socket, next, count, 0);
        if (received < 0 && errno == EINTR) {
            continue;
        }
        if (received <= 0) {
            return false;
        }
        next += received;
        count -= static_cast<std::size_t>(received);
    }
    return true;
}

/// What comes ahead of a scene's buffers.
struct SceneHead {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t samples = 1;
    Vec3 clearColor{0.0F};
    std::uint64_t uniforms = 0;
    std::uint64_t draws = 0;
    std::array<std::uint64_t, sceneBufferCount> bytes{};
};

struct MessageHead {
    Kind kind = Kind::failure;
    std::uint64_t size = 0;
};

template <class Value>
bool receiveAll(int socket, std::uint64_t count, std::vector<Value>& into) {
    if (count > mostBytes / sizeof(Value)) {
        return false;
    }
    into.resize(count);
    return receiveBytes(socket, into.data(), count * sizeof(Value));
}

} // namespace

bool sendScene(int socket, const PictureScene& scene) {
    SceneHead head;
    head.width = scene.width;
    head.height = scene.height;
    head.samples = scene.samples;
    head.clearColor = scene.frame.clearColor;
    head.uniforms = scene.frame.uniforms.size();
    head.draws = scene.frame.draws.size();
    for (std::size_t i = 0; i < sceneBufferCount; ++i) {
        head.bytes[i] = scene.buffers[static_cast<SceneBuffer>(i)].bytes.size();
    }
    bool whole = sendBytes(socket, &head, sizeof head) &&
                 sendBytes(socket, scene.frame.uniforms.data(), head.uniforms * sizeof(Uniforms)) &&
                 sendBytes(socket, scene.frame.draws.data(), head.draws * sizeof(DrawCommand));
    for (std::size_t i = 0; whole && i < sceneBufferCount; ++i) {
        const auto& bytes = scene.buffers[static_cast<SceneBuffer>(i)].bytes;
        whole = sendBytes(socket, bytes.data(), bytes.size());
    }
    return whole;
}

std::optional<PictureScene> receiveScene(int socket) {
    SceneHead head;
    PictureScene scene;
    if (!receiveBytes(socket, &head, sizeof head) ||
        !receiveAll(socket, head.uniforms, scene.frame.uniforms) ||
        !receiveAll(socket, head.draws, scene.frame.draws)) {
        return std::nullopt;
    }
    scene.width = head.width;
    scene.height = head.height;
    scene.samples = head.samples;
    scene.frame.clearColor = head.clearColor;
    for (std::size_t i = 0; i < sceneBufferCount; ++i) {
        if (head.bytes[i] == 0) {
            continue;
        }
        if (head.bytes[i] > mostBytes) {
            return std::nullopt;
        }
        LargeBuffer<std::byte> bytes(head.bytes[i]);
        if (!receiveBytes(socket, bytes.data(), bytes.size())) {
            return std::nullopt;
        }
        scene.buffers.replace(static_cast<SceneBuffer>(i), std::move(bytes));
    }
    return scene;
}

bool sendMessage(int socket, Kind kind, const std::string& text) {
    const MessageHead head{kind, text.size()};
    return sendBytes(socket, &head, sizeof head) && sendBytes(socket, text.data(), text.size());
}

std::optional<Message> receiveMessage(int socket) {
    MessageHead head;
    Message message;
    if (!receiveBytes(socket, &head, sizeof head) || head.size > mostBytes) {
        return std::nullopt;
    }
    message.kind = head.kind;
    message.text.resize(head.size);
    if (!receiveBytes(socket, message.text.data(), message.text.size())) {
        return std::nullopt;
    }
    return message;
}

bool waitForMessage(int socket, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (true) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        pollfd entry{socket, POLLIN, 0};
        const int ready =
            poll(&entry, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
        if (ready > 0) {
            return true;
        }
        if (ready == 0 || errno != EINTR) {
            return false;
        }
    }
}

} // namespace ostrella::PictureStream
