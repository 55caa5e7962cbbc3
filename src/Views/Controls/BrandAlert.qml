import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// A message that waits to be read, or, with a second button, a question. The second button changes
// nothing: it has the keyboard at first, and Escape means the same.
T.Dialog {
    id: alert

    property string text: ""
    property string buttonText: "OK"
    property string secondButtonText: ""
    property bool isFirst: false

    signal answered(bool isFirst)

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    modal: true
    focus: true
    padding: 16
    width: Math.min(360 * Theme.lengthScale, (parent?.width ?? 360) - 32)
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    closePolicy: T.Popup.CloseOnEscape

    onAboutToShow: isFirst = false
    onOpened: (second.visible ? second : button).forceActiveFocus(Qt.PopupFocusReason)
    onAccepted: isFirst = true
    onClosed: answered(isFirst)

    contentItem: Column {
        spacing: 0
        Accessible.role: Accessible.AlertMessage
        Accessible.name: alert.title
        Accessible.description: alert.text

        Text {
            width: parent.width
            text: alert.title
            font: Theme.bodyMedium
            color: Theme.textPrimary
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
        }
        Item {
            visible: message.text !== ""
            width: 1
            height: 6
        }
        Text {
            id: message
            visible: text !== ""
            width: parent.width
            text: alert.text
            font: Theme.body
            color: Theme.textSecondary
            wrapMode: Text.Wrap
            lineHeight: 18 * Theme.lengthScale
            lineHeightMode: Text.FixedHeight
            textFormat: Text.PlainText
        }
        Item {
            width: 1
            height: 16
        }
        Row {
            anchors.right: parent.right
            spacing: 8

            BrandButton {
                id: second
                visible: alert.secondButtonText !== ""
                text: alert.secondButtonText
                Keys.onReturnPressed: alert.reject()
                Keys.onEnterPressed: alert.reject()
                onClicked: alert.reject()
            }
            BrandButton {
                id: button
                text: alert.buttonText
                kind: "primary"
                Keys.onReturnPressed: alert.accept()
                Keys.onEnterPressed: alert.accept()
                onClicked: alert.accept()
            }
        }
    }

    background: Rectangle {
        radius: Theme.cardRadius
        color: Theme.surfaceRaised
        border.width: Theme.hairline(Screen.devicePixelRatio)
        border.pixelAligned: false
        border.color: Theme.over(color, Theme.borderSubtle)

        CardShadow {
            anchors.fill: parent
            radius: parent.radius
            z: -1
        }
    }

    T.Overlay.modal: Rectangle {
        color: Theme.floatingShadow
    }
}
