import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// A line between groups of a menu's items.
T.MenuSeparator {
    implicitWidth: 40
    implicitHeight: 9

    contentItem: Item {
        Hairline {
            x: 4
            width: parent.width - 8
            y: 4
        }
    }
}
