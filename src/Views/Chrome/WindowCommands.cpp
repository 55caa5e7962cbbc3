#include "Views/Chrome/WindowCommands.h"

#include "Models/NotificationCenter.h"
#include "Models/RenderSettings.h"
#include "Models/SimulationParameters.h"
#include "Solver/Run/SimulationController.h"
#include "Views/Panel/BottomPanelModel.h"
#include "Views/QStringOf.h"

#include <QUuid>

#include <algorithm>
#include <any>
#include <string>
#include <utility>

namespace ostrella {

using Command = CommandTable::Command;

namespace {

/// An item of which only the command counts.
CommandTable::Item plain(Command command) {
    CommandTable::Item item;
    item.command = command;
    return item;
}

QVariantMap separator() {
    return {{QStringLiteral("separator"), true}};
}

/// A boolean of the render settings that a command turns.
struct Layer {
    bool (RenderSettings::*get)() const;
    void (RenderSettings::*set)(bool);
};

std::optional<Layer> layerOf(Command command) {
    switch (command) {
    case Command::grid:
        return Layer{&RenderSettings::showGrid, &RenderSettings::setShowGrid};
    case Command::wireframe:
        return Layer{&RenderSettings::wireframe, &RenderSettings::setWireframe};
    case Command::cp:
        return Layer{&RenderSettings::colormapEnabled, &RenderSettings::setColormapEnabled};
    case Command::streams:
        return Layer{&RenderSettings::streamlinesEnabled, &RenderSettings::setStreamlinesEnabled};
    case Command::vortex:
        return Layer{&RenderSettings::vortexEnabled, &RenderSettings::setVortexEnabled};
    case Command::animateFlow:
        return Layer{&RenderSettings::flowAnimation, &RenderSettings::setFlowAnimation};
    case Command::orientModel:
        return Layer{&RenderSettings::orientMode, &RenderSettings::setOrientMode};
    default:
        return std::nullopt;
    }
}

} // namespace

WindowCommands::WindowCommands(const SharedObjects& shared, BottomPanelModel& panel,
    const PlatformWords& words, Doors doors, QObject* parent)
    : QObject(parent),
      shared_(shared),
      panel_(panel),
      doors_(std::move(doors)),
      update_(this, [this] {
          for (CommandItem* item : items_) {
              item->refresh();
          }
      }) {
    makeMenus(words);
    makeToolbar(words);
    observe();
}

CommandItem* WindowCommands::add(CommandItem::Rules rules) {
    return items_.emplace_back(new CommandItem(std::move(rules), this));
}

CommandItem* WindowCommands::make(const CommandTable::Item& item) {
    const Command command = item.command;
    CommandItem::Rules rules{.action = action(item),
        .isEnabled =
            [this, command] {
                return hasDoor(command) && CommandTable::isEnabled(command, state());
            },
        .isChecked = checkedRule(command)};
    if (command == Command::log) {
        rules.help = [this] { return qStringOf(CommandTable::logHelp(panel_.isVisible())); };
        rules.label = [this] { return qStringOf(CommandTable::logName(panel_.isVisible())); };
    } else {
        rules.help = [help = qStringOf(item.help)] { return help; };
    }
    return add(std::move(rules));
}

std::function<void()> WindowCommands::action(const CommandTable::Item& item) {
    if (!item.notification.empty()) {
        return [this, name = item.notification, object = item.object] {
            shared_.notifications.post(name, object.empty() ? std::any() : std::any(object));
        };
    }
    if (const auto layer = layerOf(item.command)) {
        return [render = &shared_.renderSettings, layer = *layer] {
            (render->*layer.set)(!(render->*layer.get)());
        };
    }
    switch (item.command) {
    case Command::resetView:
        return [this] { shared_.renderSettings.setReframeRequestID(QUuid::createUuid()); };
    case Command::log:
        return [this] { panel_.setVisible(!panel_.isVisible()); };
    case Command::exportResults:
        return doors_.exportResults;
    case Command::help:
        return doors_.openHelp;
    case Command::settings:
        return doors_.showSettings;
    case Command::about:
        return doors_.showAbout;
    case Command::checkForUpdates:
        return doors_.checkForUpdates;
    default:
        return {};
    }
}

std::function<bool()> WindowCommands::checkedRule(Command command) {
    if (const auto layer = layerOf(command)) {
        return [render = &shared_.renderSettings, get = layer->get] { return (render->*get)(); };
    }
    return {};
}

bool WindowCommands::hasDoor(Command command) const {
    switch (command) {
    case Command::settings:
        return static_cast<bool>(doors_.showSettings);
    case Command::about:
        return static_cast<bool>(doors_.showAbout);
    case Command::checkForUpdates:
        return static_cast<bool>(doors_.checkForUpdates);
    default:
        return true;
    }
}

CommandTable::State WindowCommands::state() const {
    CommandTable::State state;
    state.phase = shared_.simulation.phase();
    state.hasMesh = shared_.parameters.mesh().has_value();
    state.isLoading = shared_.parameters.loadingFileName().has_value();
    state.setResult(shared_.parameters.lastRunResult());
    state.canCheckForUpdates = doors_.canCheckForUpdates && doors_.canCheckForUpdates();
    return state;
}

QVariantMap WindowCommands::entryOf(
    const QString& text, const QStringList& shortcuts, bool isToggle, CommandItem* item) const {
    return {{QStringLiteral("separator"), false}, {QStringLiteral("text"), text},
        {QStringLiteral("shortcuts"), shortcuts}, {QStringLiteral("toggle"), isToggle},
        {QStringLiteral("everywhere"), false},
        {QStringLiteral("item"), QVariant::fromValue<QObject*>(item)}};
}

QVariantMap WindowCommands::entry(const CommandTable::Item& item) {
    if (item.command == Command::separator) {
        return separator();
    }
    QStringList shortcuts;
    for (const std::string& shortcut : item.shortcuts) {
        shortcuts.append(QString::fromStdString(shortcut));
    }
    return entryOf(qStringOf(item.text), shortcuts, item.isToggle, make(item));
}

QVariantMap WindowCommands::standard(
    const QString& text, const QStringList& shortcuts, Signal signal, const QString& operation) {
    return entryOf(text, shortcuts, false, add({.action = [this, signal, operation] {
        Q_EMIT(this->*signal)
        (operation);
    }}));
}

QVariantList WindowCommands::entries(CommandTable::Menu menu) {
    QVariantList entries;
    for (const CommandTable::Item& item : CommandTable::items(menu)) {
        entries.append(entry(item));
    }
    return entries;
}

void WindowCommands::addMenu(const QString& title, const QVariantList& entries, int letter) {
    QString mnemonic = title;
    mnemonic.insert(letter, QLatin1Char('&'));
    menus_.append(QVariantMap{{QStringLiteral("title"), title},
        {QStringLiteral("mnemonic"), mnemonic}, {QStringLiteral("items"), entries}});
}

void WindowCommands::makeMenus(const PlatformWords& words) {
    using CommandTable::Menu;
    const bool isMac = words.systemName == PlatformWords::mac().systemName;
    const auto own = [this](Menu menu, int letter = 0) {
        addMenu(qStringOf(CommandTable::menuTitle(menu)), entries(menu), letter);
    };
    const auto text = [](const char* utf8) { return QString::fromUtf8(utf8); };
    const auto edit = [&](const char* title, const char* shortcut, const char* operation) {
        return standard(
            text(title), {text(shortcut)}, &WindowCommands::editRequested, text(operation));
    };
    const auto window = [&](const char* title, const QStringList& shortcuts,
                            const char* operation) {
        return standard(text(title), shortcuts, &WindowCommands::windowRequested, text(operation));
    };
    const auto settings = [&] {
        return entryOf(text("Settings…"), {text("Ctrl+,")}, false, make(plain(Command::settings)));
    };
    const auto quit = [&](const char* title) {
        QVariantMap entry =
            entryOf(text(title), {text("Ctrl+Q")}, false, add({.action = doors_.quit}));
        entry.insert(QStringLiteral("everywhere"), true);
        return entry;
    };

    // The Mac has a menu with the application's name, which holds what stands in File, Edit and
    // Help elsewhere.
    if (isMac) {
        QVariantList application = entries(Menu::application);
        application << separator() << settings() << separator() << quit("Quit Ostrella");
        addMenu(qStringOf(CommandTable::menuTitle(Menu::application)), application);
    }

    QVariantList file = entries(Menu::file);
    file << separator()
         << entryOf(text("Export Results…"), {}, false, make(plain(Command::exportResults)));
    if (!isMac) {
        file << separator() << quit("Quit");
    }
    addMenu(qStringOf(CommandTable::menuTitle(Menu::file)), file);

    QVariantList editing{edit("Undo", "Ctrl+Z", "undo"), edit("Redo", "Ctrl+Shift+Z", "redo"),
        separator(), edit("Cut", "Ctrl+X", "cut"), edit("Copy", "Ctrl+C", "copy"),
        edit("Paste", "Ctrl+V", "paste"), edit("Select All", "Ctrl+A", "selectAll")};
    if (!isMac) {
        editing << separator() << settings();
    }
    addMenu(text("Edit"), editing);

    QVariantList view = entries(Menu::view);
    view.append(isMac ? window("Enter Full Screen", {text("Meta+Ctrl+F")}, "fullScreen")
                      : window("Full Screen", {text("F11")}, "fullScreen"));
    addMenu(qStringOf(CommandTable::menuTitle(Menu::view)), view);
    own(Menu::samples);
    own(Menu::simulation, 2); // the S is that of the samples
    addMenu(text("Window"),
        {window("Minimize", isMac ? QStringList{text("Ctrl+M")} : QStringList{}, "minimize"),
            window("Zoom", {}, "zoom")});

    QVariantList help{entryOf(
        text("Ostrella Help"), {text(isMac ? "Ctrl+?" : "F1")}, false, make(plain(Command::help)))};
    if (!isMac) {
        help << separator() << entries(Menu::application);
    }
    addMenu(text("Help"), help);
}

void WindowCommands::makeToolbar(const PlatformWords& words) {
    for (const auto& cluster : CommandTable::toolbar(words)) {
        QVariantList entries;
        for (const CommandTable::Item& item : cluster) {
            entries.append(QVariantMap{{QStringLiteral("text"), qStringOf(item.text)},
                {QStringLiteral("symbol"), qStringOf(item.symbol)},
                {QStringLiteral("toggle"), item.isToggle},
                {QStringLiteral("item"), QVariant::fromValue<QObject*>(make(item))}});
        }
        toolbar_.append(QVariant(entries));
    }
}

int WindowCommands::firstFitting(const QList<qreal>& widths, qreal room) {
    const auto fitting =
        std::find_if(widths.begin(), widths.end(), [room](qreal width) { return width <= room; });
    return static_cast<int>(
        std::min<qsizetype>(fitting - widths.begin(), std::max<qsizetype>(widths.size() - 1, 0)));
}

void WindowCommands::observe() {
    const auto refresh = [this] { scheduleRefresh(); };
    const auto* parameters = &shared_.parameters;
    connect(parameters, &SimulationParameters::meshChanged, this, refresh);
    connect(parameters, &SimulationParameters::lastRunResultChanged, this, refresh);
    connect(parameters, &SimulationParameters::loadingFileNameChanged, this, refresh);
    connect(&shared_.simulation, &SimulationController::phaseChanged, this, refresh);
    const auto* render = &shared_.renderSettings;
    connect(render, &RenderSettings::showGridChanged, this, refresh);
    connect(render, &RenderSettings::wireframeChanged, this, refresh);
    connect(render, &RenderSettings::colormapEnabledChanged, this, refresh);
    connect(render, &RenderSettings::streamlinesEnabledChanged, this, refresh);
    connect(render, &RenderSettings::vortexEnabledChanged, this, refresh);
    connect(render, &RenderSettings::flowAnimationChanged, this, refresh);
    connect(render, &RenderSettings::orientModeChanged, this, refresh);
    connect(&panel_, &BottomPanelModel::isVisibleChanged, this, refresh);
}

} // namespace ostrella
