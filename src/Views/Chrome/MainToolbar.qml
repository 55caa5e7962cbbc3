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
