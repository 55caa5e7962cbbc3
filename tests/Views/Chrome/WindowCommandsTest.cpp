#include "Views/Chrome/WindowCommands.h"

#include "Views/Panel/BottomPanelModel.h"
#include "support/ViewBench.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>

namespace ostrella::test {
namespace {

using Texts = std::vector<std::string>;

class WindowCommandsTest : public testing::Test, protected ViewBench {
protected:
    WindowCommandsTest() {
        for (const std::string_view name : {Notifications::openSTLRequested,
                 Notifications::sampleLoadRequested, Notifications::runSimulationRequested,
                 Notifications::runDemoRequested, Notifications::cancelSimulationRequested,
                 Notifications::viewPresetRequested, Notifications::fitToViewRequested}) {
            tokens.push_back(app.notifications.observe(
                name, [this, name = std::string(name)](const std::any& object) {
                    const auto* text = std::any_cast<std::string>(&object);
                    done.push_back(name + (text != nullptr ? " " + *text : ""));
                }));
        }
    }

    WindowCommands::Doors doors(bool all) {
        const auto door = [this](const char* name) {
            return [this, name] { done.emplace_back(name); };
        };
        WindowCommands::Doors doors{
            .exportResults = door("export"), .openHelp = door("help"), .quit = door("quit")};
        if (all) {
            doors.showSettings = door("settings");
            doors.showAbout = door("about");
            doors.checkForUpdates = door("updates");
            doors.canCheckForUpdates = [this] { return canUpdate; };
        }
        return doors;
    }

    static CommandItem* itemOf(const QVariantMap& entry) {
        return qobject_cast<CommandItem*>(entry.value(QStringLiteral("item")).value<QObject*>());
    }
    Texts titles() const {
        Texts titles;
        for (const QVariant& menu : commands->menus()) {
            titles.push_back(menu.toMap().value(QStringLiteral("title")).toString().toStdString());
        }
        return titles;
    }
    QVariantList menu(const std::string& title) const {
        for (const QVariant& menu : commands->menus()) {
            if (menu.toMap().value(QStringLiteral("title")).toString().toStdString() == title) {
                return menu.toMap().value(QStringLiteral("items")).toList();
            }
        }
        throw std::runtime_error("no menu " + title);
    }
    CommandItem& item(const std::string& title, const std::string& text) const {
        return find(menu(title), text);
    }
    CommandItem& tool(const std::string& text) const {
        for (const QVariant& cluster : commands->toolbar()) {
            for (const QVariant& entry : cluster.toList()) {
                if (entry.toMap().value(QStringLiteral("text")).toString().toStdString() == text) {
                    return *itemOf(entry.toMap());
                }
            }
        }
        throw std::runtime_error("no tool " + text);
    }
    static CommandItem& find(const QVariantList& entries, const std::string& text) {
        for (const QVariant& entry : entries) {
            if (entry.toMap().value(QStringLiteral("text")).toString().toStdString() == text) {
                return *itemOf(entry.toMap());
            }
        }
        throw std::runtime_error("no item " + text);
    }
    /// A menu as lines: text and key combinations, "---" for a separator.
    Texts listed(const std::string& title) const {
        Texts lines;
        for (const QVariant& variant : menu(title)) {
            const QVariantMap entry = variant.toMap();
            if (entry.value(QStringLiteral("separator")).toBool()) {
                lines.emplace_back("---");
                continue;
            }
            QStringList words{entry.value(QStringLiteral("text")).toString()};
            words += entry.value(QStringLiteral("shortcuts")).toStringList();
            lines.push_back(words.join(QStringLiteral(" | ")).toStdString());
        }
        return lines;
    }
    void showResult(bool streamlines) {
        SimulationResult result;
        result.surfaceField.emplace();
        result.vortex.emplace();
        if (streamlines) {
            result.streamlines.emplace();
        }
        app.parameters.setLastRunResult(result);
        turn();
    }
    void setPhase(const RunPhase& phase) {
        Probe::setPhase(app.simulation, phase);
        turn();
    }

    bool canUpdate = true;
    Texts done;
    std::vector<NotificationCenter::Token> tokens;
    BottomPanelModel panel{shared()};
    std::unique_ptr<WindowCommands> commands = std::make_unique<WindowCommands>(
        shared(), panel, PlatformWords::freedesktop(), doors(true));
};

TEST_F(WindowCommandsTest, theWidestLookThatHasTheRoomIsTaken) {
    const QList<qreal> widths{780, 720, 560};
    EXPECT_EQ(WindowCommands::firstFitting(widths, 1000), 0);
    EXPECT_EQ(WindowCommands::firstFitting(widths, 780), 0);
    EXPECT_EQ(WindowCommands::firstFitting(widths, 779.5), 1);
    EXPECT_EQ(WindowCommands::firstFitting(widths, 600), 2);
    EXPECT_EQ(WindowCommands::firstFitting(widths, 100), 2) << "the narrowest where none has";
    EXPECT_EQ(WindowCommands::firstFitting({}, 100), 0);
}

TEST_F(WindowCommandsTest, MenusInThePlatformsOrder) {
    EXPECT_EQ(titles(), (Texts{"File", "Edit", "View", "Samples", "Simulation", "Window", "Help"}));
}

TEST_F(WindowCommandsTest, ItemsOfTheMenus) {
    EXPECT_EQ(listed("File"),
        (Texts{"Open STL… | Ctrl+O", "---", "Export Results…", "---", "Quit | Ctrl+Q"}));
    EXPECT_EQ(listed("Edit"),
        (Texts{"Undo | Ctrl+Z", "Redo | Ctrl+Shift+Z", "---", "Cut | Ctrl+X", "Copy | Ctrl+C",
            "Paste | Ctrl+V", "Select All | Ctrl+A", "---", "Settings… | Ctrl+,"}));
    EXPECT_EQ(
        listed("View"), (Texts{"Iso View | Ctrl+1 | Ctrl+Alt+1", "Front View | Ctrl+2 | Ctrl+Alt+2",
                            "Side View | Ctrl+3 | Ctrl+Alt+3", "Top View | Ctrl+4 | Ctrl+Alt+4",
                            "Fit to View | Ctrl+0 | Ctrl+Alt+0", "Orient Model | Ctrl+Alt+R", "---",
                            "Animate Flow", "---", "Full Screen | F11"}));
    EXPECT_EQ(listed("Samples"), (Texts{"Sphere", "Rounded Box", "Simple Wing"}));
    EXPECT_EQ(listed("Simulation"), (Texts{"Run Simulation | Ctrl+R", "Cancel Simulation | Ctrl+.",
                                        "---", "Run NACA0012 Demo | Ctrl+Shift+D"}));
    EXPECT_EQ(listed("Window"), (Texts{"Minimize", "Zoom"}));
    EXPECT_EQ(listed("Help"),
        (Texts{"Ostrella Help | F1", "---", "About Ostrella", "Check for Updates…"}));
}

TEST_F(WindowCommandsTest, MenusInTheOrderOfTheMac) {
    commands = std::make_unique<WindowCommands>(shared(), panel, PlatformWords::mac(), doors(true));
    EXPECT_EQ(titles(),
        (Texts{"Ostrella", "File", "Edit", "View", "Samples", "Simulation", "Window", "Help"}));
    EXPECT_EQ(listed("Ostrella"), (Texts{"About Ostrella", "Check for Updates…", "---",
                                      "Settings… | Ctrl+,", "---", "Quit Ostrella | Ctrl+Q"}));
    EXPECT_EQ(listed("File"), (Texts{"Open STL… | Ctrl+O", "---", "Export Results…"}));
    EXPECT_EQ(listed("Edit"), (Texts{"Undo | Ctrl+Z", "Redo | Ctrl+Shift+Z", "---", "Cut | Ctrl+X",
                                  "Copy | Ctrl+C", "Paste | Ctrl+V", "Select All | Ctrl+A"}));
    EXPECT_EQ(listed("View").back(), "Enter Full Screen | Meta+Ctrl+F");
    EXPECT_EQ(listed("Window"), (Texts{"Minimize | Ctrl+M", "Zoom"}));
    EXPECT_EQ(listed("Help"), (Texts{"Ostrella Help | Ctrl+?"}));
}

TEST_F(WindowCommandsTest, NoKeyCombinationStandsForTwoItems) {
    std::map<QString, int> uses;
    for (const QVariant& menu : commands->menus()) {
        for (const QVariant& entry : menu.toMap().value(QStringLiteral("items")).toList()) {
            for (const QString& keys :
                entry.toMap().value(QStringLiteral("shortcuts")).toStringList()) {
                EXPECT_EQ(++uses[keys], 1) << keys.toStdString();
            }
        }
    }
    EXPECT_GT(uses.size(), 20U);
}

TEST_F(WindowCommandsTest, EachItemDoesItsOneThing) {
    placeModel();
    turn();
    item("File", "Open STL…").trigger();
    item("Samples", "Sphere").trigger();
    item("Samples", "Rounded Box").trigger();
    item("Samples", "Simple Wing").trigger();
    item("View", "Iso View").trigger();
    item("View", "Front View").trigger();
    item("View", "Side View").trigger();
    item("View", "Top View").trigger();
    item("View", "Fit to View").trigger();
    item("File", "Quit").trigger();
    item("Edit", "Settings…").trigger();
    item("Help", "About Ostrella").trigger();
    item("Help", "Check for Updates…").trigger();
    item("Help", "Ostrella Help").trigger();
    EXPECT_EQ(done,
        (Texts{"Ostrella.openSTLRequested", "Ostrella.sampleLoadRequested sphere",
            "Ostrella.sampleLoadRequested rounded_box", "Ostrella.sampleLoadRequested simple_wing",
            "Ostrella.viewPresetRequested iso", "Ostrella.viewPresetRequested front",
            "Ostrella.viewPresetRequested side", "Ostrella.viewPresetRequested top",
            "Ostrella.fitToViewRequested", "quit", "settings", "about", "updates", "help"}));
}

TEST_F(WindowCommandsTest, RunWithoutAModelIsPostedAndNothingFollows) {
    CommandItem& run = item("Simulation", "Run Simulation");
    EXPECT_TRUE(run.isEnabled());
    const auto lines = app.logStore.lines().size();
    run.trigger();
    turn();
    EXPECT_EQ(done, Texts{"Ostrella.runSimulationRequested"});
    EXPECT_EQ(app.simulation.phase(), RunPhase::idle());
    EXPECT_EQ(app.logStore.lines().size(), lines);
}

TEST_F(WindowCommandsTest, ARunTurnsRunAndCancelAround) {
    CommandItem& run = item("Simulation", "Run Simulation");
    CommandItem& cancel = item("Simulation", "Cancel Simulation");
    CommandItem& demo = item("Simulation", "Run NACA0012 Demo");
    EXPECT_FALSE(cancel.isEnabled());
    cancel.trigger();
    EXPECT_TRUE(done.empty());
    for (const RunPhase& phase :
        {RunPhase::meshing(), RunPhase::solving(), RunPhase::postProcessing()}) {
        setPhase(phase);
        EXPECT_FALSE(run.isEnabled());
        EXPECT_TRUE(cancel.isEnabled());
        EXPECT_FALSE(demo.isEnabled());
        EXPECT_FALSE(tool("Open STL").isEnabled());
        EXPECT_TRUE(item("File", "Open STL…").isEnabled());
        EXPECT_TRUE(item("Samples", "Sphere").isEnabled());
    }
    run.trigger();
    demo.trigger();
    EXPECT_TRUE(done.empty());
    setPhase(RunPhase::cancelled());
    EXPECT_TRUE(run.isEnabled());
    EXPECT_FALSE(cancel.isEnabled());
    EXPECT_TRUE(demo.isEnabled());
    EXPECT_TRUE(tool("Open STL").isEnabled());
}

TEST_F(WindowCommandsTest, ASecondPressBeforeTheScreenFollowsDoesNothing) {
    CommandItem& cancel = item("Simulation", "Cancel Simulation");
    setPhase(RunPhase::solving());
    cancel.trigger();
    Probe::setPhase(app.simulation, RunPhase::cancelled());
    cancel.trigger();
    EXPECT_EQ(done, Texts{"Ostrella.cancelSimulationRequested"});
}

TEST_F(WindowCommandsTest, ViewsNeedAScene) {
    const Texts names{"Iso View", "Front View", "Side View", "Top View", "Fit to View"};
    for (const std::string& name : names) {
        EXPECT_FALSE(item("View", name).isEnabled()) << name;
    }
    showResult(false);
    for (const std::string& name : names) {
        EXPECT_TRUE(item("View", name).isEnabled()) << name;
    }
    EXPECT_FALSE(item("View", "Orient Model").isEnabled());
}

TEST_F(WindowCommandsTest, OrientingNeedsAModelAtRest) {
    CommandItem& orient = item("View", "Orient Model");
    EXPECT_FALSE(orient.isEnabled());
    placeModel();
    turn();
    EXPECT_TRUE(orient.isEnabled());
    orient.trigger();
    turn();
    EXPECT_TRUE(app.renderSettings.orientMode());
    EXPECT_TRUE(orient.isChecked());
    app.parameters.setLoadingFileName("b.stl");
    turn();
    EXPECT_FALSE(orient.isEnabled());
    app.parameters.setLoadingFileName(std::nullopt);
    setPhase(RunPhase::meshing());
    EXPECT_FALSE(orient.isEnabled());
}

TEST_F(WindowCommandsTest, AnimatingNeedsStreamlines) {
    CommandItem& animate = item("View", "Animate Flow");
    showResult(false);
    EXPECT_FALSE(animate.isEnabled());
    showResult(true);
    EXPECT_TRUE(animate.isEnabled());
    EXPECT_TRUE(animate.isChecked());
    animate.trigger();
    turn();
    EXPECT_FALSE(app.renderSettings.flowAnimation());
    EXPECT_FALSE(animate.isChecked());
    app.parameters.setLastRunResult(std::nullopt);
    turn();
    EXPECT_FALSE(animate.isEnabled());
}

TEST_F(WindowCommandsTest, ToolsThatTurnALayer) {
    showResult(true);
    const RenderSettings& render = app.renderSettings;
    const std::vector<std::pair<std::string, bool (RenderSettings::*)() const>> layers{
        {"Grid", &RenderSettings::showGrid}, {"Wireframe", &RenderSettings::wireframe},
        {"Cp", &RenderSettings::colormapEnabled}, {"Streams", &RenderSettings::streamlinesEnabled},
        {"Vortex", &RenderSettings::vortexEnabled}};
    for (const auto& [name, isOn] : layers) {
        const bool before = (render.*isOn)();
        EXPECT_EQ(tool(name).isChecked(), before) << name;
        tool(name).trigger();
        turn();
        EXPECT_EQ((render.*isOn)(), !before) << name;
        EXPECT_EQ(tool(name).isChecked(), !before) << name;
    }
    EXPECT_TRUE(done.empty());
}

TEST_F(WindowCommandsTest, ToolsOfAResultNeedWhatTheyShow) {
    for (const char* name : {"Cp", "Streams", "Vortex", "Export Results"}) {
        EXPECT_FALSE(tool(name).isEnabled()) << name;
        tool(name).trigger();
    }
    EXPECT_TRUE(done.empty());
    EXPECT_FALSE(app.renderSettings.colormapEnabled());
    app.parameters.setLastRunResult(SimulationResult());
    turn();
    EXPECT_FALSE(tool("Cp").isEnabled());
    EXPECT_FALSE(tool("Streams").isEnabled());
    EXPECT_FALSE(tool("Vortex").isEnabled());
    EXPECT_TRUE(tool("Export Results").isEnabled());
    tool("Export Results").trigger();
    item("File", "Export Results…").trigger();
    EXPECT_EQ(done, (Texts{"export", "export"}));
}

TEST_F(WindowCommandsTest, ResetViewAsksForANewFrame) {
    const QUuid before = app.renderSettings.reframeRequestID();
    tool("Reset View").trigger();
    EXPECT_NE(app.renderSettings.reframeRequestID(), before);
}

TEST_F(WindowCommandsTest, TheLogToolTellsWhatItWillDo) {
    EXPECT_EQ(tool("Log").help().toStdString(), "Hide the log panel");
    EXPECT_EQ(tool("Log").label().toStdString(), "Hide log panel");
    tool("Log").trigger();
    turn();
    EXPECT_FALSE(panel.isVisible());
    EXPECT_EQ(tool("Log").help().toStdString(), "Show the log panel");
    EXPECT_EQ(tool("Log").label().toStdString(), "Show log panel");
    tool("Log").trigger();
    EXPECT_TRUE(panel.isVisible());
}

TEST_F(WindowCommandsTest, ToolsThatLeadOutside) {
    tool("Open STL").trigger();
    tool("Settings").trigger();
    tool("Help").trigger();
    EXPECT_EQ(done, (Texts{"Ostrella.openSTLRequested", "settings", "help"}));
    EXPECT_EQ(tool("Open STL").help().toStdString(), "Open STL (Ctrl+O)");
    EXPECT_EQ(tool("Settings").help().toStdString(), "Settings (Ctrl+,)");
}

TEST_F(WindowCommandsTest, ADoorThatIsNotThereIsClosed) {
    commands = std::make_unique<WindowCommands>(
        shared(), panel, PlatformWords::freedesktop(), doors(false));
    for (CommandItem* closed : {&item("Edit", "Settings…"), &item("Help", "About Ostrella"),
             &item("Help", "Check for Updates…"), &tool("Settings")}) {
        EXPECT_FALSE(closed->isEnabled());
        closed->trigger();
    }
    EXPECT_TRUE(done.empty());
}

TEST_F(WindowCommandsTest, UpdatesAreLookedForWhenTheyCanBe) {
    CommandItem& updates = item("Help", "Check for Updates…");
    EXPECT_TRUE(updates.isEnabled());
    canUpdate = false;
    commands->scheduleRefresh();
    turn();
    EXPECT_FALSE(updates.isEnabled());
}

TEST_F(WindowCommandsTest, EditAndWindowItemsAreHandedToTheWindow) {
    Texts operations;
    const auto keep = [&operations](
                          const QString& name) { operations.push_back(name.toStdString()); };
    QObject::connect(commands.get(), &WindowCommands::editRequested, keep);
    QObject::connect(commands.get(), &WindowCommands::windowRequested, keep);
    for (const char* name : {"Undo", "Redo", "Cut", "Copy", "Paste", "Select All"}) {
        item("Edit", name).trigger();
    }
    item("Window", "Minimize").trigger();
    item("Window", "Zoom").trigger();
    item("View", "Full Screen").trigger();
    EXPECT_EQ(operations, (Texts{"undo", "redo", "cut", "copy", "paste", "selectAll", "minimize",
                              "zoom", "fullScreen"}));
}

} // namespace
} // namespace ostrella::test
