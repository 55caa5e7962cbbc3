import QtQuick
import Ostrella.Controls

// A file is on its way.
FloatingCard {
    id: card

    property string text: ""
    property real mostWidth: 480

    padding: Theme.cardPadding
    width: Math.min(mostWidth, Math.ceil(label.implicitWidth) + spinner.width + 8 + 2 * padding)
    height: Math.ceil(label.implicitHeight) + 2 * padding
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Spinner {
        id: spinner

        size: 14
        anchors.verticalCenter: parent.verticalCenter
    }

    Text {
        id: label

        x: spinner.width + 8
        width: card.width - 2 * card.padding - x
        text: card.text
        font: Theme.bodyMedium
        color: Theme.textPrimary
        elide: Text.ElideMiddle
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
}
