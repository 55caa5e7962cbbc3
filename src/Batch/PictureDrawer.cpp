#include "Batch/PictureDrawer.h"

#include "Batch/PictureStream.h"

#include <cerrno>
#include <chrono>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/socket.h>

namespace ostrella {

namespace {

/// A software driver may have a few hundred million pixels to fill; one that says nothing for so
/// long hangs.
constexpr std::chrono::minutes patience{10};
/// For letting go of the display.
constexpr std::chrono::seconds patienceAtTheEnd{10};

} // namespace

PictureDrawer::~PictureDrawer() {
    if (!process_.isRunning()) {
        return;
    }
    // The end of what it reads is what it ends by; the end of what it writes says that it has.
    shutdown(socket_.get(), SHUT_WR);
    bool ends = PictureStream::waitForMessage(socket_.get(), patienceAtTheEnd);
    while (ends && PictureStream::receiveMessage(socket_.get())) {
        ends = PictureStream::waitForMessage(socket_.get(), patienceAtTheEnd);
    }
    if (!ends) {
        process_.kill();
    }
    try {
        process_.wait();
    } catch (const std::system_error&) {
        // Reaped by somebody else: nothing is left behind.
    }
}

void PictureDrawer::start() {
    if (socket_.get() >= 0 || startFailure_) {
        return;
    }
    try {
        int ends[2];
        if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0) {
            throw std::system_error(errno, std::generic_category(), "No socket pair");
        }
        FileDescriptor own(ends[0]);
        const FileDescriptor others(ends[1]);
        for (const int end : ends) {
            fcntl(end, F_SETFD, FD_CLOEXEC);
#if defined(SO_NOSIGPIPE)
            const int on = 1;
            setsockopt(end, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on);
#endif
        }
        process_.start({program_, {}, std::nullopt, true}, others.get());
        socket_ = std::move(own);
    } catch (const std::system_error& error) {
        startFailure_ = error.what();
    }
}

PictureDrawer::Outcome PictureDrawer::draw(
    const PictureScene& scene, const std::function<void(const std::string&)>& info) {
    Outcome outcome;
    start();
    if (startFailure_) {
        outcome.failure = *startFailure_;
        return outcome;
    }
    // Where the other end cannot draw it does not listen either, but says why.
    PictureStream::sendScene(socket_.get(), scene);
    while (PictureStream::waitForMessage(socket_.get(), patience)) {
        auto message = PictureStream::receiveMessage(socket_.get());
        if (!message) {
            outcome.failure = "the drawing program ended unexpectedly";
            return outcome;
        }
        switch (message->kind) {
        case PictureStream::Kind::info:
            info(message->text);
            break;
        case PictureStream::Kind::device:
            outcome.device = std::move(message->text);
            break;
        case PictureStream::Kind::failure:
            outcome.failure = std::move(message->text);
            return outcome;
        case PictureStream::Kind::picture:
            outcome.png = std::move(message->text);
            return outcome;
        }
    }
    process_.kill();
    outcome.failure = "the graphics driver does not come to an end";
    return outcome;
}

} // namespace ostrella
