import QtQuick
import Ostrella.Controls

// The heading of a group or a card. It shows capitals, and is read as it is written.
Text {
    color: Theme.textTertiary
    font: Theme.sectionLabel
    textFormat: Text.PlainText
    elide: Text.ElideRight
    Accessible.role: Accessible.Heading
    Accessible.name: text
}
