import QtQuick
import Ostrella.Controls

// A row that only tells; without a value it is not there.
SidebarRow {
    id: row

    property string value: ""

    width: parent.width
    visible: value !== ""

    SidebarValue {
        text: row.value
        width: Math.min(implicitWidth, row.width * 0.66)
        anchors.verticalCenter: parent.verticalCenter
    }
}
