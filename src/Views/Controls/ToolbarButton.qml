import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// An item of the toolbar: a symbol over a small label. While checked it lies on the accent.
T.Button {
    id: control

    enum Look {
        Labels,
        Symbols,
        Tight
    }

    property string symbol: ""
    property string help: ""
    // Whether being checked is shown in the accent: not for what is no layer of the scene.
    property bool marksChecked: true
    // Where there is little room, the symbol stands alone, and then in a narrower item.
    property int look: ToolbarButton.Labels
    readonly property bool on: checkable && checked && marksChecked

    hoverEnabled: true
    font: Theme.label
    leftPadding: 8
    rightPadding: 8
    implicitHeight: Theme.itemHeight
    implicitWidth: widthOf(look)
    Accessible.name: text
    Accessible.description: help
    Accessible.onPressAction: press()
    Accessible.checkable: checkable
    Accessible.checked: checked
    Accessible.onToggleAction: press()

    // Its width in a look, whichever it has now.
    function widthOf(look) {
        if (look === ToolbarButton.Labels)
            return Math.max(52 * Theme.lengthScale, Math.round(implicitContentWidth) + leftPadding + rightPadding);
        return look === ToolbarButton.Symbols ? Theme.itemHeight : Math.round(28 * Theme.lengthScale);
    }

    // As a click does, for who has no pointer.
    function press() {
        if (checkable) {
            toggle();
            toggled();
        }
        clicked();
    }

    contentItem: Item {
        implicitWidth: label.implicitWidth
        implicitHeight: control.implicitHeight

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            y: Math.round((parent.height - size - (label.visible ? label.height : 0)) / 2)
            name: control.symbol
            size: 18 * Theme.lengthScale
            color: !control.enabled ? Theme.textDisabled
                : control.on ? Theme.accentPrimary
                : control.hovered || control.down ? Theme.textPrimary : Theme.textSecondary
        }
        Text {
            id: label
            visible: control.look === ToolbarButton.Labels
            anchors.horizontalCenter: parent.horizontalCenter
            y: Math.round((parent.height + 18 * Theme.lengthScale - height) / 2) + 2
            text: control.text
            font: control.font
            color: !control.enabled ? Theme.textDisabled
                : control.on || control.hovered || control.down ? Theme.textPrimary
                : Theme.textSecondary
            textFormat: Text.PlainText
        }
    }

    background: Rectangle {
        radius: Theme.itemRadius
        color: !control.enabled ? "transparent"
            : control.on ? Theme.accentSubtle
            : control.down ? Theme.washPressed
            : control.hovered ? Theme.washHover : "transparent"
        border.width: control.visualFocus ? 1 : 0
        border.color: Theme.accentPrimary

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
