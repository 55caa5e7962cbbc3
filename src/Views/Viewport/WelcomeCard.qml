pragma ComponentBehavior: Bound

import QtQuick
import Ostrella.Controls
import Ostrella.Viewport

// What stands in the empty room: samples to begin with.
FloatingCard {
    id: card

    required property WelcomeModel model

    padding: 32
    width: 496 * Theme.lengthScale
    height: column.height + 2 * padding

    Component.onCompleted: model.count()

    Column {
        id: column

        width: card.width - 2 * card.padding

        Text {
            text: card.model.texts.title
            font: Theme.display
            color: Theme.textPrimary
            textFormat: Text.PlainText
            anchors.horizontalCenter: parent.horizontalCenter
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        Item {
            width: 1
            height: 4
        }

        Text {
            text: card.model.texts.tagLine
            font: Theme.body
            color: Theme.textSecondary
            textFormat: Text.PlainText
            anchors.horizontalCenter: parent.horizontalCenter
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Item {
            width: 1
            height: 28
        }

        SectionLabel {
            text: card.model.texts.samples
            anchors.horizontalCenter: parent.horizontalCenter
        }

        Item {
            width: 1
            height: 12
        }

        Row {
            spacing: 12
            anchors.horizontalCenter: parent.horizontalCenter

            Repeater {
                model: card.model.samples

                SampleTile {
                    required property var modelData

                    text: modelData.name
                    symbol: modelData.symbol
                    facets: modelData.facets
                    help: modelData.help
                    name: modelData.label
                    onClicked: card.model.loadSample(modelData.id)
                }
            }
        }

        Item {
            width: 1
            height: 24
        }

        Row {
            spacing: 16
            anchors.horizontalCenter: parent.horizontalCenter

            LinkButton {
                text: card.model.texts.demo
                onClicked: card.model.runDemo()
            }

            LinkButton {
                text: card.model.texts.load
                onClicked: card.model.loadOwn()
            }
        }
    }
}
