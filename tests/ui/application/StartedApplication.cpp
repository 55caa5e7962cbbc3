#include "StartedApplication.h"

#include "support/XServer.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string>

namespace ostrella::test {

namespace fs = std::filesystem;

namespace {

fs::path withApplication(const Package& package) {
    const fs::path program = package.root() / "bin" / "ostrella";
    fs::copy_file(fs::path(OSTRELLA_STAGE_DIR) / "bin" / "ostrella", program);
    return program;
}

} // namespace

StartedApplication::StartedApplication() : process_(withApplication(package_)) {
    fs::permissions(session_.path(), fs::perms::owner_all);
    process_.setVariable("XDG_RUNTIME_DIR", session_.path().string());
    process_.setVariable("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    package_.scriptGoodTools();
}

void StartedApplication::openSphere() {
    process_.start({package_.sample("sphere").string()});
    const auto isUp = [this] {
        window_ = ForeignWindow::ofProcess(process_.number());
        return window_ && window_->title().find("sphere.stl") != std::string::npos;
    };
    ASSERT_TRUE(waitUntil(isUp)) << process_.output() << process_.errors();
}

void StartedApplication::run(const fs::path& note) {
    XServer server(window_->id());
    const auto hasBegun = [&] {
        if (fs::exists(note))
            return true;
        // Asked for again during a run, it changes nothing.
        window_->focus();
        server.key(Qt::Key_Control, true);
        server.key(Qt::Key_R, true);
        server.key(Qt::Key_R, false);
        server.key(Qt::Key_Control, false);
        return waitUntil([&note] { return fs::exists(note); }, std::chrono::milliseconds(500));
    };
    ASSERT_TRUE(waitUntil(hasBegun)) << process_.output() << process_.errors();
}

bool isRunning(const fs::path& file) {
    std::string number = readFile(file);
    number.erase(number.find_last_not_of('\n') + 1);
    std::error_code error;
    const fs::path status = fs::path("/proc") / number / "stat";
    if (!fs::exists(status, error))
        return false;
    // "number (name) state …"; whoever is to reap it may take its time.
    const std::string text = readFile(status);
    return text.find(") Z ") == std::string::npos && text.find(") X ") == std::string::npos;
}

} // namespace ostrella::test
