import QtQuick
import Ostrella.Controls

// One of the three angles: narrow, without a sign of its own.
SidebarNumberField {
    required property var description

    label: description.label
    from: description.from
    to: description.to
    fewestDigits: description.fewestDigits
    mostDigits: description.mostDigits
    implicitWidth: 60 * Theme.lengthScale
    anchors.verticalCenter: parent?.verticalCenter
}
