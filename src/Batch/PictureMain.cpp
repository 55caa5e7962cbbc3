// ostrella-picture: draws one picture for ostrella-batch, which it hears and answers over its
// standard output.

#include "Batch/PictureStream.h"
#include "Platform/FileDescriptor.h"
#include "Platform/VirtualDisplay.h"
#include "Rendering/OffscreenDevice.h"
#include "Rendering/OffscreenPicture.h"
#include "Rendering/RhiError.h"
#include "Rendering/RhiScene.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImageWriter>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace ostrella;
using PictureStream::Kind;

namespace {

/// Where the last words of a library that gives up go.
int lastWords = -1;

/// The socket under a number of its own, with the null device in its place, since drivers chatter.
/// Nothing where the standard output is no socket.
FileDescriptor takeSocket() {
    int type = 0;
    socklen_t size = sizeof type;
    if (getsockopt(STDOUT_FILENO, SOL_SOCKET, SO_TYPE, &type, &size) != 0 || type != SOCK_STREAM) {
        return FileDescriptor();
    }
    FileDescriptor socket(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    const FileDescriptor null(open("/dev/null", O_RDWR | O_CLOEXEC));
    dup2(null.get(), STDOUT_FILENO);
    dup2(null.get(), STDERR_FILENO);
    return socket;
}

void passOn(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtFatalMsg) {
        PictureStream::sendMessage(lastWords, Kind::failure, text.toStdString());
        // No dump of memory is wanted of a machine without a display.
        std::_Exit(EXIT_FAILURE);
    }
}

/// A display server's, the user's if there is one. Throws RhiError.
std::unique_ptr<VirtualDisplay> findDisplay(int socket) {
#if defined(Q_OS_MACOS)
    static_cast<void>(socket);
    return nullptr;
#else
    // Whatever else the user has Qt draw on, this is what needs no window.
    qputenv("QT_QPA_PLATFORM", "xcb");
    if (VirtualDisplay::anotherAnswers()) {
        return nullptr;
    }
    auto own = VirtualDisplay::start();
    if (!own) {
        throw RhiError("there is no display server, and no Xvfb on the search path that starts");
    }
    qputenv("DISPLAY", QByteArray::fromStdString(own->name()));
    PictureStream::sendMessage(
        socket, Kind::info, "No display server · the picture is drawn on an Xvfb of its own");
    return own;
#endif
}

std::string pngFile(QImage image) {
    // By this an earlier picture is known from one of somebody else's.
    image.setText(QStringLiteral("Software"), QStringLiteral("Ostrella"));
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    // Smooth shades hardly get smaller from a longer search.
    constexpr int fast = 20;
    writer.setCompression(fast);
    if (!writer.write(image)) {
        throw RhiError("there is not enough memory for the picture");
    }
    return buffer.data().toStdString();
}

/// Draws what comes; nothing if nothing does. Throws RhiError.
void draw(int socket, QRhi& rhi) {
    const auto scene = PictureStream::receiveScene(socket);
    if (!scene) {
        return;
    }
    RhiScene drawer(rhi);
    const auto image = OffscreenPicture::render(rhi, drawer, {scene->width, scene->height},
        scene->frame, scene->buffers, 1.0F, scene->samples);
    if (!image) {
        throw RhiError("the graphics device was lost");
    }
    PictureStream::sendMessage(socket, Kind::picture, pngFile(*image));
}

/// Until the other end has nothing more to say, so that it never talks to nobody.
void hearOut(int socket) {
    char heard[65536];
    while (recv(socket, heard, sizeof heard, 0) > 0) {
    }
}

[[noreturn]] void serve(int socket, int argc, char** argv) {
    std::unique_ptr<VirtualDisplay> display;
    std::unique_ptr<QGuiApplication> application;
    std::unique_ptr<OffscreenDevice> device;
    try {
        display = findDisplay(socket);
        // Where the session has no folder for sockets, Qt would make one among the temporary files
        // and leave it there.
        qputenv("TMPDIR", "/dev/null/none");
        application = std::make_unique<QGuiApplication>(argc, argv);
        device = OffscreenDevice::create();
        if (!device) {
            throw RhiError("no graphics driver here has OpenGL 4.3 or Vulkan");
        }
        PictureStream::sendMessage(socket, Kind::device, device->description());
        draw(socket, device->rhi());
    } catch (const RhiError& error) {
        PictureStream::sendMessage(socket, Kind::failure, error.what());
    } catch (const std::bad_alloc&) {
        PictureStream::sendMessage(socket, Kind::failure, "there is not enough memory for it");
    }
    hearOut(socket);
    // The system takes back what device and application hold, and faster than they would; only
    // the display server is to be told.
    display.reset();
    std::_Exit(EXIT_SUCCESS);
}

} // namespace

int main(int argc, char** argv) {
    const FileDescriptor socket = takeSocket();
    if (socket.get() < 0) {
        std::fputs("ostrella-picture draws for ostrella-batch, which starts it.\n", stderr);
        return EXIT_FAILURE;
    }
    // The end comes over the socket; what a terminal or a session's end sends is for the run.
    setsid();
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
        std::signal(number, SIG_IGN);
    }
    lastWords = socket.get();
    qInstallMessageHandler(passOn);
    serve(socket.get(), argc, argv);
}
