import QtQuick
import Ostrella.Controls

// An item of the toolbar that is on or off.
ToolbarButton {
    checkable: true
}
