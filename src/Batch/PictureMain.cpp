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
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace ostrella;
using PictureStream::Kind;

namespace {

/// Where the last words of a library that gives up go.
int lastWords = -1;

/// The word by which the program starts itself again for a display of its own.
constexpr const char* ownDisplayWord = "--own-display";

constexpr const char* noDriver = "no graphics driver here has OpenGL 4.3 or Vulkan";

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

#if !defined(Q_OS_MACOS)
/// True as long as the picture is to be drawn on a display that was there.
bool onAnothersDisplay = false;

/// What the session calls its folder for temporary files.
std::optional<QByteArray> temporaryFolder;

/// The program once more, for a display of its own: libraries that have seen one display do not let
/// go of it. Whoever is at the socket's other end notices nothing. Returns only where that fails.
void startOver(int socket) {
    if (temporaryFolder) {
        qputenv("TMPDIR", *temporaryFolder);
    } else {
        qunsetenv("TMPDIR");
    }
    dup2(socket, STDOUT_FILENO);
    execl("/proc/self/exe", "ostrella-picture", ownDisplayWord, static_cast<char*>(nullptr));
}
#endif

void passOn(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtFatalMsg) {
#if !defined(Q_OS_MACOS)
        if (onAnothersDisplay) {
            startOver(lastWords);
        }
#endif
        PictureStream::sendMessage(lastWords, Kind::failure, text.toStdString());
        // No dump of memory is wanted of a machine without a display.
        std::_Exit(EXIT_FAILURE);
    }
}

/// What there is to draw on.
struct Display {
    /// Nothing for one that was there.
    std::unique_ptr<VirtualDisplay> own;
    /// What the log is to say of it; may be nothing.
    std::string remark;
};

/// A display server's, the user's if there is one and it is not to be `own`. Throws RhiError.
Display findDisplay(bool own) {
    Display display;
#if defined(Q_OS_MACOS)
    static_cast<void>(own);
#else
    // Whatever else the user has Qt draw on, this is what needs no window.
    qputenv("QT_QPA_PLATFORM", "xcb");
    if (!own && VirtualDisplay::anotherAnswers()) {
        onAnothersDisplay = true;
        return display;
    }
    display.own = VirtualDisplay::start();
    if (!display.own) {
        throw RhiError(own ? std::string(noDriver) + ", and no Xvfb on the search path starts"
                           : "there is no display server, and no Xvfb on the search path that "
                             "starts");
    }
    qputenv("DISPLAY", QByteArray::fromStdString(display.own->name()));
    display.remark =
        std::string(own ? "No graphics driver for the display server" : "No display server") +
        " · the picture is drawn on an Xvfb of its own";
#endif
    return display;
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

using Devices = std::vector<std::unique_ptr<OffscreenDevice>>;

/// Draws what comes on the first device that can, and adds those that were tried. False where there
/// is none at all, with nothing read yet. Throws RhiError, with what the first one has to say.
bool draw(int socket, const std::string& remark, Devices& devices) {
    std::optional<PictureScene> scene;
    std::optional<RhiError> failure;
    for (const auto backend : OffscreenDevice::candidates()) {
        auto device = OffscreenDevice::create(backend);
        if (!device) {
            continue;
        }
        devices.push_back(std::move(device));
        if (!scene) {
            scene = PictureStream::receiveScene(socket);
        }
        if (!scene) {
            return true; // No picture is wanted after all.
        }
        try {
            RhiScene drawer(devices.back()->rhi());
            const auto image = OffscreenPicture::render(devices.back()->rhi(), drawer,
                {scene->width, scene->height}, scene->frame, scene->buffers, 1.0F, scene->samples);
            if (!image) {
                throw RhiError("the graphics device was lost");
            }
            const std::string file = pngFile(*image);
            if (!remark.empty()) {
                PictureStream::sendMessage(socket, Kind::info, remark);
            }
            PictureStream::sendMessage(socket, Kind::device, devices.back()->description());
            PictureStream::sendMessage(socket, Kind::picture, file);
            return true;
        } catch (const RhiError& error) {
            if (!failure) {
                failure = error;
            }
        }
    }
    if (failure) {
        throw *failure;
    }
    return false;
}

/// Until the other end has nothing more to say, so that it never talks to nobody.
void hearOut(int socket) {
    char heard[65536];
    while (recv(socket, heard, sizeof heard, 0) > 0) {
    }
}

[[noreturn]] void serve(int socket, int argc, char** argv) {
    Display display;
    std::unique_ptr<QGuiApplication> application;
    Devices devices;
    try {
        display = findDisplay(argc > 1 && std::string_view(argv[1]) == ownDisplayWord);
        // Where the session has no folder for sockets, Qt would make one among the temporary files
        // and leave it there.
        if (qEnvironmentVariableIsSet("TMPDIR")) {
            temporaryFolder = qgetenv("TMPDIR");
        }
        qputenv("TMPDIR", "/dev/null/none");
        application = std::make_unique<QGuiApplication>(argc, argv);
        if (!draw(socket, display.remark, devices)) {
#if !defined(Q_OS_MACOS)
            if (onAnothersDisplay) {
                startOver(socket);
            }
#endif
            throw RhiError(noDriver);
        }
    } catch (const RhiError& error) {
        PictureStream::sendMessage(socket, Kind::failure, error.what());
    } catch (const std::bad_alloc&) {
        PictureStream::sendMessage(socket, Kind::failure, "there is not enough memory for it");
    }
    hearOut(socket);
    // The system takes back what device and application hold, and faster than they would; only
    // the display server is to be told.
    display.own.reset();
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
