import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// A short help beside what it explains.
T.ToolTip {
    id: tip

    property bool above: false

    x: parent ? Math.round((parent.width - implicitWidth) / 2) : 0
    y: above ? -implicitHeight - 6 : parent ? parent.height + 6 : 0
    margins: 6
    leftPadding: 8
    rightPadding: 8
    topPadding: 4
    bottomPadding: 4
    implicitWidth: Math.min(320 * Theme.lengthScale, words.implicitWidth + leftPadding + rightPadding)
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    font: Theme.caption
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
        | T.Popup.CloseOnReleaseOutsideParent

    TextMetrics {
        id: metrics
        font: tip.font
        text: tip.text
    }

    contentItem: Text {
        id: words
        text: tip.text
        font: tip.font
        color: Theme.textPrimary
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
    }

    background: Rectangle {
        radius: Theme.fieldRadius
        color: Theme.surfaceRaised
        border.color: Theme.over(Theme.surfaceRaised, Theme.borderStrong)
        border.pixelAligned: false
        border.width: Theme.hairline(Screen.devicePixelRatio)
    }
}
