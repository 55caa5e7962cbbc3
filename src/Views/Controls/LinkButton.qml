import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// A text in the accent, without a frame.
T.Button {
    id: control

    property string help: ""

    hoverEnabled: true
    font: Theme.body
    implicitWidth: Math.ceil(implicitContentWidth) + leftPadding + rightPadding
    implicitHeight: Math.ceil(implicitContentHeight) + topPadding + bottomPadding
    Accessible.name: text
    Accessible.description: help
    Accessible.onPressAction: clicked()

    contentItem: Text {
        text: control.text
        font: control.font
        color: !control.enabled ? Theme.textDisabled
            : control.down ? Theme.accentPressed
            : control.hovered ? Theme.accentHover : Theme.accentPrimary
        textFormat: Text.PlainText
        verticalAlignment: Text.AlignVCenter
    }

    background: Item {
        Rectangle {
            visible: control.visualFocus
            anchors.fill: parent
            anchors.margins: -3
            radius: Theme.keyCapRadius
            color: "transparent"
            border.width: 1
            border.color: Theme.accentPrimary

            FocusRing { frameRadius: parent.radius }
        }
    }

    Help {
        control: control
        text: control.help
    }
}
