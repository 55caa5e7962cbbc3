import QtQuick
import QtQuick.Controls.Basic
import Ostrella.Chrome
import Ostrella.Controls

// The menus of the window's commands, and their key combinations.
BrandMenuBar {
    id: bar

    required property WindowCommands commands

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
            else
                menu.addItem(itemComponent.createObject(menu.contentItem, {
                    entry: entry,
                    ticks: ticks
                }));
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
            ticked: entry.item.checked
            enabled: entry.item.enabled
            onTriggered: entry.item.trigger()

            // A list of combinations has no text of its own.
            Shortcut {
                id: shown

                sequence: menuItem.entry.shortcuts.length > 0 ? menuItem.entry.shortcuts[0] : ""
                enabled: false
            }

            Shortcut {
                sequences: menuItem.entry.shortcuts
                enabled: menuItem.entry.item.enabled
                onActivated: menuItem.entry.item.trigger()
                onActivatedAmbiguously: menuItem.entry.item.trigger()
            }
        }
    }
}
