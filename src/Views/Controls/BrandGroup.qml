import QtQuick
import Ostrella.Controls

// A box around a group of settings.
Rectangle {
    id: group

    default property alias content: inside.data
    property real padding: 12

    implicitWidth: Math.ceil(inside.childrenRect.width) + 2 * padding
    implicitHeight: Math.ceil(inside.childrenRect.height)
    radius: Theme.groupRadius
    color: Theme.surfaceRaised
    border.pixelAligned: false
    border.width: Theme.hairline(Screen.devicePixelRatio)
    border.color: Theme.over(color, Theme.borderSubtle)

    Item {
        id: inside
        x: group.padding
        width: group.width - 2 * group.padding
        height: group.height
    }
}
