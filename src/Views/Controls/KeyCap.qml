import QtQuick
import Ostrella.Controls

// A small cap with a key's sign or a shortcut.
Rectangle {
    id: cap

    property string keys: ""
    property bool onAccent: false

    implicitHeight: Theme.keyCapHeight
    implicitWidth: Math.max(implicitHeight + 2, Math.round(label.implicitWidth) + 9)
    radius: Theme.keyCapRadius
    color: onAccent ? Theme.keyCapOnAccent : Theme.washHover
    border.width: onAccent ? 0 : 1
    border.color: Theme.over(color, Theme.borderStrong)
    Accessible.ignored: true

    Text {
        id: label
        anchors.centerIn: parent
        text: cap.keys
        font: Theme.keys
        color: cap.onAccent ? Theme.accentOn : Theme.textSecondary
        textFormat: Text.PlainText
    }
}
