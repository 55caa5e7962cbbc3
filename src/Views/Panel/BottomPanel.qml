pragma ComponentBehavior: Bound

import QtQuick
import Ostrella.Controls
import Ostrella.Panel

// The panel under the viewport: the log or the charts, below a header.
Rectangle {
    id: panel

    required property BottomPanelModel model

    implicitHeight: 228 * Theme.lengthScale
    color: Theme.surfaceSunken

    Rectangle {
        id: header

        width: parent.width
        height: Theme.panelHeaderHeight
        color: Theme.surfaceBase

        Row {
            id: choices

            x: Theme.edge
            anchors.verticalCenter: parent.verticalCenter
            spacing: 10

            BrandSegmentedControl {
                anchors.verticalCenter: parent.verticalCenter
                name: "Panel"
                options: panel.model.tabs
                selection: panel.model.tab
                onSelected: value => panel.model.chooseTab(value)
            }

            Row {
                anchors.verticalCenter: parent.verticalCenter
                spacing: 4
                visible: panel.model.showsLog

                Repeater {
                    model: panel.model.filters

                    FilterChip {
                        required property var modelData

                        text: modelData.title
                        help: modelData.help
                        selected: modelData.value === panel.model.filter
                        onClicked: panel.model.chooseFilter(modelData.value)
                    }
                }
            }
        }

        Text {
            anchors {
                left: choices.right
                leftMargin: 10
                right: parent.right
                rightMargin: Theme.edge
                verticalCenter: parent.verticalCenter
            }
            horizontalAlignment: Text.AlignRight
            elide: Text.ElideRight
            text: panel.model.rightForms
            font: Theme.monoSmall
            color: Theme.textTertiary
            textFormat: Text.PlainText
            Accessible.role: Accessible.StaticText
            Accessible.name: panel.model.rightText
        }

        Hairline {
            edge: Qt.BottomEdge
        }
    }

    Item {
        anchors {
            top: header.bottom
            left: parent.left
            right: parent.right
            bottom: parent.bottom
        }

        LogPanel {
            anchors.fill: parent
            model: panel.model
            visible: panel.model.showsLog
        }

        HistoryChartsView {
            anchors.fill: parent
            model: panel.model
            visible: !panel.model.showsLog
        }
    }
}
