pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls
import Ostrella.Viewport

// The card of the geometry, the solver or the result. Its head collapses it to one line.
FloatingCard {
    id: card

    required property CardModel model
    // Another card has to stand where the rows would be.
    property bool squeezed: false
    readonly property bool collapsed: model.collapsed || squeezed
    readonly property real leastHeight: head.height
    // What it takes as the user wants it.
    readonly property real fullHeight: head.height + (model.collapsed ? 0 : rows.height + 8)
    // The most that it may take of the viewport; rows that go beyond can be scrolled to.
    property real mostWidth: Infinity
    property real mostHeight: Infinity

    padding: 0
    width: Math.min(mostWidth, model.width * Theme.lengthScale)
    height: head.height + body.height

    T.Button {
        id: head

        width: card.width
        height: Theme.cardHeadHeight
        enabled: !card.squeezed
        hoverEnabled: true
        focusPolicy: Qt.StrongFocus
        Accessible.name: card.model.title
        Accessible.description: card.model.collapseValue(card.collapsed)
        Accessible.onPressAction: clicked()
        onClicked: card.model.collapsed = !card.model.collapsed

        SectionLabel {
            id: title

            text: card.model.title
            anchors.left: parent.left
            anchors.leftMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            Accessible.ignored: true
        }

        NumberText {
            text: card.model.summary
            visible: card.collapsed
            font: Theme.mono
            color: Theme.textSecondary
            elide: Text.ElideMiddle
            horizontalAlignment: Text.AlignRight
            anchors {
                left: title.right
                leftMargin: 12
                right: chevron.left
                rightMargin: 8
                verticalCenter: parent.verticalCenter
            }
        }

        Symbol {
            id: chevron

            name: card.model.collapseSymbol
            visible: !card.squeezed
            size: 12 * Theme.lengthScale
            color: head.hovered ? Theme.textSecondary : Theme.textTertiary
            anchors.right: parent.right
            anchors.rightMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
        }

        FocusRing {
            visible: head.visualFocus
            frameRadius: card.radius
        }

        Help {
            control: head
            text: card.model.collapseHelp
        }
    }

    Flickable {
        id: body

        y: head.height
        width: card.width
        height: card.collapsed ? 0 : Math.max(0, Math.min(contentHeight, card.mostHeight - head.height))
        contentHeight: rows.height + 8
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        enabled: !card.collapsed

        Behavior on height {
            enabled: card.visible

            NumberAnimation {
                duration: 200 * Theme.motion
                easing.type: Easing.OutQuad
            }
        }

        Column {
            id: rows

            x: Theme.cardPadding
            width: card.width - 2 * Theme.cardPadding

            Item {
                width: parent.width
                height: Theme.cardRowHeight + 4
                visible: card.model.liveLine !== ""

                StatusDot {
                    id: dot

                    size: 7
                    color: Theme.accentPrimary
                    anchors.verticalCenter: parent.verticalCenter
                }

                NumberText {
                    x: dot.width + 8
                    width: parent.width - x
                    text: card.model.liveLine
                    font: Theme.bodyMediumNumbers
                    elide: Text.ElideRight
                    anchors.verticalCenter: parent.verticalCenter
                }
            }

            Repeater {
                model: card.model.rows

                CardRow {
                    required property var modelData

                    width: rows.width
                    label: modelData.label
                    value: modelData.value
                    tone: modelData.tone === "normal" ? "primary" : modelData.tone
                }
            }
        }
    }
}
