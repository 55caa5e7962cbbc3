#include "Views/Format/CommandTable.h"

#include "Models/NotificationCenter.h"
#include "Models/ViewPreset.h"
#include "Solver/Run/SampleLoader.h"
#include "Views/Format/AppLinks.h"
#include "Views/Format/ViewportFormat.h"

#include <fmt/format.h>

namespace ostrella::CommandTable {

namespace {

Item separator() {
    return {};
}

/// An item of a menu.
Item entry(Command command, std::string text, std::vector<std::string> shortcuts = {},
    std::string_view notification = {}, std::string object = {}) {
    Item item;
    item.command = command;
    item.text = std::move(text);
    item.shortcuts = std::move(shortcuts);
    item.notification = notification;
    item.object = std::move(object);
    return item;
}

Item toggle(Item item) {
    item.isToggle = true;
    return item;
}

/// An item of the toolbar.
Item button(Command command, std::string text, std::string symbol, std::string help,
    std::string_view notification = {}) {
    Item item;
    item.command = command;
    item.text = std::move(text);
    item.symbol = std::move(symbol);
    item.help = std::move(help);
    item.notification = notification;
    return item;
}

std::vector<Item> sampleItems() {
    std::vector<Item> items;
    for (const SampleLoader::Sample& sample : SampleLoader::samples) {
        items.push_back(entry(Command::loadSample, std::string(sample.displayName), {},
            Notifications::sampleLoadRequested, std::string(sample.id)));
    }
    return items;
}

std::vector<Item> viewItems() {
    std::vector<Item> items;
    for (const ViewPreset preset : allViewPresets) {
        const char key = ViewportFormat::viewShortcutKey(preset);
        items.push_back(
            entry(Command::showView, fmt::format("{} View", ViewportFormat::viewName(preset)),
                {fmt::format("Ctrl+{}", key), fmt::format("Ctrl+Alt+{}", key)},
                Notifications::viewPresetRequested, std::string(rawValue(preset))));
    }
    items.push_back(entry(Command::fitToView, "Fit to View", {"Ctrl+0", "Ctrl+Alt+0"},
        Notifications::fitToViewRequested));
    items.push_back(toggle(entry(Command::orientModel, "Orient Model", {"Ctrl+Alt+R"})));
    items.push_back(separator());
    items.push_back(toggle(entry(Command::animateFlow, "Animate Flow")));
    items.push_back(separator());
    return items;
}

} // namespace

std::string_view menuTitle(Menu menu) {
    switch (menu) {
    case Menu::application:
        return "Ostrella";
    case Menu::file:
        return "File";
    case Menu::samples:
        return "Samples";
    case Menu::simulation:
        return "Simulation";
    case Menu::view:
        return "View";
    }
    return {};
}

std::vector<Item> items(Menu menu) {
    switch (menu) {
    case Menu::application:
        return {entry(Command::about, "About Ostrella"),
            entry(Command::checkForUpdates, "Check for Updates…")};
    case Menu::file:
        return {entry(Command::openFile, "Open STL…", {"Ctrl+O"}, Notifications::openSTLRequested)};
    case Menu::samples:
        return sampleItems();
    case Menu::simulation:
        return {entry(Command::runSimulation, "Run Simulation", {"Ctrl+R"},
                    Notifications::runSimulationRequested),
            entry(Command::cancelSimulation, "Cancel Simulation", {"Ctrl+."},
                Notifications::cancelSimulationRequested),
            separator(),
            entry(Command::runDemo, "Run NACA0012 Demo", {"Ctrl+Shift+D"},
                Notifications::runDemoRequested)};
    case Menu::view:
        return viewItems();
    }
    return {};
}

std::vector<std::vector<Item>> toolbar(const PlatformWords& words) {
    return {
        {
            button(Command::openSTL, "Open STL", "cube.transparent",
                fmt::format("Open STL ({})", words.openShortcut), Notifications::openSTLRequested),
        },
        {
            button(Command::resetView, "Reset View", "scope",
                "Reset View · also: double-click the viewport"),
            toggle(button(Command::grid, "Grid", "square.grid.3x3", "Toggle ground grid")),
            toggle(button(Command::wireframe, "Wireframe", "grid", "Toggle wireframe shading")),
        },
        {
            toggle(button(
                Command::cp, "Cp", "paintpalette", "Show pressure coefficient on the surface")),
            toggle(button(Command::streams, "Streams", "wind",
                "Show velocity streamlines (RK4 from inlet rake)")),
            toggle(button(
                Command::vortex, "Vortex", "tornado", "Show Q-criterion vortex iso-surface")),
            button(Command::exportResults, "Export Results", "square.and.arrow.up",
                "Export the result files to a folder"),
        },
        {
            button(Command::log, "Log", "rectangle.bottomthird.inset.filled", ""),
            button(Command::settings, "Settings", "gearshape",
                fmt::format("Settings ({})", words.settingsShortcut)),
            button(Command::help, "Help", "questionmark.circle", AppLinks::helpToolTip()),
        },
    };
}

std::string_view logHelp(bool isVisible) {
    return isVisible ? "Hide the log panel" : "Show the log panel";
}

std::string_view logName(bool isVisible) {
    return isVisible ? "Hide log panel" : "Show log panel";
}

void State::setResult(const std::optional<SimulationResult>& result) {
    hasResult = result.has_value();
    hasSurfaceField = result && result->surfaceField;
    hasStreamlines = result && result->streamlines;
    hasVortex = result && result->vortex;
}

bool isEnabled(Command command, const State& state) {
    switch (command) {
    case Command::separator:
        return false;
    case Command::about:
    case Command::openFile:
    case Command::loadSample:
    case Command::resetView:
    case Command::grid:
    case Command::wireframe:
    case Command::log:
    case Command::settings:
    case Command::help:
        return true;
    case Command::checkForUpdates:
        return state.canCheckForUpdates;
    case Command::runSimulation:
        // Also without a model: the run then does nothing.
    case Command::runDemo:
    case Command::openSTL:
        return !state.phase.isActive();
    case Command::cancelSimulation:
        return state.phase.isActive();
    case Command::showView:
    case Command::fitToView:
        return ViewportFormat::hasScene(state.hasMesh, state.hasResult);
    case Command::orientModel:
        return ViewportFormat::canOrient(state.hasMesh, state.phase, state.isLoading);
    case Command::cp:
        return state.hasSurfaceField;
    case Command::animateFlow:
    case Command::streams:
        return state.hasStreamlines;
    case Command::vortex:
        return state.hasVortex;
    case Command::exportResults:
        return state.hasResult;
    }
    return false;
}

} // namespace ostrella::CommandTable
