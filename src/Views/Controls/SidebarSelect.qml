pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// One of several, from a menu that comes up over the control.
T.ComboBox {
    id: control

    property string label: ""
    property var options: [] // of strings
    property int index: 0
    property string help: ""

    readonly property real widest:
        options.reduce((widest, option) => Math.max(widest, metrics.advanceWidth(option)), 0)

    signal chosen(int index)

    FontMetrics {
        id: metrics
        font: control.font
    }

    hoverEnabled: true
    wheelEnabled: false
    model: options
    font: Theme.body
    implicitHeight: Theme.fieldHeight
    implicitWidth: Math.ceil(words.implicitWidth) + leftPadding + rightPadding
    leftPadding: 10
    rightPadding: 26
    Accessible.name: label
    Accessible.description: help
    Accessible.onPressAction: popup.open()

    onIndexChanged: currentIndex = index
    onModelChanged: currentIndex = index
    Component.onCompleted: currentIndex = index
    onActivated: row => {
        // What is shown follows what is set, not what was asked for.
        if (row !== index)
            chosen(row);
        currentIndex = index;
    }
    Keys.onUpPressed: event => openBy(event)
    Keys.onDownPressed: event => openBy(event)

    // Arrows open the menu before they choose from it.
    function openBy(event: var) {
        event.accepted = !popup.visible;
        if (!popup.visible)
            popup.open();
    }

    contentItem: Text {
        id: words
        text: control.displayText
        font: control.font
        color: control.enabled ? Theme.textPrimary : Theme.textDisabled
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }

    indicator: Symbol {
        x: control.width - width - 7
        y: (control.height - height) / 2
        name: "chevron.up.chevron.down"
        size: 12 * Theme.lengthScale
        color: control.enabled ? Theme.textTertiary : Theme.textDisabled
    }

    background: Rectangle {
        radius: Theme.fieldRadius
        color: !control.enabled ? Theme.buttonFill
            : control.down ? Theme.buttonPressed
            : control.hovered ? Theme.buttonHover : Theme.buttonFill
        border.width: 1
        border.color: control.visualFocus ? Theme.accentPrimary
            : Theme.over(color, control.enabled ? Theme.borderStrong : Theme.borderSubtle)

        FocusRing {
            visible: control.visualFocus
            frameRadius: parent.radius
        }
    }

    delegate: BrandMenuItem {
        required property string modelData
        required property int index

        width: ListView.view.width
        text: modelData
        ticked: index === control.currentIndex
        ticks: true
        highlighted: index === control.highlightedIndex
    }

    popup: T.Popup {
        y: -4 - Math.max(0, control.currentIndex) * Theme.fieldHeight
        width: Math.max(control.width, Math.ceil(control.widest) + 26 + 10 + 8)
        height: Math.min(contentItem.implicitHeight + 8, control.Window.height - 16)
        margins: 8
        padding: 4

        contentItem: ListView {
            id: menu
            implicitHeight: contentHeight
            clip: true
            interactive: contentHeight > height
            model: control.delegateModel
            currentIndex: control.highlightedIndex
            highlightMoveDuration: 0
        }

        background: Rectangle {
            radius: Theme.itemRadius
            color: Theme.surfaceRaised
            border.width: Theme.hairline(Screen.devicePixelRatio)
            border.pixelAligned: false
            border.color: Theme.over(color, Theme.borderStrong)

            CardShadow {
                anchors.fill: parent
                radius: parent.radius
                z: -1
            }
        }
    }

    Help {
        control: control
        text: control.help
    }
}
