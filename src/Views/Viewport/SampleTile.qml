import QtQuick
import QtQuick.Window
import QtQuick.Templates as T
import Ostrella.Controls

// A sample to be loaded.
T.Button {
    id: tile

    property string name: text
    property string symbol: ""
    property string facets: ""
    property string help: ""

    implicitWidth: Theme.tileWidth
    implicitHeight: Theme.tileHeight
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.name: name
    Accessible.description: help
    Accessible.onPressAction: clicked()

    contentItem: Item {
        Column {
            spacing: 0
            anchors.centerIn: parent

            Symbol {
                name: tile.symbol
                size: 28 * Theme.lengthScale
                color: tile.hovered || tile.down || tile.visualFocus ? Theme.accentPrimary : Theme.textSecondary
                anchors.horizontalCenter: parent.horizontalCenter
            }

            Item {
                width: 1
                height: 12
            }

            Text {
                text: tile.text
                font: Theme.bodyMedium
                color: Theme.textPrimary
                textFormat: Text.PlainText
                anchors.horizontalCenter: parent.horizontalCenter
            }

            Item {
                width: 1
                height: 2
            }

            // The room stays while the count is not known, so that nothing moves when it comes.
            Text {
                text: tile.facets === "" ? " " : tile.facets
                font: Theme.captionNumbers
                color: Theme.textTertiary
                textFormat: Text.PlainText
                anchors.horizontalCenter: parent.horizontalCenter
            }
        }
    }

    background: Rectangle {
        radius: Theme.tileRadius
        color: Theme.over(Theme.surfaceBase, tile.down ? Theme.washPressed : tile.hovered ? Theme.washHover : "transparent")
        border.pixelAligned: false
        border.width: Theme.hairline(Screen.devicePixelRatio)
        border.color: tile.hovered ? Theme.borderStrong : Theme.borderSubtle

        FocusRing {
            visible: tile.visualFocus
            frameRadius: parent.radius
        }
    }

    Help {
        control: tile
        text: tile.help
        // Below it are the links.
        above: true
    }
}
