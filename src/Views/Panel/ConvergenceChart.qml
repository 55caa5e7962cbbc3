pragma ComponentBehavior: Bound

import QtQuick
import Ostrella.Controls
import Ostrella.Panel

// One chart: its title and note, its plot with numbers on both axes, and the legend below.
Item {
    id: block

    required property ChartModel chart
    readonly property int numberGap: 8

    // A length that grows with the texts, also while the window is open.
    function grown(points) {
        return Math.round(points * Theme.lengthScale);
    }

    Accessible.role: Accessible.Chart
    Accessible.name: chart.title
    Accessible.description: chart.description

    Text {
        id: title

        x: Theme.edge
        y: block.grown(18) - height / 2
        text: block.chart.title
        font: Theme.label
        color: Theme.textSecondary
        textFormat: Text.PlainText
    }

    Text {
        anchors {
            left: title.right
            leftMargin: 12
            right: parent.right
            rightMargin: Theme.edge
            verticalCenter: title.verticalCenter
        }
        horizontalAlignment: Text.AlignRight
        elide: Text.ElideRight
        text: block.chart.noteForms
        font: Theme.monoSmall
        color: Theme.textTertiary
        textFormat: Text.PlainText
    }

    TextMetrics {
        id: longest
        font: Theme.monoSmall
        text: block.chart.longestValue
    }

    Item {
        id: axis

        readonly property real numbers: Math.max(block.grown(28), Math.ceil(longest.advanceWidth))

        x: Theme.edge + numbers + block.numberGap
        y: block.grown(36) - plot.margin
        width: Math.max(0, block.width - x - Theme.edge)
        height: Math.max(0, block.height - y - block.grown(49) - (legend.rows - 1) * legend.rowHeight + plot.margin)

        ChartItem {
            id: plot
            anchors.fill: parent
            chart: block.chart
        }

        Item {
            Accessible.role: Accessible.StaticText
            Accessible.name: block.chart.axisName
            width: 1
            height: parent.height

            Repeater {
                model: block.chart.valueTicks

                Text {
                    required property var modelData

                    x: -block.numberGap - width
                    y: Math.round(plot.plot.y + (1 - modelData.at) * plot.plot.height - height / 2)
                    text: modelData.text
                    font: Theme.monoSmall
                    color: Theme.textTertiary
                    textFormat: Text.PlainText
                }
            }
        }

        Repeater {
            model: block.chart.iterationTicks

            Text {
                required property var modelData

                x: Math.round(plot.plot.x + modelData.at * plot.plot.width - width / 2)
                y: Math.round(plot.plot.y + plot.plot.height + block.grown(12) - height / 2)
                text: modelData.text
                font: Theme.monoSmall
                color: Theme.textTertiary
                textFormat: Text.PlainText
            }
        }
    }

    // Many series take several rows, at the plot's cost.
    Flow {
        id: legend

        readonly property real rowHeight: block.grown(16)
        readonly property int rows: Math.max(1, Math.round(height / rowHeight))

        x: Theme.edge
        y: block.height - block.grown(20) - rowHeight / 2 - (rows - 1) * rowHeight
        width: Math.max(0, block.width - Theme.edge)
        Accessible.role: Accessible.Grouping
        Accessible.name: block.chart.seriesName

        Repeater {
            model: block.chart.legend

            Row {
                id: entry

                required property var modelData

                height: legend.rowHeight
                spacing: 8
                rightPadding: 14

                Rectangle {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 10
                    height: 2
                    radius: 1
                    color: entry.modelData.color
                }

                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: entry.modelData.label
                    font: Theme.caption
                    color: Theme.textSecondary
                    textFormat: Text.PlainText
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
            }
        }
    }
}
