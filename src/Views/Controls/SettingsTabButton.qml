import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// One of the tabs of a window: a symbol over its title. Whoever places it says which is chosen. It
// looks as an item of the toolbar does.
T.TabButton {
    id: tab

    property string symbol: ""
    property bool chosen: false

    autoExclusive: false
    checked: chosen
    // What is shown follows what is set, not what was asked for.
    onToggled: checked = Qt.binding(() => tab.chosen)
    hoverEnabled: true
    font: Theme.label
    leftPadding: 8
    rightPadding: 8
    implicitHeight: Theme.itemHeight
    implicitWidth: Math.max(Math.round(72 * Theme.lengthScale), Math.round(implicitContentWidth) + leftPadding + rightPadding)
    focusPolicy: chosen ? Qt.StrongFocus : Qt.ClickFocus
    Accessible.name: text
    Accessible.onPressAction: clicked()
    Accessible.selectable: true
    Accessible.selected: chosen

    contentItem: Item {
        implicitWidth: label.implicitWidth
        implicitHeight: tab.implicitHeight

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            y: Math.round((parent.height - size - label.height) / 2)
            name: tab.symbol
            size: 18 * Theme.lengthScale
            color: tab.chosen ? Theme.accentPrimary
                : tab.hovered || tab.down ? Theme.textPrimary : Theme.textSecondary
        }
        Text {
            id: label
            anchors.horizontalCenter: parent.horizontalCenter
            y: Math.round((parent.height + 18 * Theme.lengthScale - height) / 2) + 2
            text: tab.text
            font: tab.font
            color: tab.chosen || tab.hovered || tab.down ? Theme.textPrimary : Theme.textSecondary
            textFormat: Text.PlainText
        }
    }

    background: Rectangle {
        radius: Theme.itemRadius
        color: tab.chosen ? Theme.accentSubtle
            : tab.down ? Theme.washPressed
            : tab.hovered ? Theme.washHover : "transparent"
        border.width: tab.visualFocus ? 1 : 0
        border.color: Theme.accentPrimary

        FocusRing {
            visible: tab.visualFocus
            frameRadius: parent.radius
        }
    }
}
