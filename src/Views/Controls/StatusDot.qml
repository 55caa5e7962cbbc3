import QtQuick
import Ostrella.Controls

// A filled circle that says how something stands. The words beside it say the same, so it has no
// name of its own.
Rectangle {
    property real size: 8

    implicitWidth: size
    implicitHeight: size
    radius: size / 2
    color: Theme.textTertiary
    Accessible.ignored: true
}
