import QtQuick
import Ostrella.Controls

// How far a run is: the fill grows from the left under the two lines of text.
Rectangle {
    id: bar

    property string title: ""
    property string detail: ""
    property string value: ""
    property real fraction: 0
    // What the fill shows: it follows the fraction in its own time, and the bar's width at once.
    property real filledFraction: Math.max(0, Math.min(1, fraction))

    Behavior on filledFraction {
        NumberAnimation {
            duration: 300 * Theme.motion
            easing.type: Easing.OutQuad
        }
    }

    implicitHeight: Math.max(Theme.progressHeight, lines.height + 8)
    radius: Theme.progressRadius
    color: Theme.surfaceSunken
    Accessible.role: Accessible.ProgressBar
    Accessible.name: title
    Accessible.description: value

    Item {
        id: filled

        height: parent.height
        clip: true
        width: Math.round(bar.width * bar.filledFraction)

        Rectangle {
            width: bar.width
            height: bar.height
            radius: bar.radius
            color: Theme.progressFill
        }

        // The rail at the foot follows the bar's round corners.
        Item {
            y: bar.height - 3
            width: bar.width
            height: 3
            clip: true

            Rectangle {
                y: 3 - bar.height
                width: bar.width
                height: bar.height
                radius: bar.radius
                color: Theme.accentPrimary
            }
        }
    }

    Rectangle {
        anchors.fill: parent
        radius: bar.radius
        color: "transparent"
        border.pixelAligned: false
        border.width: Theme.hairline(Screen.devicePixelRatio)
        border.color: Theme.over(bar.color, Theme.borderSubtle)
    }

    Column {
        id: lines

        x: 12
        width: parent.width - 24
        anchors.verticalCenter: parent.verticalCenter

        Text {
            width: parent.width
            text: bar.title
            font: Theme.bodyMediumNumbers
            color: Theme.textPrimary
            elide: Text.ElideRight
            textFormat: Text.PlainText
            Accessible.ignored: true
        }

        Text {
            width: parent.width
            text: bar.detail
            font: Theme.captionNumbers
            color: Theme.textSecondary
            elide: Text.ElideRight
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }
}
