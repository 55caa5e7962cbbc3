import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// A menu, from the menu bar or at the pointer.
T.Menu {
    id: control

    margins: 8
    padding: 4
    overlap: 1
    implicitWidth: Math.max(120 * Theme.lengthScale, contentItem.implicitWidth + leftPadding + rightPadding)
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding

    delegate: BrandMenuItem {}

    contentItem: ListView {
        implicitHeight: contentHeight
        implicitWidth: {
            let widest = 0;
            for (let i = 0; i < control.count; ++i)
                widest = Math.max(widest, control.itemAt(i)?.implicitWidth ?? 0);
            return widest;
        }
        model: control.contentModel
        clip: contentHeight > height
        interactive: contentHeight > height
        currentIndex: control.currentIndex
        highlightMoveDuration: 0
    }

    background: Rectangle {
        radius: Theme.itemRadius
        color: Theme.surfaceRaised
        border.width: Theme.hairline(Screen.devicePixelRatio)
        border.pixelAligned: false
        border.color: Theme.over(color, Theme.borderStrong)

        CardShadow {
            anchors.fill: parent
            radius: parent.radius
            z: -1
        }
    }
}
