import QtQuick
import Ostrella.Controls

// What a group of settings means, below it.
Text {
    font: Theme.caption
    color: Theme.textTertiary
    wrapMode: Text.Wrap
    lineHeight: 16 * Theme.textScale
    lineHeightMode: Text.FixedHeight
    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
