pragma ComponentBehavior: Bound

import QtQuick
import Ostrella.Controls
import Ostrella.Viewport

// The colour scale: its quantity, the bar, and values beside it.
FloatingCard {
    id: card

    required property LegendModel model
    readonly property real heightAroundBar: bar.y + 2 * padding

    padding: Theme.cardPadding
    width: Math.ceil(Math.max(title.width, 14 + 8 + scale.widest)) + 2 * padding
    height: heightAroundBar + bar.height
    Accessible.role: Accessible.Graphic
    Accessible.name: model.name
    Accessible.description: model.value

    Row {
        id: title

        spacing: 4

        Text {
            id: quantity

            text: card.model.label
            // The name of a quantity is that of the file.
            width: Math.min(implicitWidth, 88 * Theme.lengthScale)
            elide: Text.ElideMiddle
            font: Theme.label
            color: Theme.textPrimary
            textFormat: Text.PlainText
            Accessible.ignored: true
        }

        Text {
            text: card.model.unit
            visible: text !== ""
            font: Theme.monoSmall
            color: Theme.textTertiary
            textFormat: Text.PlainText
            anchors.baseline: quantity.baseline
            Accessible.ignored: true
        }
    }

    Rectangle {
        id: bar

        y: title.height + 8 * Theme.lengthScale
        width: 14
        height: card.model.barHeight
        radius: 4
        gradient: Gradient {
            id: colors
        }
    }

    Component {
        id: stop

        GradientStop {}
    }

    Component.onCompleted: {
        const stops = [];
        for (const entry of model.stops)
            stops.push(stop.createObject(colors, {
                position: entry.location,
                color: entry.color
            }));
        colors.stops = stops;
    }

    Item {
        id: scale

        property real widest: 0

        y: bar.y
        width: card.width - 2 * card.padding
        height: bar.height

        Repeater {
            id: ticks

            model: card.model.ticks
            onItemAdded: scale.widest = widestTick()
            onItemRemoved: scale.widest = widestTick()

            function widestTick() {
                let widest = 0;
                for (let i = 0; i < count; ++i)
                    widest = Math.max(widest, itemAt(i)?.implicitWidth ?? 0);
                return widest;
            }

            Text {
                required property string modelData
                required property int index

                text: modelData
                font: Theme.monoSmall
                color: Theme.textSecondary
                textFormat: Text.PlainText
                x: scale.width - width
                // The first and the last are centred on the bar's ends.
                y: Math.round((ticks.count > 1 ? index / (ticks.count - 1) : 0) * scale.height - height / 2)
                Accessible.ignored: true
            }
        }
    }
}
