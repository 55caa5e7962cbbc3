import QtQuick
import Ostrella.Controls
import Ostrella.Sidebar
import Ostrella.Updates

// What the update window says first: the headline and its sentence, or a bar of the same height at
// least.
Item {
    id: head

    required property UpdateWindowModel model
    // As tall as it may become; a longer sentence scrolls.
    required property real most
    readonly property real wanted: Math.max(Theme.progressHeight,
        Math.min(model.showsProgress ? bar.implicitHeight
            : words.height + (detail.visible ? 6 + detail.wanted : 0), most,
            280 * Theme.lengthScale))

    height: wanted

    RunProgressBar {
        id: bar

        width: parent.width
        visible: head.model.showsProgress
        title: head.model.title
        detail: head.model.progress
        value: head.model.progress
        fraction: head.model.fraction

        Spinner {
            visible: head.model.isBusy && bar.visible
            anchors.right: parent.right
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
        }
    }

    Item {
        id: words

        readonly property real lead: spinner.visible || mark.visible
            ? 24 * Theme.lengthScale : 0

        width: parent.width
        height: headline.height
        visible: !head.model.showsProgress

        Spinner {
            id: spinner

            visible: head.model.isBusy && !head.model.showsProgress
            y: (18 * Theme.lengthScale - height) / 2
            size: 14 * Theme.lengthScale
        }

        Symbol {
            id: mark

            visible: head.model.symbol !== ""
            name: head.model.symbol
            size: 16 * Theme.lengthScale
            y: (18 * Theme.lengthScale - height) / 2
            color: head.model.isFailure ? Theme.statusError : Theme.statusSuccess
        }

        Text {
            id: headline

            x: words.lead
            width: words.width - x
            text: head.model.title
            font: Theme.bodyMedium
            color: head.model.isFailure ? Theme.statusError : Theme.textPrimary
            lineHeight: 18 * Theme.lengthScale
            lineHeightMode: Text.FixedHeight
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            Accessible.role: head.model.isFailure ? Accessible.AlertMessage
                : Accessible.StaticText
            Accessible.name: text
        }
    }

    ScrolledText {
        id: detail

        visible: text !== "" && !head.model.showsProgress
        x: words.lead
        y: words.height + 6
        width: parent.width - x
        height: Math.max(0, head.height - y)
        text: head.model.detail
    }
}
