import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// A flat button of a card: a text or a symbol; marked, it lies on the accent.
T.Button {
    id: control

    property string name: text
    property string symbol: ""
    property string help: ""
    property bool marked: false
    // It shows a state and is not only pressed.
    property bool hasMark: false
    readonly property color ink: !enabled ? Theme.textDisabled : marked && symbol !== "" ? Theme.accentPrimary : marked || hovered || down ? Theme.textPrimary : Theme.textSecondary

    implicitHeight: 28 * Theme.lengthScale
    implicitWidth: symbol !== "" ? 32 * Theme.lengthScale : Math.max(44 * Theme.lengthScale, Math.ceil(label.implicitWidth) + 20)
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    font: Theme.caption
    Accessible.name: name
    Accessible.description: help
    checkable: hasMark
    checked: hasMark && marked
    // What is shown follows what is set, not what was asked for.
    onToggled: checked = Qt.binding(() => control.hasMark && control.marked)
    Accessible.checkable: checkable
    Accessible.checked: checked
    Accessible.onPressAction: clicked()
    Accessible.onToggleAction: clicked()

    contentItem: Item {
        Text {
            id: label

            text: control.text
            visible: control.symbol === ""
            font: control.font
            color: control.ink
            textFormat: Text.PlainText
            anchors.centerIn: parent
        }

        Symbol {
            name: control.symbol
            visible: control.symbol !== ""
            size: 16 * Theme.lengthScale
            color: control.ink
            anchors.centerIn: parent
        }
    }

    background: Rectangle {
        radius: Theme.buttonRadius
        color: control.marked ? Theme.accentSubtle : control.down ? Theme.washPressed : control.hovered && control.enabled ? Theme.washHover : "transparent"

        FocusRing {
            visible: control.visualFocus
            frameRadius: parent.radius
        }
    }

    Help {
        control: control
        text: control.help
    }
}
