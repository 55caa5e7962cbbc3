#pragma once

#include "Models/PlatformWords.h"
#include "Models/RunState.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella {

/// Everything that the menus and the toolbar can do, declared once.
namespace CommandTable {

enum class Command {
    separator,
    // Menus.
    about,
    checkForUpdates,
    openFile,
    loadSample,
    runSimulation,
    cancelSimulation,
    runDemo,
    showView,
    fitToView,
    orientModel,
    animateFlow,
    // Toolbar.
    openSTL,
    resetView,
    grid,
    wireframe,
    cp,
    streams,
    vortex,
    exportResults,
    log,
    settings,
    help,
};

/// One item of a menu or of the toolbar.
struct Item {
    Command command = Command::separator;
    std::string text;
    /// The tool tip; empty in menus, and for the log item, whose tool tip is logHelp().
    std::string help;
    /// Name of the symbol; empty in menus.
    std::string symbol;
    /// Key sequences in portable words, all of which work; the first is shown. "Ctrl" is the
    /// command key on a Mac.
    std::vector<std::string> shortcuts;
    /// What is posted; empty for an item that does something else.
    std::string_view notification;
    /// What travels with it, if anything: a sample's or a view's name.
    std::string object;
    /// The item shows and switches a state.
    bool isToggle = false;

    bool operator==(const Item&) const = default;
};

/// The menus of the application's own; the platform's standard ones are not among them.
enum class Menu { application, file, samples, simulation, view };

inline constexpr std::array allMenus{
    Menu::application, Menu::file, Menu::samples, Menu::simulation, Menu::view};

/// Title of a menu; the application menu has the application's name.
std::string_view menuTitle(Menu menu);

/// Items of a menu, in their order.
std::vector<Item> items(Menu menu);

/// The toolbar's clusters, in their order: left, view, fields, right.
std::vector<std::vector<Item>> toolbar(const PlatformWords& words);

/// Tool tip of the log item, and its name as it is read out.
std::string_view logHelp(bool isVisible);
std::string_view logName(bool isVisible);

/// What the items' states depend on.
struct State {
    RunPhase phase;
    bool hasMesh = false;
    bool isLoading = false;
    bool hasResult = false;
    /// Of the result.
    bool hasSurfaceField = false;
    bool hasStreamlines = false;
    bool hasVortex = false;
    bool canCheckForUpdates = false;

    /// What a result makes possible.
    void setResult(const std::optional<SimulationResult>& result);
};

bool isEnabled(Command command, const State& state);

} // namespace CommandTable

} // namespace ostrella
