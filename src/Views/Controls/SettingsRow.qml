import QtQuick
import Ostrella.Controls

// A row of a group: its label, and what stands at its right end. Rows below another have a line
// above them.
Item {
    id: row

    property string label: ""
    property color labelColor: enabled ? Theme.textPrimary : Theme.textDisabled
    default property alias trailing: slot.data
    // What the row needs to cut nothing.
    readonly property real neededWidth: Math.ceil(heading.implicitWidth) + 16 + Math.ceil(slot.implicitWidth)

    width: parent?.width ?? implicitWidth
    implicitWidth: neededWidth
    implicitHeight: Theme.settingsRowHeight

    Hairline {
        id: line
        visible: row.y > 0
        edge: Qt.TopEdge
    }
    Text {
        id: heading
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: slot.anchors.verticalCenterOffset
        width: Math.min(implicitWidth, Math.max(0, row.width - slot.width - 16))
        elide: Text.ElideRight
        text: row.label
        font: Theme.body
        color: row.labelColor
        textFormat: Text.PlainText
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Row {
        id: slot
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        // In the middle of what the line leaves.
        anchors.verticalCenterOffset: line.visible ? 1 : 0
        spacing: 8
    }
}
