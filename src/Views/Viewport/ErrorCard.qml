import QtQuick
import Ostrella.Controls
import Ostrella.Viewport

// What went wrong, and the way to the log.
FloatingCard {
    id: card

    required property CardModel model
    readonly property real line: 18 * Theme.lengthScale
    readonly property real heightAroundMessage: title.height + 8 + 12 + button.height + 2 * padding
    readonly property real leastHeight: heightAroundMessage + Math.min(message.height, line)
    readonly property real fullHeight: heightAroundMessage + message.height
    // The most that it may take of the viewport; a longer message can be scrolled.
    property real mostWidth: Infinity
    property real mostHeight: Infinity

    padding: Theme.cardPadding
    width: Math.min(mostWidth, 320 * Theme.lengthScale)
    height: column.height + 2 * padding
    Accessible.role: Accessible.AlertMessage
    Accessible.name: card.model.errorTitle
    Accessible.description: card.model.message

    Column {
        id: column

        width: card.width - 2 * card.padding
        spacing: 12

        Column {
            width: parent.width
            spacing: 8

            SectionLabel {
                id: title

                text: card.model.errorTitle
                color: Theme.statusError
                width: parent.width
            }

            Flickable {
                width: parent.width
                height: Math.max(0, Math.min(contentHeight, card.mostHeight - card.heightAroundMessage))
                contentHeight: message.height
                clip: contentHeight > height
                boundsBehavior: Flickable.StopAtBounds

                Text {
                    id: message

                    width: parent.width
                    text: card.model.message
                    font: Theme.body
                    color: Theme.textPrimary
                    wrapMode: Text.Wrap
                    lineHeight: card.line
                    lineHeightMode: Text.FixedHeight
                    textFormat: Text.PlainText
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
            }
        }

        BrandButton {
            id: button

            text: card.model.showInLog
            help: card.model.showInLogHelp
            onClicked: card.model.openLog()
        }
    }
}
