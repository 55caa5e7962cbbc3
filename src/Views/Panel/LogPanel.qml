pragma ComponentBehavior: Bound

import QtQuick
import Ostrella.Controls
import Ostrella.Panel

// The log's lines, scrolling.
Item {
    id: panel

    required property BottomPanelModel model

    LogView {
        id: view

        anchors.fill: parent
        lines: panel.model.lines
        isFollowing: panel.model.isFollowingLog
        onIsFollowingChanged: panel.model.isFollowingLog = isFollowing
        Accessible.role: Accessible.List
        Accessible.name: "Log"
        Accessible.focusable: true

        // Those who have the log read aloud meet the rows in view.
        Repeater {
            model: view.visibleRows

            Item {
                required property string rowText
                required property real rowTop
                required property real rowHeight

                y: rowTop
                width: view.width
                height: rowHeight
                Accessible.role: Accessible.ListItem
                Accessible.name: rowText
            }
        }
    }

    BrandScrollBar {
        id: bar

        anchors {
            top: parent.top
            right: parent.right
            bottom: parent.bottom
        }
        orientation: Qt.Vertical
        active: hover.hovered || linger.running
        size: view.barSize
        position: view.barPosition
        onPositionChanged: {
            if (pressed && Math.abs(position - view.barPosition) > 1e-9)
                view.dragBarTo(position);
        }
    }

    // The bar stays a moment after a movement.
    Timer {
        id: linger
        interval: 800
    }

    Connections {
        target: view
        function onMoved() {
            linger.restart();
        }
    }

    HoverHandler {
        id: hover
    }

    Rectangle {
        anchors.fill: parent
        visible: view.showsFocus
        color: "transparent"
        border.width: 2
        border.color: Theme.accentSubtle
        Accessible.ignored: true
    }
}
