import QtQuick
import QtQuick.Controls.Basic
import Ostrella.Chrome
import Ostrella.Controls

// The menus of the window's commands, and their key combinations.
BrandMenuBar {
    id: bar

    required property WindowCommands commands
    // A message waits for its answer: keys are not for commands.
    property bool isWaiting: false

    Component.onCompleted: {
        for (const description of commands.menus)
            addMenu(menuOf(description));
    }

    function menuOf(description) {
        const menu = menuComponent.createObject(bar, {
            title: description.mnemonic
        });
        // Where one item can be ticked, the texts of all stand behind the room for it.
        const ticks = description.items.some(entry => entry.toggle);
        for (const entry of description.items) {
            if (entry.separator)
                menu.addItem(separatorComponent.createObject(menu.contentItem));
            else {
                menu.addItem(itemComponent.createObject(menu.contentItem, {
                    entry: entry,
                    ticks: ticks
                }));
                // Of the bar, which is in the window also while the menu is closed: what is modal
                // keeps the keys of the window's items from it.
                keysComponent.createObject(bar, {
                    entry: entry
                });
            }
        }
        return menu;
    }

    Component {
        id: menuComponent

        BrandMenu {}
    }

    Component {
        id: separatorComponent

        BrandMenuSeparator {}
    }

    Component {
        id: itemComponent

        BrandMenuItem {
            id: menuItem

            required property var entry

            text: entry.text
            shortcutText: shown.nativeText
            enabled: entry.item.enabled
            checkable: entry.toggle
            checked: entry.item.checked
            // What is shown follows what is set, not what was asked for.
            onToggled: checked = Qt.binding(() => entry.item.checked)
            onTriggered: entry.item.trigger()
            Accessible.checkable: checkable
            Accessible.checked: checked

            // A list of combinations has no text of its own.
            Shortcut {
                id: shown

                sequence: menuItem.entry.shortcuts.length > 0 ? menuItem.entry.shortcuts[0] : ""
                enabled: false
            }
        }
    }

    Component {
        id: keysComponent

        Shortcut {
            required property var entry

            sequences: entry.shortcuts
            enabled: entry.item.enabled && !bar.isWaiting
            context: entry.everywhere ? Qt.ApplicationShortcut : Qt.WindowShortcut
            onActivated: entry.item.trigger()
            onActivatedAmbiguously: entry.item.trigger()
        }
    }
}
