import QtQuick
import QtQuick.Window
import Ostrella.Controls

// Buttons side by side in one frame.
Rectangle {
    default property alias buttons: row.data

    implicitWidth: row.width
    implicitHeight: 28 * Theme.lengthScale
    radius: Theme.buttonRadius
    color: Theme.buttonFill
    border.pixelAligned: false
    border.width: Theme.hairline(Screen.devicePixelRatio)
    border.color: Theme.borderStrong

    Row {
        id: row

        height: parent.height
    }
}
