pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls
import Ostrella.Sidebar

// The sidebar: the model, its orientation, the free stream and the turbulence model; below them the
// run footer, which stays where it is.
Rectangle {
    id: panel

    required property SidebarModel model
    required property RunFooterModel footer

    color: Theme.surfaceBase

    Flickable {
        id: area

        contentWidth: width
        contentHeight: sections.height
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        anchors {
            left: parent.left
            right: parent.right
            top: parent.top
            bottom: foot.top
        }
        T.ScrollBar.vertical: BrandScrollBar {}

        // What has the keyboard is to be seen.
        function reveal(item) {
            for (let up = item; up; up = up.parent) {
                if (up === sections) {
                    const top = item.mapToItem(sections, 0, 0).y;
                    contentY = Math.max(0, Math.min(top - 16, Math.max(contentY, top + item.height + 16 - height)));
                    return;
                }
            }
        }

        Connections {
            target: panel.Window.window

            function onActiveFocusItemChanged() {
                if (panel.Window.window.activeFocusItem)
                    area.reveal(panel.Window.window.activeFocusItem);
            }
        }

        Column {
            id: sections

            x: 16
            // The first heading stands level with the toolbar's middle.
            topPadding: 4
            width: area.width - 32
            enabled: panel.model.isEnabled

            GeometrySection {
                model: panel.model
                width: parent.width
            }

            OrientationSection {
                model: panel.model
                width: parent.width
            }

            FreeStreamSection {
                model: panel.model
                width: parent.width
            }

            TurbulenceSection {
                model: panel.model
                width: parent.width
            }
        }
    }

    SidebarRunFooter {
        id: foot

        model: panel.footer
        anchors {
            left: parent.left
            right: parent.right
            bottom: parent.bottom
        }
    }
}
