import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// A group of toolbar items in one rounded box.
Rectangle {
    id: cluster

    default property alias items: row.data
    property string name: ""

    // Its width with all items in a look, whichever they have now.
    function widthOf(look) {
        let width = 4 - row.spacing;
        for (let i = 0; i < row.children.length; ++i) {
            const item = row.children[i].item ?? row.children[i];
            if (typeof item.widthOf === "function")
                width += row.spacing + item.widthOf(look);
        }
        return width;
    }

    implicitWidth: row.implicitWidth + 4
    implicitHeight: Theme.clusterHeight
    radius: Theme.clusterRadius
    color: Theme.surfaceRaised
    border.pixelAligned: false
    border.width: Theme.hairline(Screen.devicePixelRatio)
    border.color: Theme.over(color, Theme.borderSubtle)
    Accessible.role: Accessible.Grouping
    Accessible.name: name

    Row {
        id: row
        x: 2
        y: 2
        spacing: 2
    }
}
