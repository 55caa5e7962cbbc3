#include "Platform/VirtualDisplay.h"

#include <QStandardPaths>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <future>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include <dlfcn.h>
#include <poll.h>
#include <unistd.h>

namespace ostrella {

namespace {

/// A loaded machine takes its time; an X server that needs longer never comes.
constexpr std::chrono::seconds patience{30};

/// The server writes its number as a line of its own, between whatever else it has to say.
std::optional<std::string> numberIn(const std::string& text) {
    std::size_t begin = 0;
    for (auto end = text.find('\n'); end != text.npos; end = text.find('\n', begin)) {
        const std::string line = text.substr(begin, end - begin);
        if (!line.empty() && std::all_of(line.begin(), line.end(),
                                 [](unsigned char c) { return std::isdigit(c) != 0; })) {
            return line;
        }
        begin = end + 1;
    }
    return std::nullopt;
}

/// Reads what the server says until it has told its number, or gives up.
std::optional<std::string> waitForNumber(int output) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    std::string text;
    while (!numberIn(text)) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        pollfd entry{output, POLLIN, 0};
        const int ready = left.count() > 0 ? poll(&entry, 1, static_cast<int>(left.count())) : 0;
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        char buffer[512];
        const ssize_t count = ready > 0 ? read(output, buffer, sizeof buffer) : 0;
        if (count <= 0) {
            return std::nullopt;
        }
        text.append(buffer, static_cast<std::size_t>(count));
    }
    return numberIn(text);
}

} // namespace

std::unique_ptr<VirtualDisplay> VirtualDisplay::start() {
    const QString program = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
    if (program.isEmpty()) {
        return nullptr;
    }
    std::unique_ptr<VirtualDisplay> display(new VirtualDisplay);
    try {
        Pipe pipe = Pipe::make();
        // It ends with its last client too, so that it outlives no client that was killed.
        display->server_.start(
            {program.toStdString(),
                {"-displayfd", "1", "-screen", "0", "64x64x24", "-nolisten", "tcp", "-terminate"},
                std::nullopt, true},
            pipe.writeEnd.get());
        pipe.writeEnd.close();
        const auto number = waitForNumber(pipe.readEnd.get());
        if (!number) {
            return nullptr;
        }
        display->name_ = ":" + *number;
        display->output_ = std::move(pipe.readEnd);
    } catch (const std::system_error&) {
        return nullptr;
    }
    return display;
}

VirtualDisplay::~VirtualDisplay() {
    if (server_.isRunning()) {
        // It takes its socket and its lock with it.
        server_.terminate();
        try {
            server_.wait();
        } catch (const std::system_error&) {
            // Reaped by somebody else.
        }
    }
}

bool VirtualDisplay::anotherAnswers(std::chrono::milliseconds limit) {
    const char* const name = std::getenv("DISPLAY");
    if (!name || *name == '\0') {
        return false;
    }
    // The library that Qt's own plugin connects by; without it there is nothing to ask with.
    void* const library = dlopen("libxcb.so.1", RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        return false;
    }
    struct Connection;
    const auto connect =
        reinterpret_cast<Connection* (*)(const char*, int*)>(dlsym(library, "xcb_connect"));
    const auto hasError =
        reinterpret_cast<int (*)(Connection*)>(dlsym(library, "xcb_connection_has_error"));
    const auto disconnect =
        reinterpret_cast<void (*)(Connection*)>(dlsym(library, "xcb_disconnect"));
    if (!connect || !hasError || !disconnect) {
        return false;
    }
    // It waits for the server's answer for ever, so it does so elsewhere.
    std::promise<Connection*> promise;
    std::future<Connection*> answer = promise.get_future();
    std::thread([connect, display = std::string(name), promise = std::move(promise)]() mutable {
        promise.set_value(connect(display.c_str(), nullptr));
    }).detach();
    if (answer.wait_for(limit) != std::future_status::ready) {
        return false;
    }
    Connection* const connection = answer.get();
    if (hasError(connection) != 0) {
        disconnect(connection);
        return false;
    }
    static Connection* held = nullptr;
    if (held) {
        disconnect(held);
    }
    held = connection;
    return true;
}

} // namespace ostrella
