import QtQuick
import Ostrella.Chrome
import Ostrella.Controls

// The row of clusters above the viewport; the last one stands at the right end.
Item {
    id: toolbar

    required property WindowCommands commands

    implicitHeight: Theme.toolbarHeight
    implicitWidth: row.implicitWidth + right.implicitWidth + 44
    Accessible.role: Accessible.ToolBar
    Accessible.name: "Toolbar"

    // Where larger texts leave too little room, the first clusters are to be drawn along.
    Flickable {
        id: first

        height: parent.height
        contentWidth: row.width + Theme.edge
        contentHeight: height
        boundsBehavior: Flickable.StopAtBounds
        flickableDirection: Flickable.HorizontalFlick
        interactive: contentWidth > width
        clip: interactive
        anchors {
            left: parent.left
            right: right.left
            rightMargin: Theme.clusterSpacing
        }

        // What has the keyboard is to be seen.
        function reveal(item) {
            for (let up = item; up; up = up.parent) {
                if (up === row) {
                    const left = Theme.edge + item.mapToItem(row, 0, 0).x;
                    contentX = Math.max(0, Math.min(left - 4, Math.max(contentX, left + item.width + 4 - width)));
                    return;
                }
            }
        }

        Connections {
            target: toolbar.Window.window
            enabled: first.interactive

            function onActiveFocusItemChanged() {
                if (toolbar.Window.window.activeFocusItem)
                    first.reveal(toolbar.Window.window.activeFocusItem);
            }
        }

        Row {
            id: row

            x: Theme.edge
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.clusterSpacing

            Repeater {
                model: toolbar.commands.toolbar.slice(0, -1)

                CommandCluster {
                    required property var modelData

                    entries: modelData
                }
            }
        }
    }

    CommandCluster {
        id: right

        entries: toolbar.commands.toolbar[toolbar.commands.toolbar.length - 1]
        anchors {
            right: parent.right
            rightMargin: Theme.edge
            verticalCenter: parent.verticalCenter
        }
    }
}
