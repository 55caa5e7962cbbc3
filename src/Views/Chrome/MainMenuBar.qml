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
            title: description.title
        });
        for (const entry of description.items) {
            if (entry.separator)
                menu.addItem(separatorComponent.createObject(menu.contentItem));
            else
                menu.addItem(itemComponent.createObject(menu.contentItem, {
                    entry: entry
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
            shortcutText: entry.shortcuts.length > 0 ? keys.nativeText : ""
            ticks: entry.toggle
            ticked: entry.item.checked
            enabled: entry.item.enabled
            onTriggered: entry.item.trigger()

            Shortcut {
                id: keys

                sequences: menuItem.entry.shortcuts
                enabled: menuItem.entry.item.enabled
                onActivated: menuItem.entry.item.trigger()
                onActivatedAmbiguously: menuItem.entry.item.trigger()
            }
        }
    }
}
