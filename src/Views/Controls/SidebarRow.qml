import QtQuick
import Ostrella.Controls

// A row of the sidebar: its title, a dimmer suffix, and what stands at its right end.
Item {
    id: row

    property string title: ""
    property string suffix: ""
    default property alias trailing: slot.data
    property alias spacing: slot.spacing

    implicitHeight: Theme.rowHeight
    implicitWidth: Math.ceil(heading.implicitWidth + 12 + slot.implicitWidth)

    Text {
        id: heading
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, Math.max(0, row.width - slot.width - 12))
        elide: Text.ElideRight
        text: row.title
        font: Theme.body
        color: row.enabled ? Theme.textSecondary : Theme.textDisabled
        textFormat: Text.PlainText
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Text {
        visible: row.suffix !== ""
        anchors.left: heading.right
        anchors.leftMargin: 6
        anchors.baseline: heading.baseline
        text: row.suffix
        font: Theme.body
        color: row.enabled ? Theme.textTertiary : Theme.textDisabled
        textFormat: Text.PlainText
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Row {
        id: slot
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 6
    }
}
