pragma ComponentBehavior: Bound

import QtQuick
import Ostrella.Controls
import Ostrella.Sidebar

// The foot of the sidebar: the way to start a run, or how far the present one is.
Rectangle {
    id: foot

    required property RunFooterModel model
    readonly property var tones: ({
            good: Theme.statusSuccess,
            caution: Theme.statusWarning,
            failure: Theme.statusError,
            muted: Theme.textTertiary
        })

    implicitHeight: (model.showsProgress ? progress.height : controls.height) + 32
    color: Theme.surfaceRaised

    Hairline {
        edge: Qt.TopEdge
    }

    Column {
        id: progress

        x: 16
        y: 16
        width: parent.width - 32
        spacing: 12
        visible: foot.model.showsProgress

        RunProgressBar {
            width: parent.width
            title: foot.model.progressTitle
            detail: foot.model.progressDetail
            value: foot.model.progressValue
            fraction: foot.model.progressFraction
        }

        BrandButton {
            width: parent.width
            text: foot.model.texts.cancel
            help: foot.model.texts.cancelHelp
            onClicked: foot.model.cancel()
            // One button takes the other's place under the pointer: the second half of a double click
            // on the one is not meant for the other. A button that hears of it takes it for no click.
            onDoubleClicked: {}
        }
    }

    Column {
        id: controls

        x: 16
        y: 16
        width: parent.width - 32
        spacing: 10
        visible: !foot.model.showsProgress

        TextEdit {
            width: parent.width
            visible: foot.model.summaryHead !== ""
            text: visible ? foot.styled : ""
            textFormat: TextEdit.RichText
            readOnly: true
            selectByMouse: true
            activeFocusOnPress: true
            wrapMode: TextEdit.WordWrap
            font: Theme.monoSmall
            color: Theme.textTertiary
            selectionColor: Theme.accentSubtle
            selectedTextColor: Theme.textPrimary
            Accessible.role: Accessible.StaticText
            Accessible.name: foot.model.summaryHead + foot.model.summaryParts
        }

        Item {
            width: parent.width
            height: state.height
            visible: foot.model.stateText !== ""

            StatusDot {
                id: dot

                color: foot.tones[foot.model.stateTone] ?? Theme.textTertiary
                anchors.verticalCenter: parent.verticalCenter
            }

            NumberText {
                id: state

                x: dot.width + 8
                width: parent.width - x
                text: foot.model.stateText
                font: Theme.captionNumbers
                elide: Text.ElideRight
            }
        }

        HeroButton {
            width: parent.width
            text: foot.model.texts.run
            symbol: "play.fill"
            help: foot.model.texts.runHelp
            enabled: foot.model.canRun
            onClicked: foot.model.run()
            onDoubleClicked: {}
        }

        Item {
            readonly property real lead: spinner.visible || mark.visible ? 20 : 0

            width: Math.min(parent.width, lead + Math.ceil(hint.implicitWidth))
            height: hint.height
            visible: foot.model.hint !== ""
            anchors.horizontalCenter: parent.horizontalCenter

            Spinner {
                id: spinner

                size: 12
                visible: foot.model.hintIsBusy
                anchors.verticalCenter: parent.verticalCenter
            }

            Symbol {
                id: mark

                name: foot.model.hintSymbol
                size: 14
                color: Theme.textTertiary
                visible: foot.model.hintSymbol !== ""
                anchors.verticalCenter: parent.verticalCenter
            }

            Text {
                id: hint

                x: parent.lead
                width: parent.width - x
                text: foot.model.hint
                font: Theme.caption
                color: Theme.textTertiary
                elide: Text.ElideMiddle
                textFormat: Text.PlainText
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }

    // Two weights and two colours in one text that can be selected as a whole.
    readonly property string styled: "<span style=\"font-weight:500;color:" + Theme.textSecondary + "\">"
        + escaped(model.summaryHead) + "</span><span>" + escaped(model.summaryParts) + "</span>"

    function escaped(text) {
        return text.replace(/&/g, "&amp;").replace(/</g, "&lt;");
    }
}
