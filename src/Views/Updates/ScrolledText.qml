import QtQuick
import Ostrella.Controls

// A text of any length, which is scrolled where it does not fit: by wheel, pointer or keys.
Item {
    id: area

    property string text: ""
    // In a sunken box of its own.
    property bool boxed: false
    readonly property real padding: boxed ? 12 : 0
    readonly property real line: 18 * Theme.lengthScale
    readonly property real wanted: Math.ceil(words.implicitHeight) + 2 * padding
    readonly property bool scrolls: view.contentHeight > height + 0.5
    readonly property real page: Math.max(line, height - 2 * line)
    readonly property alias contentY: view.contentY

    function scrollTo(y) {
        view.contentY = Math.max(0, Math.min(y, view.contentHeight - view.height));
        linger.restart();
    }

    implicitHeight: wanted
    activeFocusOnTab: scrolls
    onTextChanged: view.contentY = 0
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.focusable: scrolls

    Keys.onPressed: event => {
        const at = view.contentY;
        let to = NaN;
        if (event.key === Qt.Key_Up)
            to = at - line;
        else if (event.key === Qt.Key_Down)
            to = at + line;
        else if (event.key === Qt.Key_PageUp)
            to = at - page;
        else if (event.key === Qt.Key_PageDown || event.key === Qt.Key_Space)
            to = at + page;
        else if (event.key === Qt.Key_Home)
            to = 0;
        else if (event.key === Qt.Key_End)
            to = view.contentHeight;
        event.accepted = scrolls && !isNaN(to);
        if (event.accepted)
            scrollTo(to);
    }

    Rectangle {
        id: box

        anchors.fill: parent
        anchors.margins: area.boxed ? 0 : -4
        radius: area.boxed ? Theme.groupRadius : Theme.keyCapRadius
        color: area.boxed ? Theme.surfaceSunken : "transparent"
        border.pixelAligned: false
        border.width: area.activeFocus ? 1 : area.boxed ? Theme.hairline(Screen.devicePixelRatio) : 0
        border.color: area.activeFocus ? Theme.accentPrimary : Theme.over(color, Theme.borderSubtle)

        FocusRing {
            visible: area.activeFocus
            frameRadius: box.radius
        }
    }

    Flickable {
        id: view

        anchors.fill: parent
        anchors.margins: area.boxed ? 1 : 0
        contentWidth: width
        contentHeight: area.wanted
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        interactive: area.scrolls

        Text {
            id: words

            x: area.padding
            y: area.padding
            // The bar has its room whether it is there or not.
            width: view.width - (area.boxed ? 2 * area.padding : 12)
            text: area.text
            font: Theme.body
            color: Theme.textSecondary
            lineHeight: area.line
            lineHeightMode: Text.FixedHeight
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }

    BrandScrollBar {
        anchors {
            top: parent.top
            right: parent.right
            bottom: parent.bottom
        }
        orientation: Qt.Vertical
        size: view.visibleArea.heightRatio
        position: view.visibleArea.yPosition
        active: view.moving || linger.running
        onPositionChanged: {
            if (pressed)
                view.contentY = position * view.contentHeight;
        }
    }

    // The bar stays a moment after a movement.
    Timer {
        id: linger
        interval: 800
    }
}
