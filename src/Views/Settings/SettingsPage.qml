import QtQuick
import Ostrella.Controls

// The groups of one tab, below each other.
Column {
    spacing: 24
    topPadding: 20
    bottomPadding: 20
}
