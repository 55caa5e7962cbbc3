pragma ComponentBehavior: Bound

import QtQuick
import Ostrella.Controls
import Ostrella.Viewport

// Standard views and the tools of the viewport.
FloatingCard {
    id: card

    required property ViewportModel model

    padding: 6
    width: row.width + 2 * padding
    height: 28 * Theme.lengthScale + 2 * padding

    Row {
        id: row

        spacing: 2

        Row {
            spacing: 2
            Accessible.role: Accessible.Grouping
            Accessible.name: card.model.tools.views

            Repeater {
                model: card.model.views

                ViewportButton {
                    required property var modelData

                    text: modelData.name
                    name: modelData.label
                    help: modelData.help
                    hasMark: true
                    marked: card.model.currentView === modelData.view
                    onClicked: card.model.requestView(modelData.view)
                }
            }
        }

        Item {
            width: 13
            height: 28 * Theme.lengthScale

            Rectangle {
                width: Theme.hairline(Screen.devicePixelRatio)
                height: 20 * Theme.lengthScale
                color: Theme.borderSubtle
                anchors.centerIn: parent
            }
        }

        ViewportButton {
            symbol: card.model.tools.fit.symbol
            name: card.model.tools.fit.label
            help: card.model.tools.fit.help
            onClicked: card.model.fit()
        }

        ViewportButton {
            symbol: card.model.tools.orient.symbol
            name: card.model.tools.orient.label
            help: card.model.tools.orient.help
            enabled: card.model.canOrient
            hasMark: true
            marked: card.model.orients && card.model.canOrient
            onClicked: card.model.toggleOrientMode()
        }

        ViewportButton {
            symbol: card.model.tools.animate.symbol
            name: card.model.tools.animate.label
            help: card.model.tools.animate.help
            enabled: card.model.hasStreamlines
            hasMark: true
            marked: card.model.animates && card.model.hasStreamlines
            onClicked: card.model.toggleAnimation()
        }

        ViewportButton {
            symbol: card.model.tools.saveImage.symbol
            name: card.model.tools.saveImage.label
            help: card.model.tools.saveImage.help
            onClicked: card.model.saveImage()
        }
    }
}
