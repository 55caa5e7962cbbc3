import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// The ordinary button: framed, filled with the accent, or framed with a warning's text.
T.Button {
    id: control

    property string kind: "secondary" // "secondary", "primary" or "destructive"
    property string symbol: ""
    property string keyCap: ""
    property string help: ""
    property bool small: false
    readonly property bool accent: kind === "primary" && enabled
    readonly property color ink: !enabled ? Theme.textDisabled
        : kind === "primary" ? Theme.accentOn
        : kind === "destructive" ? Theme.statusError : Theme.textPrimary

    hoverEnabled: true
    font: Theme.bodyMedium
    spacing: 6
    leftPadding: small ? 10 : 12
    rightPadding: keyCap !== "" ? 6 : leftPadding
    implicitHeight: small ? Theme.fieldHeight : Theme.buttonHeight
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
                visible: text !== ""
                anchors.verticalCenter: parent.verticalCenter
                text: control.text
                font: control.font
                color: control.ink
                textFormat: Text.PlainText
            }
            KeyCap {
                visible: control.keyCap !== ""
                anchors.verticalCenter: parent.verticalCenter
                keys: control.keyCap
                onAccent: control.accent
            }
        }
    }

    background: Rectangle {
        radius: control.small ? Theme.fieldRadius : Theme.buttonRadius
        color: control.accent
            ? (control.down ? Theme.accentPressed
                : control.hovered ? Theme.accentHover : Theme.accentPrimary)
            : !control.enabled ? Theme.buttonFill
            : control.down ? Theme.buttonPressed
            : !control.hovered ? Theme.buttonFill
            : control.kind === "destructive" ? Theme.destructiveHover : Theme.buttonHover
        border.width: control.accent ? 0 : 1
        border.color: control.visualFocus ? Theme.accentPrimary
            : Theme.over(color, control.enabled ? Theme.borderStrong : Theme.borderSubtle)

        FocusRing {
            visible: control.visualFocus
            accent: control.accent
            frameRadius: parent.radius
        }
    }

    Help {
        control: control
        text: control.help
    }
}
