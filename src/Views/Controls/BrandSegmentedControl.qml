pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// A row of segments, one of which is chosen. Tab comes to the chosen one, arrows choose another.
Rectangle {
    id: control

    property var options: [] // of { value, title } and, where there is one, help
    property var selection
    property string name: ""

    signal selected(var value)

    implicitWidth: row.implicitWidth + 4
    implicitHeight: Theme.segmentsHeight
    radius: Theme.segmentsRadius
    color: Theme.surfaceSunken
    border.width: 1
    border.color: Theme.over(color, Theme.borderSubtle)
    Accessible.role: Accessible.PageTabList
    Accessible.name: name

    function choose(index: int, reason: int) {
        if (index < 0 || index >= options.length)
            return;
        segments.itemAt(index).forceActiveFocus(reason);
        if (options[index].value !== selection)
            selected(options[index].value);
    }

    Row {
        id: row
        x: 2
        y: 2

        Repeater {
            id: segments
            model: control.options

            T.TabButton {
                id: segment

                required property var modelData
                required property int index
                readonly property bool chosen: modelData.value === control.selection

                autoExclusive: false
                checked: chosen
                // What is shown follows what is set, not what was asked for.
                onToggled: checked = Qt.binding(() => segment.chosen)
                hoverEnabled: true
                text: modelData.title
                font: Theme.segment
                leftPadding: 12
                rightPadding: 12
                implicitHeight: Theme.segmentHeight
                // As wide as when it is chosen, so that nothing moves.
                implicitWidth: Math.round(chosenText.advanceWidth) + leftPadding + rightPadding
                focusPolicy: chosen ? Qt.StrongFocus : Qt.ClickFocus
                onClicked: control.choose(index, Qt.MouseFocusReason)
                Keys.onLeftPressed: control.choose(index - 1, Qt.TabFocusReason)
                Keys.onRightPressed: control.choose(index + 1, Qt.TabFocusReason)
                Accessible.name: text
                Accessible.onPressAction: clicked()
                Accessible.selectable: true
                Accessible.selected: chosen

                TextMetrics {
                    id: chosenText
                    font: Theme.segment
                    text: segment.text
                }

                contentItem: Text {
                    text: segment.text
                    font: segment.chosen ? Theme.segment : Theme.caption
                    color: !segment.enabled ? Theme.textDisabled
                        : segment.chosen || segment.hovered ? Theme.textPrimary
                        : Theme.textSecondary
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    textFormat: Text.PlainText
                }

                background: Rectangle {
                    radius: Theme.segmentRadius
                    color: segment.chosen ? Theme.segmentFill : "transparent"
                    border.width: segment.visualFocus || (segment.chosen && !Theme.dark) ? 1 : 0
                    border.color: segment.visualFocus ? Theme.accentPrimary
                        : Theme.over(color, Theme.borderSubtle)

                    FocusRing {
                        visible: segment.visualFocus
                        frameRadius: parent.radius
                    }
                }

                Help {
                    control: segment
                    text: segment.modelData.help ?? ""
                }
            }
        }
    }
}
