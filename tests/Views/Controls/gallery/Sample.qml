import QtQuick
import Ostrella.Controls

// A control above the name of its state.
Column {
    id: sample

    property string caption: ""
    default property alias content: slot.data

    spacing: 5

    Item {
        id: slot
        width: childrenRect.width
        height: childrenRect.height
        anchors.horizontalCenter: parent.horizontalCenter
    }
    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        text: sample.caption
        font: Theme.keys
        color: Theme.textTertiary
    }
}
