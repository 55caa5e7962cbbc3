import QtQuick
import Ostrella.Chrome
import Ostrella.Controls

// The row of clusters above the viewport; the last one stands at the right end. Where the room is
// short, the labels go, and then the items draw together; their help tells what they are.
Item {
    id: toolbar

    required property WindowCommands commands
    readonly property var looks: [ToolbarButton.Labels, ToolbarButton.Symbols, ToolbarButton.Tight]
    readonly property int look: looks[commands.firstFitting(looks.map(widthOf), width)]

    // The width that all clusters take in a look.
    function widthOf(look) {
        let width = 2 * Theme.edge + right.widthOf(look);
        for (let i = 0; i < row.children.length; ++i)
            width += row.children[i].entries ? row.children[i].widthOf(look) + Theme.clusterSpacing : 0;
        return width;
    }

    implicitHeight: Theme.toolbarHeight
    implicitWidth: widthOf(ToolbarButton.Labels)
    Accessible.role: Accessible.ToolBar
    Accessible.name: "Toolbar"

    // Where even that leaves too little room, the first clusters are to be drawn along.
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
                    look: toolbar.look
                }
            }
        }
    }

    CommandCluster {
        id: right

        entries: toolbar.commands.toolbar[toolbar.commands.toolbar.length - 1]
        look: toolbar.look
        anchors {
            right: parent.right
            rightMargin: Theme.edge
            verticalCenter: parent.verticalCenter
        }
    }
}
