import QtQuick
import Ostrella.Chrome
import Ostrella.Controls

// What the application does or how the last run ended, a few figures, and the machine.
Rectangle {
    id: bar

    required property StatusBarModel model
    readonly property var tones: ({
            idle: Theme.textTertiary,
            ok: Theme.statusSuccess,
            run: Theme.accentPrimary,
            warn: Theme.statusWarning,
            err: Theme.statusError
        })

    implicitHeight: Theme.statusBarHeight
    color: Theme.surfaceBase

    Hairline {
        edge: Qt.TopEdge
    }

    Item {
        id: state

        anchors {
            left: parent.left
            leftMargin: 16
            right: counters.left
            rightMargin: 24
            top: parent.top
            bottom: parent.bottom
        }
        Accessible.role: Accessible.StatusBar
        Accessible.name: bar.model.text

        StatusDot {
            id: dot

            color: bar.tones[bar.model.tone]
            anchors.verticalCenter: parent.verticalCenter
        }

        NumberText {
            id: line

            x: dot.width + 8
            width: parent.width - x
            text: bar.model.text
            font: Theme.captionNumbers
            color: Theme.textPrimary
            elide: Text.ElideRight
            anchors.verticalCenter: parent.verticalCenter
            Accessible.ignored: true
        }
    }

    Row {
        id: counters

        spacing: 24
        anchors {
            right: parent.right
            rightMargin: 16
            verticalCenter: parent.verticalCenter
        }

        Repeater {
            model: bar.model.counters

            NumberText {
                required property var modelData

                text: modelData.text
                font: modelData.mono ? Theme.mono : Theme.captionNumbers
                color: Theme.textSecondary
                anchors.verticalCenter: parent.verticalCenter
            }
        }

        NumberText {
            text: bar.model.machine
            visible: text !== ""
            font: Theme.captionNumbers
            color: Theme.textTertiary
            anchors.verticalCenter: parent.verticalCenter
        }
    }
}
