import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// A small rounded label that is chosen or not. What it does is up to its user.
T.RadioButton {
    id: control

    property bool selected: false
    property string help: ""

    autoExclusive: false
    checked: selected
    // What is shown follows what is set, not what was asked for.
    onToggled: checked = Qt.binding(() => control.selected)
    hoverEnabled: true
    font: Theme.caption
    leftPadding: 9
    rightPadding: 9
    implicitHeight: Theme.chipHeight
    implicitWidth: Math.ceil(implicitContentWidth) + leftPadding + rightPadding
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.description: help
    Accessible.onPressAction: clicked()
    Accessible.onToggleAction: clicked()

    contentItem: Text {
        text: control.text
        font: control.font
        color: !control.enabled ? Theme.textDisabled
            : control.selected ? Theme.accentPrimary
            : control.hovered || control.down ? Theme.textPrimary : Theme.textTertiary
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        textFormat: Text.PlainText
    }

    background: Rectangle {
        radius: height / 2
        color: !control.enabled ? "transparent"
            : control.selected ? Theme.accentSubtle
            : control.down ? Theme.washPressed
            : control.hovered ? Theme.washHover : "transparent"
        border.width: control.selected && !control.visualFocus ? 0 : 1
        border.color: control.visualFocus ? Theme.accentPrimary : Theme.over(color, Theme.borderSubtle)

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
