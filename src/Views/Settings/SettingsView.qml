pragma ComponentBehavior: Bound

import QtQuick
import Ostrella.Controls
import Ostrella.Settings

// The settings: a tab each for the solver and the streamlines, and below them the way back. Of one
// size for both tabs, so that nothing moves when another is chosen.
FixedWindow {
    id: window

    required property SettingsModel model

    function choose(index: int, reason: int) {
        if (index < 0 || index >= model.tabs.length)
            return;
        tabs.itemAt(index).forceActiveFocus(reason);
        model.tab = model.tabs[index].value;
    }
    function chooseNext(steps: int) {
        const index = model.tabs.findIndex(tab => tab.value === model.tab);
        choose((index + steps + model.tabs.length) % model.tabs.length, Qt.ShortcutFocusReason);
    }

    title: model.texts.windowTitle
    wantedWidth: Math.round(488 * Theme.lengthScale)
    wantedHeight: head.height + Math.max(Math.round(387 * Theme.lengthScale), body.contentHeight) + foot.height

    // What has the keyboard is in sight.
    onActiveFocusItemChanged: body.show(activeFocusItem)

    Shortcut {
        sequences: ["Ctrl+Tab", "Ctrl+PgDown"]
        onActivated: window.chooseNext(1)
    }
    Shortcut {
        sequences: ["Ctrl+Shift+Tab", "Ctrl+PgUp"]
        onActivated: window.chooseNext(-1)
    }

    Item {
        id: head
        width: parent.width
        height: row.height + 17

        Row {
            id: row
            y: 8
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 4
            Accessible.role: Accessible.PageTabList
            Accessible.name: window.title

            Repeater {
                id: tabs
                model: window.model.tabs

                SettingsTabButton {
                    required property var modelData
                    required property int index

                    text: modelData.title
                    symbol: modelData.symbol
                    chosen: modelData.value === window.model.tab
                    onClicked: window.choose(index, Qt.MouseFocusReason)
                    Keys.onLeftPressed: window.choose(index - 1, Qt.TabFocusReason)
                    Keys.onRightPressed: window.choose(index + 1, Qt.TabFocusReason)
                }
            }
        }
        Hairline { edge: Qt.BottomEdge }
    }

    ScrolledBody {
        id: body
        anchors {
            left: parent.left
            right: parent.right
            top: head.bottom
            bottom: foot.top
        }
        contentHeight: Math.max(solver.implicitHeight, streamlines.implicitHeight)

        Item {
            id: pages
            x: 20
            width: body.width - 40
            height: body.contentHeight

            SolverSettings {
                id: solver
                width: parent.width
                model: window.model
                visible: window.model.tab === "solver"
            }
            StreamlineSettings {
                id: streamlines
                width: parent.width
                model: window.model
                visible: window.model.tab === "streamlines"
            }
        }
    }

    Item {
        id: foot
        width: parent.width
        height: restore.height + 33
        anchors.bottom: parent.bottom

        Hairline { edge: Qt.TopEdge }
        BrandButton {
            id: restore
            y: 17
            anchors.right: parent.right
            anchors.rightMargin: 20
            text: window.model.texts.restoreDefaults
            onClicked: window.model.restoreDefaults()
        }
    }
}
