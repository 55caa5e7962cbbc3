import QtQuick
import Ostrella.Controls

// A window beside the main one that always has the size that its content wants, as far as the
// screen has the room for it. Escape closes it.
Window {
    id: window

    property real wantedWidth: 1
    property real wantedHeight: 1
    readonly property int fittingWidth: Math.min(Math.ceil(wantedWidth), Screen.desktopAvailableWidth)
    readonly property int fittingHeight: Math.min(Math.ceil(wantedHeight), Screen.desktopAvailableHeight)

    // The bounds first: window managers hold each new size to those that they know.
    function fit() {
        minimumWidth = 0;
        minimumHeight = 0;
        maximumWidth = fittingWidth;
        maximumHeight = fittingHeight;
        minimumWidth = fittingWidth;
        minimumHeight = fittingHeight;
        width = fittingWidth;
        height = fittingHeight;
    }

    color: Theme.surfaceBase
    flags: Qt.Dialog
    // On the screen once for all that changes together.
    onFittingWidthChanged: visible ? Qt.callLater(fit) : fit()
    onFittingHeightChanged: visible ? Qt.callLater(fit) : fit()

    Shortcut {
        sequences: ["Esc", "Ctrl+W"]
        onActivated: window.close()
    }
}
