import QtQuick
import QtQuick.Window
import Ostrella.Controls

// The hairline between two panes, which can be dragged from a little to either side of it.
Rectangle {
    id: handle

    // Between panes that stand side by side.
    property bool vertical: false

    implicitWidth: 1 / Screen.devicePixelRatio
    implicitHeight: 1 / Screen.devicePixelRatio
    color: Theme.borderSubtle
    containmentMask: Item {
        x: handle.vertical ? (handle.width - width) / 2 : 0
        y: handle.vertical ? 0 : (handle.height - height) / 2
        width: handle.vertical ? 9 : handle.width
        height: handle.vertical ? handle.height : 9
    }
}
