#include "InstalledApplication.h"

#include "Update/UpdateRestart.h"
#include "support/XServer.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <array>
#include <charconv>
#include <csignal>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace ostrella::test {

namespace fs = std::filesystem;

namespace {

constexpr const char* mainTitle = "Ostrella";
constexpr const char* updateTitle = "Software Update";

fs::path informationIn(const fs::path& root) {
    return root / "share" / "ostrella" / "Info.json";
}

/// Waits, and fails the test at once where that was in vain.
void require(const std::function<bool()>& condition, const std::string& what) {
    if (!waitUntil(condition, std::chrono::seconds(60))) {
        throw std::runtime_error("waited in vain: " + what);
    }
}

void makeExecutable(const fs::path& program) {
    fs::permissions(program, fs::perms(0755));
}

} // namespace

InstalledApplication::InstalledApplication() {
    writeFile(informationIn(root()),
        fmt::format(R"({{"CFBundleShortVersionString": "1.0", "SUFeedURL": "file://{}",)"
                    R"( "SUPublicEDKey": "{}", "OstrellaAllowsFileFeed": true}})",
            (maker_.path() / "feed.xml").string(), key_.publicKey()));
    process().setVariable("OSTRELLA_REDUCED_MOTION", "1");
}

InstalledApplication::~InstalledApplication() {
    for (const std::int64_t process : processes()) {
        ::kill(static_cast<pid_t>(process), SIGKILL);
    }
    waitUntil([this] { return processes().empty(); });
}

fs::path InstalledApplication::root() const {
    return application_.program().parent_path().parent_path();
}

fs::path InstalledApplication::makeTree(const std::string& version) const {
    fs::path tree = maker_.path() / version;
    fs::create_directories(tree / "bin");
    fs::create_directories(tree / "libexec" / "ostrella");
    fs::create_directories(tree / "share" / "ostrella");
    fs::copy(root() / "share" / "ostrella" / "samples", tree / "share" / "ostrella" / "samples",
        fs::copy_options::recursive);
    writeFile(
        informationIn(tree), fmt::format(R"({{"CFBundleShortVersionString": "{}"}})", version));
    return tree;
}

void InstalledApplication::release(const std::string& version) const {
    const fs::path tree = makeTree(version);
    fs::copy_file(application_.program(), tree / "bin" / "ostrella");
    publish(tree, version);
}

void InstalledApplication::releaseScript(
    const std::string& version, const std::string& script) const {
    const fs::path tree = makeTree(version);
    writeFile(tree / "bin" / "ostrella", script);
    makeExecutable(tree / "bin" / "ostrella");
    publish(tree, version);
}

void InstalledApplication::publish(const fs::path& tree, const std::string& version) const {
    const fs::path archive = maker_.path() / (version + ".tar.gz");
    const QStringList arguments{QStringLiteral("-czf"), QString::fromStdString(archive.string()),
        QStringLiteral("-C"), QString::fromStdString(tree.string()), QStringLiteral("bin"),
        QStringLiteral("libexec"), QStringLiteral("share")};
    ASSERT_EQ(QProcess::execute(QStringLiteral("tar"), arguments), 0);
    const std::string bytes = readFile(archive);
    writeFile(
        maker_.path() / "feed.xml", fmt::format(R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
<channel><item>
<title>Version {0}</title>
<sparkle:version>{0}</sparkle:version>
<enclosure url="file://{1}" length="{2}" type="application/octet-stream"
    sparkle:os="linux" sparkle:edSignature="{3}"/>
</item></channel></rss>
)",
                                        version, archive.string(), bytes.size(), key_.sign(bytes)));
}

void InstalledApplication::start() {
    process().start({});
    started_ = process().number();
    window(mainTitle);
}

void InstalledApplication::startInVain() {
    constexpr std::array variables{"LIBGL_DRIVERS_PATH", "VK_ICD_FILENAMES"};
    for (const char* const name : variables) {
        process().setVariable(name, "/nonexistent");
    }
    process().start({});
    started_ = process().number();
    require([this] { return windowOf(started_, "").has_value(); }, "a word of what is missing");
    process().signal(SIGKILL);
    process().finish();
    for (const char* const name : variables) {
        process().removeVariable(name);
    }
}

std::optional<ForeignWindow> InstalledApplication::windowOf(
    std::int64_t process, const std::string& title) const {
    return ForeignWindow::ofProcess(process, title);
}

ForeignWindow InstalledApplication::window(const std::string& title) {
    std::optional<ForeignWindow> found;
    require([&] { return (found = windowOf(started_, title)).has_value(); },
        "a window called " + title + "\n" + process().errors());
    return *found;
}

void InstalledApplication::press(
    const ForeignWindow& window, const std::vector<Qt::Key>& keys) const {
    window.focus();
    XServer server(window.id());
    for (const Qt::Key key : keys) {
        server.key(key, true);
    }
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
        server.key(*key, false);
    }
}

ForeignWindow InstalledApplication::checkForUpdates() {
    const ForeignWindow main = window(mainTitle);
    require(
        [&] {
            press(main, {Qt::Key_Alt, Qt::Key_H});
            // The last of the menu.
            for (int i = 0; i < 5; ++i) {
                press(main, {Qt::Key_Down});
            }
            press(main, {Qt::Key_Return});
            return waitUntil([&] { return windowOf(started_, updateTitle).has_value(); },
                std::chrono::seconds(3));
        },
        "the update window");
    return window(updateTitle);
}

void InstalledApplication::fetchUpdate() {
    const ForeignWindow update = checkForUpdates();
    const fs::path ready = root().parent_path() /
                           fmt::format(".{}.ostrella-update", root().filename().string()) / "ready";
    // The key does nothing while the feed is read or the archive is on its way.
    require(
        [&] {
            if (!fs::exists(ready)) {
                press(update, {Qt::Key_Return});
            }
            return waitUntil([&] { return fs::exists(ready); }, std::chrono::milliseconds(500));
        },
        "the update to lie ready\n" + process().errors());
    // The archive goes when the window comes to offer the restart.
    const fs::path cache = process().home() / ".cache" / "Ostrella" / "updates";
    require([&] { return fs::is_empty(cache); }, "the archive to be gone");
}

void InstalledApplication::restart() {
    require(
        [this] {
            // Put off, where the keyboard came to the window's buttons between the two keys.
            const auto shown = windowOf(started_, updateTitle);
            const ForeignWindow update = shown ? *shown : checkForUpdates();
            // The last of the buttons.
            press(update, {Qt::Key_Shift, Qt::Key_Tab});
            press(update, {Qt::Key_Return});
            return waitUntil(
                [this] { return !windowOf(started_, mainTitle); }, std::chrono::seconds(2));
        },
        "the end of the old version");
}

void InstalledApplication::later() {
    press(window(updateTitle), {Qt::Key_Escape});
    require([this] { return !windowOf(started_, updateTitle); }, "it to be put off");
}

int InstalledApplication::quit() {
    window(mainTitle).askToClose();
    return process().finish();
}

std::vector<std::int64_t> InstalledApplication::processes() const {
    std::vector<std::int64_t> all;
    const fs::path program = fs::canonical(root()) / "bin" / "ostrella";
    std::error_code error;
    for (const auto& entry : fs::directory_iterator("/proc", error)) {
        const std::string name = entry.path().filename().string();
        std::int64_t number = 0;
        const auto [end, failure] = std::from_chars(name.data(), name.data() + name.size(), number);
        if (failure == std::errc() && end == name.data() + name.size() &&
            fs::read_symlink(entry.path() / "exe", error) == program) {
            all.push_back(number);
        }
    }
    return all;
}

std::optional<std::int64_t> InstalledApplication::successor() const {
    for (const std::int64_t process : processes()) {
        if (process != started_) {
            return process;
        }
    }
    return std::nullopt;
}

bool InstalledApplication::closeSuccessor() const {
    std::optional<ForeignWindow> found;
    const auto isShown = [&] {
        const auto process = successor();
        return process && (found = windowOf(*process, mainTitle));
    };
    if (!waitUntil(isShown, std::chrono::seconds(60))) {
        return false;
    }
    found->askToClose();
    return waitUntil([this] { return !successor(); }, std::chrono::seconds(60));
}

bool InstalledApplication::confirmsBesideTheRunningOne() const {
    const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(session().string()));
    const bool did = UpdateRestart::startAndWatch(application_.program(), std::chrono::minutes(1));
    if (before.isNull()) {
        qunsetenv("XDG_RUNTIME_DIR");
    } else {
        qputenv("XDG_RUNTIME_DIR", before);
    }
    return did;
}

std::string InstalledApplication::version() const {
    const std::string text = readFile(informationIn(root()));
    return QJsonDocument::fromJson(QByteArray::fromStdString(text))
        .object()
        .value(QStringLiteral("CFBundleShortVersionString"))
        .toString()
        .toStdString();
}

bool InstalledApplication::hasPrevious() const {
    return fs::exists(root().parent_path() / (root().filename().string() + ".previous"));
}

} // namespace ostrella::test
