#include "Platform/DisplayProbe.h"

#include "Platform/FileDescriptor.h"
#include "support/Wait.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <string>

#include <sys/socket.h>
#include <sys/un.h>

#ifndef __APPLE__

namespace ostrella {
namespace {

/// Each test has a process of its own, so nothing is put back.
class DisplayProbeTest : public testing::Test {
protected:
    DisplayProbeTest() {
        for (const char* const name : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "DISPLAY"}) {
            qunsetenv(name);
        }
        qputenv("XDG_RUNTIME_DIR", directory_.path().c_str());
    }

    /// A server's socket in the runtime folder; it takes connections if it listens.
    FileDescriptor socket(const std::string& name, bool listens) const {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const std::string file = (directory_.path() / name).string();
        file.copy(address.sun_path, sizeof address.sun_path - 1);
        FileDescriptor server(::socket(AF_UNIX, SOCK_STREAM, 0));
        EXPECT_EQ(::bind(server.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        if (listens) {
            EXPECT_EQ(::listen(server.get(), 1), 0);
        }
        return server;
    }

    test::TemporaryDirectory directory_;
};

TEST_F(DisplayProbeTest, NoneIsNamed) {
    EXPECT_FALSE(DisplayProbe::canShowWindows());
    qputenv("WAYLAND_DISPLAY", "");
    qputenv("DISPLAY", "");
    EXPECT_FALSE(DisplayProbe::canShowWindows());
}

TEST_F(DisplayProbeTest, ANameThatNobodyAnswersTo) {
    qputenv("DISPLAY", ":65123");
    EXPECT_FALSE(DisplayProbe::canShowWindows());
    qputenv("WAYLAND_DISPLAY", "wayland-7");
    EXPECT_FALSE(DisplayProbe::canShowWindows());
}

TEST_F(DisplayProbeTest, AWaylandServer) {
    const FileDescriptor server = socket("wayland-7", true);
    qputenv("WAYLAND_DISPLAY", "wayland-7");
    EXPECT_TRUE(DisplayProbe::canShowWindows());
    qputenv("WAYLAND_DISPLAY", (directory_.path() / "wayland-7").c_str());
    qunsetenv("XDG_RUNTIME_DIR");
    EXPECT_TRUE(DisplayProbe::canShowWindows());
}

TEST_F(DisplayProbeTest, AServerThatLeftItsSocketBehind) {
    const FileDescriptor server = socket("wayland-7", false);
    qputenv("WAYLAND_DISPLAY", "wayland-7");
    EXPECT_FALSE(DisplayProbe::canShowWindows());
}

TEST_F(DisplayProbeTest, TheToolkitsPlatformIsTheUsersOwnAffair) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    EXPECT_TRUE(DisplayProbe::canShowWindows());
}

} // namespace
} // namespace ostrella

#endif
