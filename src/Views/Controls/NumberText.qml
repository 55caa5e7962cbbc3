import QtQuick
import Ostrella.Controls

// A text whose digits have one width, so that nothing shakes while they change.
Text {
    color: Theme.textPrimary
    font: Theme.bodyNumbers
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
