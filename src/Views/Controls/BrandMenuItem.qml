import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// An item of a menu: a tick where items of the menu can be ticked, its text, its shortcut.
T.MenuItem {
    id: control

    property string shortcutText: ""
    property bool ticks: checkable
    property bool ticked: checkable && checked
    readonly property color ink: !enabled ? Theme.textDisabled : Theme.textPrimary

    hoverEnabled: true
    Accessible.name: text
    Accessible.onPressAction: clicked()
    font: Theme.body
    leftPadding: ticks ? 26 : 10
    rightPadding: subMenu ? 26 : 10
    spacing: 24
    implicitHeight: Theme.fieldHeight
    implicitWidth: Math.ceil(implicitContentWidth) + leftPadding + rightPadding

    contentItem: Item {
        implicitWidth: words.implicitWidth + (keys.visible ? control.spacing + keys.implicitWidth : 0)
        implicitHeight: words.implicitHeight

        Text {
            id: words
            anchors.verticalCenter: parent.verticalCenter
            text: control.text
            font: control.font
            color: control.ink
            textFormat: Text.PlainText
        }
        Text {
            id: keys
            visible: text !== ""
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: control.shortcutText
            font: Theme.body
            color: control.enabled ? Theme.textTertiary : Theme.textDisabled
            textFormat: Text.PlainText
        }
    }

    indicator: Symbol {
        visible: control.ticked
        x: 8
        y: (control.height - height) / 2
        name: "checkmark"
        size: 12 * Theme.lengthScale
        color: control.enabled ? Theme.accentPrimary : Theme.textDisabled
    }

    arrow: Symbol {
        visible: control.subMenu !== null
        x: control.width - width - 7
        y: (control.height - height) / 2
        name: "chevron.right"
        size: 12 * Theme.lengthScale
        color: control.enabled ? Theme.textTertiary : Theme.textDisabled
    }

    background: Rectangle {
        radius: Theme.keyCapRadius
        color: control.enabled && control.highlighted ? Theme.washPressed : "transparent"
    }
}
