import QtQuick
import Ostrella.Controls

// A line of one device pixel: along an edge of its parent, or by itself as wide as it is made.
Rectangle {
    // Qt.TopEdge, Qt.BottomEdge, Qt.LeftEdge or Qt.RightEdge; 0 leaves the place to the user.
    property int edge: 0
    readonly property real thickness: Theme.hairline(Screen.devicePixelRatio)

    implicitWidth: thickness
    implicitHeight: thickness
    color: Theme.borderSubtle
    antialiasing: false
    anchors.left: edge !== 0 && edge !== Qt.RightEdge ? parent.left : undefined
    anchors.right: edge !== 0 && edge !== Qt.LeftEdge ? parent.right : undefined
    anchors.top: edge !== 0 && edge !== Qt.BottomEdge ? parent.top : undefined
    anchors.bottom: edge !== 0 && edge !== Qt.TopEdge ? parent.bottom : undefined
    Accessible.ignored: true
}
