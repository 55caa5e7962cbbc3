import QtQuick
import Ostrella.Controls

// The ring around a control that has the keyboard: 3 wide against the control's edge, or on accent
// buttons 2 wide and 2 away. Its parent is the control's frame.
Rectangle {
    id: ring

    property bool accent: false
    property real frameRadius: 0
    readonly property int reach: accent ? 4 : 3

    anchors.fill: parent
    anchors.margins: -reach
    radius: frameRadius + reach
    color: "transparent"
    border.width: accent ? 2 : 3
    border.color: accent ? Theme.accentPrimary : Theme.accentSubtle
    Accessible.ignored: true
}
