import QtQuick
import Ostrella.Controls

// Something goes on whose end nobody knows. With reduced motion it stands still.
Item {
    id: spinner

    property real size: 14
    property color color: Theme.accentPrimary
    property bool running: visible

    implicitWidth: size
    implicitHeight: size
    Accessible.role: Accessible.ProgressBar
    Accessible.name: "Busy"

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: "transparent"
        border.width: 1.5
        border.pixelAligned: false
        border.color: Theme.borderStrong
    }
    Symbol {
        id: arc
        anchors.fill: parent
        name: "spinner.arc"
        size: spinner.size
        color: spinner.color

        RotationAnimator on rotation {
            running: spinner.running && !Theme.reducedMotion
            from: 0
            to: 360
            duration: 900
            loops: Animation.Infinite
        }
    }
}
