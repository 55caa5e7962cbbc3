import QtQuick
import Ostrella.Controls

// A row of an information card: what, and how much.
Item {
    id: row

    property string label: ""
    property string value: ""
    property string tone: "normal" // "normal", "success", "warning" or "error"

    readonly property color ink: tone === "success" ? Theme.statusSuccess
        : tone === "warning" ? Theme.statusWarning
        : tone === "error" ? Theme.statusError : Theme.textPrimary

    implicitHeight: Theme.cardRowHeight
    implicitWidth: Math.ceil(title.implicitWidth + 12 + figure.implicitWidth)
    Accessible.role: Accessible.StaticText
    Accessible.name: label + " " + value

    Text {
        id: title
        anchors.verticalCenter: parent.verticalCenter
        text: row.label
        font: Theme.body
        color: Theme.textTertiary
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
    NumberText {
        id: figure
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, row.width - title.width - 12)
        elide: Text.ElideMiddle
        horizontalAlignment: Text.AlignRight
        text: row.value
        color: row.ink
        Accessible.ignored: true
    }
}
