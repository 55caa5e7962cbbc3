import QtQuick
import Ostrella.Controls

// What comes up over a window.
Rectangle {
    id: sheet

    width: 900
    height: 560
    color: Theme.surfaceBase

    BrandMenuBar {
        width: parent.width

        BrandMenu { title: "File" }
        BrandMenu { title: "View" }
        BrandMenu { title: "Help" }
    }

    BrandMenu {
        id: menu
        x: 32; y: 60

        BrandMenuItem { text: "Open STL…"; shortcutText: "Ctrl+O" }
        BrandMenuItem { text: "Close"; enabled: false; shortcutText: "Ctrl+W" }
        BrandMenuSeparator {}
        BrandMenuItem { text: "Show Grid"; checkable: true; checked: true; ticks: true }
        BrandMenuItem { text: "Wireframe"; checkable: true; ticks: true; highlighted: true }
    }

    BrandButton {
        id: explained
        x: 360; y: 60
        text: "Save Image…"

        BrandToolTip {
            id: tip
            text: "Save a picture of the viewport"
        }
    }

    SidebarSelect {
        id: select
        x: 600; y: 120
        options: ["Spalart-Allmaras (RANS)", "k-ω SST (RANS)", "Laminar"]
        index: 1
    }

    Flickable {
        x: 360; y: 160; width: 160; height: 120
        contentHeight: 400
        clip: true

        Rectangle { width: 160; height: 400; color: Theme.surfaceSunken }
        BrandScrollBar {
            id: bar
            anchors.right: parent.right
            height: parent.height
            size: 0.3
            active: true
        }
    }

    BrandAlert {
        id: alert
        modal: false
        anchors.centerIn: undefined
        x: 270; y: 330
        title: "The file could not be read"
        text: "The file “wing.stl” holds no triangles. Choose another one, or mend it in the program that made it."
    }

    Window.onWindowChanged: {
        if (Window.window)
            Qt.callLater(open);
    }

    function open() {
        menu.popup(32, 60);
        select.popup.open();
        tip.visible = true;
        alert.open();
    }
}
