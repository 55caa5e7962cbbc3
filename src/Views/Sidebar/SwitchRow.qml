import QtQuick
import Ostrella.Controls

// Something that is on or off.
SidebarRow {
    id: row

    property string label: ""
    property string help: ""
    property bool isOn: false

    signal toggledByUser(bool on)

    width: parent.width

    SidebarSwitch {
        label: row.label
        help: row.help
        isOn: row.isOn
        anchors.verticalCenter: parent.verticalCenter
        onToggledByUser: on => row.toggledByUser(on)
    }
}
