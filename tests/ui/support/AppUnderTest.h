#pragma once

#include "Models/LogStore.h"
#include "Models/PreferenceStore.h"
#include "Ostrella/OstrellaApp.h"
#include "Platform/DesktopAppearance.h"
#include "Update/Updater.h"
#include "Views/MainWindow.h"
#include "support/RealInput.h"
#include "support/Wait.h"

#include <QAccessible>
#include <QPointF>
#include <QQuickItem>

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ostrella::test {

/// The whole application in its window of 1400 × 880 points, under a user's hands: put together as
/// the program itself does, with the tools of the package, but with preferences and a temporary
/// directory of its own. Motion is reduced, so that what is clicked does not move.
///
/// Things are found as a user finds them: only what is in the window and can be seen, by the name
/// that a reader of the screen would say or by the text that it shows.
class AppUnderTest : public testing::Test {
protected:
    /// Without an `updater`, it is a copy that has no feed.
    explicit AppUnderTest(const std::filesystem::path& package = OSTRELLA_STAGE_DIR,
        std::unique_ptr<Updater> updater = nullptr);
    ~AppUnderTest() override;

    /// A run takes seconds with so few.
    static constexpr int fewIterations = 60;

    // What is there.
    /// The item of this accessible name, and role if one is given; null if none is to be seen.
    QQuickItem* find(const std::string& name, QAccessible::Role role = QAccessible::NoRole) const;
    /// Waits for it; throws if it does not come.
    QQuickItem& item(const std::string& name, QAccessible::Role role = QAccessible::NoRole) const;
    /// Some item shows exactly this text.
    bool shows(const std::string& text) const;
    /// Some item shows a text that as a whole matches a regular expression.
    bool showsLike(const std::string& pattern) const;
    /// The value of the card's row with this label.
    std::optional<std::string> row(const std::string& label) const;
    /// "none", "error", "solver", "result" or "geometry".
    std::string cardKind() { return model().viewport()->card()->kind().toStdString(); }
    /// Where in the window the middle of an item is.
    static QPointF middleOf(const QQuickItem& item);
    bool isEnabled(const std::string& name) const { return item(name).isEnabled(); }
    bool isChecked(const std::string& name) const;
    /// A point of the viewport, in the window.
    QPointF inViewport(QPointF point) const;

    // What the user does.
    /// Waits until it is there and enabled.
    void click(const std::string& name, QAccessible::Role role = QAccessible::NoRole);
    /// An entry of one of the window's menus.
    void choose(const std::string& menu, const std::string& entry);
    /// Types a number into the field of this name, and ends with Tab.
    void fill(const std::string& name, const std::string& text);
    /// Lays the window out and draws it.
    void drawFrame();
    /// Letters, digits, and the usual signs of file names.
    void type(const std::string& text);

    // What came of it.
    RunPhase::Kind phase() const { return app->simulation.phase().kind; }
    bool waitForPhase(RunPhase::Kind kind) const;
    bool waitFor(const std::function<bool()>& condition) const;
    std::vector<std::string> log(std::optional<LogStore::Level> level = std::nullopt) const;
    bool logs(const std::string& text, LogStore::Level level) const;
    /// Until the model stands in the viewport.
    void waitForModel(const std::string& fileName);
    std::vector<std::string> runDirectories() const;

    const std::filesystem::path& directory() const { return directory_.path(); }
    WindowModel& model() { return window->model(); }

    MemoryPreferences preferences;
    std::vector<std::string> openedAddresses;
    int quits = 0;
    std::unique_ptr<OstrellaApp> app;
    Updater* updater = nullptr;
    std::unique_ptr<MainWindow> window;
    std::unique_ptr<RealInput> user;

private:
    TemporaryDirectory directory_;
    std::unique_ptr<DesktopAppearance> appearance_;
};

} // namespace ostrella::test
