import QtQuick
import Ostrella.Controls

// Something to be read in passing.
FloatingCard {
    id: card

    property string text: ""
    property string symbol: ""
    property real mostWidth: 480

    padding: Theme.cardPadding
    width: Math.min(mostWidth, Math.ceil(label.implicitWidth) + mark.width + 8 + 2 * padding)
    height: Math.ceil(label.implicitHeight) + 2 * padding
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Symbol {
        id: mark

        name: card.symbol
        size: 16 * Theme.lengthScale
        color: Theme.statusWarning
        y: Math.round((Math.min(label.height, 18 * Theme.lengthScale) - height) / 2)
    }

    Text {
        id: label

        x: mark.width + 8
        width: card.width - 2 * card.padding - x
        text: card.text
        font: Theme.body
        color: Theme.textPrimary
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
}
