import QtQuick
import Ostrella.Controls

// Brings up a control's help while the pointer rests on it. Nothing is made before that.
Loader {
    id: help

    property var control: null // with hovered
    property string text: ""
    // Over the control and not under it.
    property bool above: false

    active: control !== null && control.hovered && text !== ""
    sourceComponent: BrandToolTip {
        parent: help.control
        text: help.text
        above: help.above
        delay: Theme.helpDelay
        visible: help.control.hovered && !(help.control.down ?? false)
    }
}
