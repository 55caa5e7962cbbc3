import QtQuick
import QtQuick.Window
import Ostrella.Controls

// One of several buttons in a frame, divided from the one before by a hairline.
ViewportButton {
    property bool isFirst: false

    Rectangle {
        visible: !parent.isFirst
        width: Theme.hairline(Screen.devicePixelRatio)
        height: parent.height
        color: Theme.borderSubtle
    }
}
