import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// The wide accent button of the one great action.
T.Button {
    id: control

    property string symbol: "play.fill"
    property string help: ""
    readonly property color ink: enabled ? Theme.accentOn : Theme.textDisabled

    hoverEnabled: true
    font: Theme.hero
    spacing: 10
    leftPadding: 16
    rightPadding: 16
    implicitHeight: Theme.runHeight
    implicitWidth: Math.ceil(implicitContentWidth) + leftPadding + rightPadding
    Accessible.name: text
    Accessible.description: help
    Accessible.onPressAction: clicked()

    contentItem: Item {
        implicitWidth: row.implicitWidth
        implicitHeight: row.implicitHeight

        Row {
            id: row
            anchors.centerIn: parent
            spacing: control.spacing

            Symbol {
                visible: control.symbol !== ""
                anchors.verticalCenter: parent.verticalCenter
                name: control.symbol
                size: 16 * Theme.lengthScale
                color: control.ink
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: control.text
                font: control.font
                color: control.ink
                textFormat: Text.PlainText
            }
        }
    }

    background: Rectangle {
        radius: Theme.runRadius
        color: !control.enabled ? Theme.buttonFill
            : control.down ? Theme.accentPressed
            : control.hovered ? Theme.accentHover : Theme.accentPrimary
        border.width: control.enabled ? 0 : 1
        border.color: Theme.over(color, Theme.borderSubtle)

        FocusRing {
            visible: control.visualFocus
            accent: true
            frameRadius: parent.radius
        }
    }

    Help {
        control: control
        text: control.help
    }
}
