import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// The window's menus, where the platform has no menu bar of its own.
T.MenuBar {
    id: control

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    leftPadding: 8
    rightPadding: 8
    topPadding: 2
    bottomPadding: 2

    delegate: T.MenuBarItem {
        id: item

        // Without the mark of the letter that opens it.
        readonly property string name: text.replace("&", "")
        readonly property string underlined: text.replace(/&(.)/, "<u>$1</u>")

        hoverEnabled: true
        Accessible.name: name
        Accessible.onPressAction: clicked()
        font: Theme.body
        leftPadding: 8
        rightPadding: 8
        implicitHeight: Theme.fieldHeight
        implicitWidth: Math.ceil(implicitContentWidth) + leftPadding + rightPadding

        contentItem: Text {
            // As on the desktop: the letters are marked as long as the key is held that they go with.
            text: HeldKeys.alt ? item.underlined : item.name
            font: item.font
            color: !item.enabled ? Theme.textDisabled
                : item.highlighted || item.hovered ? Theme.textPrimary : Theme.textSecondary
            verticalAlignment: Text.AlignVCenter
            textFormat: Text.StyledText
        }

        background: Rectangle {
            radius: Theme.keyCapRadius
            color: item.highlighted ? Theme.washPressed : item.hovered ? Theme.washHover : "transparent"
        }
    }

    contentItem: Row {
        Repeater {
            model: control.contentModel
        }
    }

    background: Rectangle {
        color: Theme.surfaceBase
    }
}
