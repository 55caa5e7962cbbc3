import QtQuick
import Ostrella.Controls

// A filled circle that says how something stands.
Rectangle {
    property int size: 8

    implicitWidth: size
    implicitHeight: size
    radius: size / 2
    color: Theme.accentPrimary
}
