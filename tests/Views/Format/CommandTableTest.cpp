#include "Views/Format/CommandTable.h"

#include "Models/NotificationCenter.h"
#include "Views/Format/AppLinks.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ostrella {
namespace {

using namespace CommandTable;
using Texts = std::vector<std::string>;

/// A menu's items as lines: text, shortcuts, notification and object.
Texts listed(Menu menu) {
    Texts lines;
    for (const Item& item : items(menu)) {
        std::string line = item.command == Command::separator ? "---" : item.text;
        for (const std::string& shortcut : item.shortcuts) {
            line += " | " + shortcut;
        }
        if (!item.notification.empty()) {
            line += " > " + std::string(item.notification);
        }
        if (!item.object.empty()) {
            line += " " + item.object;
        }
        if (item.isToggle) {
            line += " (toggle)";
        }
        lines.push_back(line);
    }
    return lines;
}

TEST(Menus, Application) {
    EXPECT_EQ(listed(Menu::application), (Texts{"About Ostrella", "Check for Updates…"}));
}

TEST(Menus, File) {
    EXPECT_EQ(listed(Menu::file), (Texts{"Open STL… | Ctrl+O > Ostrella.openSTLRequested"}));
}

TEST(Menus, Samples) {
    EXPECT_EQ(
        listed(Menu::samples), (Texts{"Sphere > Ostrella.sampleLoadRequested sphere",
                                   "Rounded Box > Ostrella.sampleLoadRequested rounded_box",
                                   "Simple Wing > Ostrella.sampleLoadRequested simple_wing"}));
}

TEST(Menus, Simulation) {
    EXPECT_EQ(listed(Menu::simulation),
        (Texts{"Run Simulation | Ctrl+R > Ostrella.runSimulationRequested",
            "Cancel Simulation | Ctrl+. > Ostrella.cancelSimulationRequested", "---",
            "Run NACA0012 Demo | Ctrl+Shift+D > Ostrella.runDemoRequested"}));
}

TEST(Menus, View) {
    EXPECT_EQ(listed(Menu::view),
        (Texts{"Iso View | Ctrl+1 | Ctrl+Alt+1 > Ostrella.viewPresetRequested iso",
            "Front View | Ctrl+2 | Ctrl+Alt+2 > Ostrella.viewPresetRequested front",
            "Side View | Ctrl+3 | Ctrl+Alt+3 > Ostrella.viewPresetRequested side",
            "Top View | Ctrl+4 | Ctrl+Alt+4 > Ostrella.viewPresetRequested top",
            "Fit to View | Ctrl+0 | Ctrl+Alt+0 > Ostrella.fitToViewRequested",
            "Orient Model | Ctrl+Alt+R (toggle)", "---", "Animate Flow (toggle)", "---"}));
}

TEST(Menus, Titles) {
    Texts titles;
    for (const Menu menu : allMenus) {
        titles.emplace_back(menuTitle(menu));
    }
    EXPECT_EQ(titles, (Texts{"Ostrella", "File", "Samples", "Simulation", "View"}));
}

/// A cluster's items as lines: text, symbol, tool tip.
Texts listedCluster(std::size_t cluster, const PlatformWords& words) {
    Texts lines;
    const auto clusters = toolbar(words);
    for (const Item& item : clusters[cluster]) {
        lines.push_back(item.text + " | " + item.symbol + " | " + item.help +
                        (item.isToggle ? " (toggle)" : ""));
    }
    return lines;
}

TEST(Toolbar, LeftCluster) {
    EXPECT_EQ(listedCluster(0, PlatformWords::mac()),
        (Texts{"Open STL | cube.transparent | Open STL (⌘O)"}));
    EXPECT_EQ(listedCluster(0, PlatformWords::freedesktop()),
        (Texts{"Open STL | cube.transparent | Open STL (Ctrl+O)"}));
    EXPECT_EQ(toolbar(PlatformWords::mac())[0][0].notification, Notifications::openSTLRequested);
}

TEST(Toolbar, ViewCluster) {
    EXPECT_EQ(listedCluster(1, PlatformWords::mac()),
        (Texts{"Reset View | scope | Reset View · also: double-click the viewport",
            "Grid | square.grid.3x3 | Toggle ground grid (toggle)",
            "Wireframe | grid | Toggle wireframe shading (toggle)"}));
}

TEST(Toolbar, FieldsCluster) {
    EXPECT_EQ(listedCluster(2, PlatformWords::mac()),
        (Texts{"Cp | paintpalette | Show pressure coefficient on the surface (toggle)",
            "Streams | wind | Show velocity streamlines (RK4 from inlet rake) (toggle)",
            "Vortex | tornado | Show Q-criterion vortex iso-surface (toggle)",
            "Export Results | square.and.arrow.up | Export the result files to a folder"}));
}

TEST(Toolbar, RightCluster) {
    EXPECT_EQ(listedCluster(3, PlatformWords::mac()),
        (Texts{"Log | rectangle.bottomthird.inset.filled | ",
            "Settings | gearshape | Settings (⌘,)",
            "Help | questionmark.circle | " + AppLinks::helpToolTip()}));
    EXPECT_EQ(listedCluster(3, PlatformWords::freedesktop())[1],
        "Settings | gearshape | Settings (Ctrl+,)");
    EXPECT_EQ(logHelp(true), "Hide the log panel");
    EXPECT_EQ(logHelp(false), "Show the log panel");
    EXPECT_EQ(logName(true), "Hide log panel");
    EXPECT_EQ(logName(false), "Show log panel");
}

State withPhase(RunPhase phase) {
    State state;
    state.phase = std::move(phase);
    return state;
}

TEST(Enabled, WhatARunForbids) {
    for (const RunPhase& phase :
        {RunPhase::meshing(), RunPhase::solving(), RunPhase::postProcessing()}) {
        const State state = withPhase(phase);
        EXPECT_FALSE(isEnabled(Command::runSimulation, state));
        EXPECT_FALSE(isEnabled(Command::runDemo, state));
        EXPECT_FALSE(isEnabled(Command::openSTL, state));
        EXPECT_TRUE(isEnabled(Command::openFile, state));
        EXPECT_TRUE(isEnabled(Command::loadSample, state));
        EXPECT_TRUE(isEnabled(Command::cancelSimulation, state));
    }
    for (const RunPhase& phase : {RunPhase::idle(), RunPhase::finished(true),
             RunPhase::failed("mesh", "x"), RunPhase::cancelled()}) {
        const State state = withPhase(phase);
        // Also with no model: the run then does nothing.
        EXPECT_TRUE(isEnabled(Command::runSimulation, state));
        EXPECT_TRUE(isEnabled(Command::runDemo, state));
        EXPECT_TRUE(isEnabled(Command::openSTL, state));
        EXPECT_FALSE(isEnabled(Command::cancelSimulation, state));
    }
}

TEST(Enabled, ViewsNeedAScene) {
    State state;
    EXPECT_FALSE(isEnabled(Command::showView, state));
    EXPECT_FALSE(isEnabled(Command::fitToView, state));
    state.hasMesh = true;
    EXPECT_TRUE(isEnabled(Command::showView, state));
    state.hasMesh = false;
    state.hasResult = true;
    EXPECT_TRUE(isEnabled(Command::fitToView, state));
}

TEST(Enabled, OrientingNeedsAModelAtRest) {
    State state;
    EXPECT_FALSE(isEnabled(Command::orientModel, state));
    state.hasMesh = true;
    EXPECT_TRUE(isEnabled(Command::orientModel, state));
    state.isLoading = true;
    EXPECT_FALSE(isEnabled(Command::orientModel, state));
    state.isLoading = false;
    state.phase = RunPhase::meshing();
    EXPECT_FALSE(isEnabled(Command::orientModel, state));
}

TEST(Enabled, FieldsNeedTheirResult) {
    SimulationResult result;
    State state;
    state.setResult(result);
    EXPECT_TRUE(isEnabled(Command::exportResults, state));
    EXPECT_FALSE(isEnabled(Command::cp, state));
    EXPECT_FALSE(isEnabled(Command::streams, state));
    EXPECT_FALSE(isEnabled(Command::vortex, state));
    EXPECT_FALSE(isEnabled(Command::animateFlow, state));
    result.surfaceField = SurfaceField();
    result.streamlines = Streamlines();
    result.vortex = IsoSurface();
    state.setResult(result);
    EXPECT_TRUE(isEnabled(Command::cp, state));
    EXPECT_TRUE(isEnabled(Command::streams, state));
    EXPECT_TRUE(isEnabled(Command::vortex, state));
    EXPECT_TRUE(isEnabled(Command::animateFlow, state));
    state.setResult(std::nullopt);
    EXPECT_FALSE(isEnabled(Command::exportResults, state));
    EXPECT_FALSE(isEnabled(Command::cp, state));
}

TEST(Enabled, Always) {
    for (const Command command :
        {Command::about, Command::openFile, Command::loadSample, Command::resetView, Command::grid,
            Command::wireframe, Command::log, Command::settings, Command::help}) {
        EXPECT_TRUE(isEnabled(command, State()));
    }
}

TEST(Enabled, UpdatesAskTheUpdater) {
    State state;
    EXPECT_FALSE(isEnabled(Command::checkForUpdates, state));
    state.canCheckForUpdates = true;
    EXPECT_TRUE(isEnabled(Command::checkForUpdates, state));
}

} // namespace
} // namespace ostrella
