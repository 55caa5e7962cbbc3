pragma ComponentBehavior: Bound

import QtQuick
import Ostrella.Controls

// An axis and its two quarter turns.
Row {
    id: pair

    required property var description

    signal turned(real sign)

    spacing: 6

    Text {
        text: pair.description.name
        font: Theme.label
        color: pair.enabled ? pair.description.color : Theme.textDisabled
        textFormat: Text.PlainText
        anchors.verticalCenter: parent.verticalCenter
    }

    FramedRow {
        Repeater {
            model: pair.description.turns

            FramedRowButton {
                required property var modelData
                required property int index

                width: 30 * Theme.lengthScale
                symbol: modelData.symbol
                name: modelData.help
                help: modelData.help
                isFirst: index === 0
                onClicked: pair.turned(modelData.sign)
            }
        }
    }
}
