#pragma once

#include "Views/Chrome/CommandItem.h"
#include "Views/Format/CommandTable.h"
#include "Views/Format/QueuedUpdate.h"
#include "Views/SharedObjects.h"

#include <QList>
#include <QObject>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <vector>

namespace ostrella {

class BottomPanelModel;
struct PlatformWords;

/// The commands of the menu bar and the toolbar: what each does and when it can. One posts a
/// notification, calls one operation or turns one boolean; none reaches into a view. Main thread
/// only.
class WindowCommands final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the window")

    /// The menus from the left: maps with `title`, `mnemonic` (the title with an ampersand before
    /// the letter that opens it with Alt) and `items`; an item is a map with `separator`, `text`,
    /// `shortcuts` (a list), `everywhere` (they count in the windows beside the main one too),
    /// `toggle` and `item`, a CommandItem.
    Q_PROPERTY(QVariantList menus READ menus CONSTANT)
    /// The clusters from the left, the last at the right end: lists of maps with `text`, `symbol`,
    /// `toggle` and `item`.
    Q_PROPERTY(QVariantList toolbar READ toolbar CONSTANT)

public:
    using Command = CommandTable::Command;

    /// What leads out of the shared objects. A door that is not there keeps its command disabled.
    struct Doors {
        std::function<void()> exportResults;
        std::function<void()> openHelp;
        std::function<void()> quit;
        std::function<void()> showSettings = {};
        std::function<void()> showAbout = {};
        std::function<void()> checkForUpdates = {};
        std::function<bool()> canCheckForUpdates = {};
    };

    WindowCommands(const SharedObjects& shared, BottomPanelModel& panel, const PlatformWords& words,
        Doors doors, QObject* parent = nullptr);

    QVariantList menus() const { return menus_; }
    QVariantList toolbar() const { return toolbar_; }

    /// The first of some looks, the widest first, that has the room; the last where none has.
    Q_INVOKABLE static int firstFitting(const QList<qreal>& widths, qreal room);

    /// Asks all rules again at the end of this turn of the event loop.
    void scheduleRefresh() { update_.schedule(); }

Q_SIGNALS:
    /// To be done by what has the keyboard: "undo", "redo", "cut", "copy", "paste" or "selectAll".
    void editRequested(const QString& operation);
    /// To be done by the window itself: "minimize", "zoom" or "fullScreen".
    void windowRequested(const QString& operation);

private:
    using Signal = void (WindowCommands::*)(const QString& operation);

    CommandItem* add(CommandItem::Rules rules);
    CommandItem* make(const CommandTable::Item& item);
    std::function<void()> action(const CommandTable::Item& item);
    std::function<bool()> checkedRule(Command command);
    QVariantMap entry(const CommandTable::Item& item);
    QVariantMap standard(
        const QString& text, const QStringList& shortcuts, Signal signal, const QString& operation);
    QVariantMap entryOf(
        const QString& text, const QStringList& shortcuts, bool isToggle, CommandItem* item) const;
    QVariantList entries(CommandTable::Menu menu);
    void addMenu(const QString& title, const QVariantList& entries, int letter = 0);
    void makeMenus(const PlatformWords& words);
    void makeToolbar(const PlatformWords& words);
    void observe();
    CommandTable::State state() const;
    bool hasDoor(Command command) const;

    SharedObjects shared_;
    BottomPanelModel& panel_;
    Doors doors_;
    std::vector<CommandItem*> items_;
    QVariantList menus_;
    QVariantList toolbar_;
    QueuedUpdate update_;
};

} // namespace ostrella
