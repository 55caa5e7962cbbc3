import QtQuick
import Ostrella.Controls
import Ostrella.Viewport

// What went wrong, and the way to the log.
FloatingCard {
    id: card

    required property CardModel model
    // The most that it may take of the viewport's height.
    property real mostHeight: 400

    padding: Theme.cardPadding
    width: 320 * Theme.lengthScale
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
                text: card.model.errorTitle
                color: Theme.statusError
                width: parent.width
            }

            Flickable {
                width: parent.width
                height: Math.min(contentHeight, card.mostHeight)
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
                    lineHeight: 18 * Theme.lengthScale
                    lineHeightMode: Text.FixedHeight
                    textFormat: Text.PlainText
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
            }
        }

        BrandButton {
            text: card.model.showInLog
            help: card.model.showInLogHelp
            onClicked: card.model.openLog()
        }
    }
}
