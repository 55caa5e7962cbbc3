import QtQuick
import Ostrella.Controls

// A number with its name and its unit.
SidebarRow {
    id: row

    required property var description
    property real value: 0

    signal edited(real value)

    width: parent.width
    title: description.label

    SidebarNumberField {
        label: row.description.label
        value: row.value
        from: row.description.from
        to: row.description.to
        unit: row.description.unit
        fewestDigits: row.description.fewestDigits
        mostDigits: row.description.mostDigits
        width: 120 * Theme.lengthScale
        anchors.verticalCenter: parent.verticalCenter
        onEdited: value => row.edited(value)
    }
}
