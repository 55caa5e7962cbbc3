import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// A thin scroll bar that is there while it is of use.
T.ScrollBar {
    id: control

    hoverEnabled: true
    implicitWidth: 12
    implicitHeight: 12
    padding: 3
    minimumSize: 0.05
    visible: policy !== T.ScrollBar.AlwaysOff
    opacity: policy === T.ScrollBar.AlwaysOn || ((active || hovered || pressed) && size < 1) ? 1 : 0

    Behavior on opacity {
        NumberAnimation {
            duration: 150 * Theme.motion
            easing.type: Easing.OutQuad
        }
    }

    contentItem: Rectangle {
        implicitWidth: 6
        implicitHeight: 6
        radius: 3
        color: control.pressed || control.hovered ? Theme.textTertiary : Theme.textDisabled
    }
}
