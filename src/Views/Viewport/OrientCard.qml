pragma ComponentBehavior: Bound

import QtQuick
import Ostrella.Controls
import Ostrella.Viewport

// Turns the model by quarters and points its axes into the flow.
FloatingCard {
    id: card

    required property OrientCardModel model

    padding: 16
    width: 592 * Theme.lengthScale
    height: column.height + 28
    topPadding: 12
    bottomPadding: 16

    Shortcut {
        sequences: ["Return", "Enter"]
        enabled: card.enabled && card.visible
        onActivated: card.model.finish()
    }

    Shortcut {
        sequence: "Escape"
        enabled: card.enabled && card.visible
        onActivated: card.model.finish()
    }

    Column {
        id: column

        width: card.width - 32
        spacing: 10

        Item {
            width: parent.width
            height: done.height

            SectionLabel {
                id: title

                text: card.model.texts.title
                anchors.verticalCenter: parent.verticalCenter
            }

            NumberText {
                id: rotation

                text: card.model.texts.rotation
                color: Theme.textSecondary
                textFormat: Text.PlainText
                anchors.left: title.right
                anchors.leftMargin: 12
                anchors.verticalCenter: parent.verticalCenter
            }

            NumberText {
                text: card.model.angles
                elide: Text.ElideRight
                anchors.left: rotation.right
                anchors.right: reset.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
            }

            BrandButton {
                id: reset

                text: card.model.texts.reset
                help: card.model.texts.resetHelp
                anchors.right: done.left
                anchors.rightMargin: 12
                Accessible.name: card.model.texts.resetName
                onClicked: card.model.reset()
            }

            BrandButton {
                id: done

                kind: "primary"
                text: card.model.texts.done
                keyCap: card.model.texts.doneKey
                help: card.model.texts.doneHelp
                anchors.right: parent.right
                onClicked: card.model.finish()
            }
        }

        Hairline {
            width: parent.width
        }

        Item {
            width: parent.width
            height: groups.height

            Row {
                id: groups

                spacing: 24

                Column {
                    id: turns

                    spacing: 6
                    Accessible.role: Accessible.Grouping
                    Accessible.name: card.model.texts.turnGroup

                    Text {
                        text: card.model.texts.turnGroup
                        font: Theme.caption
                        color: Theme.textTertiary
                        textFormat: Text.PlainText
                    }

                    Row {
                        spacing: 10

                        Repeater {
                            model: card.model.axes

                            TurnPair {
                                required property var modelData

                                description: modelData
                                onTurned: sign => card.model.turn(modelData.axis, sign)
                            }
                        }
                    }
                }

                Column {
                    spacing: 6
                    Accessible.role: Accessible.Grouping
                    Accessible.name: card.model.texts.facingGroup

                    Text {
                        text: card.model.texts.facingGroup
                        font: Theme.caption
                        color: Theme.textTertiary
                        textFormat: Text.PlainText
                    }

                    FramedRow {
                        Repeater {
                            model: card.model.facings

                            FramedRowButton {
                                required property var modelData
                                required property int index

                                width: Math.floor((column.width - 24 - turns.width) / 6)
                                text: modelData.label
                                name: modelData.name
                                help: modelData.help
                                hasMark: true
                                marked: card.model.facing === modelData.facing
                                isFirst: index === 0
                                onClicked: card.model.face(modelData.facing)
                            }
                        }
                    }
                }
            }
        }

        Text {
            text: card.model.texts.clearsResult
            visible: card.model.clearsResult
            font: Theme.caption
            color: Theme.textTertiary
            textFormat: Text.PlainText
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
