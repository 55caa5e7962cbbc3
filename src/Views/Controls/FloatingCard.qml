import QtQuick
import Ostrella.Controls

// A card over the viewport, with its shadow. What lies below gets no clicks, wheel or hover.
Item {
    id: card

    default property alias content: inside.data
    property real padding: Theme.cardPadding
    property real leftPadding: padding
    property real rightPadding: padding
    property real topPadding: padding
    property real bottomPadding: padding
    property real radius: Theme.cardRadius
    readonly property alias contentItem: inside

    implicitWidth: Math.ceil(inside.childrenRect.width) + leftPadding + rightPadding
    implicitHeight: Math.ceil(inside.childrenRect.height) + topPadding + bottomPadding

    CardShadow {
        anchors.fill: parent
        radius: card.radius
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        cursorShape: Qt.ArrowCursor
        onWheel: wheel => { wheel.accepted = true; }
    }

    Rectangle {
        anchors.fill: parent
        radius: card.radius
        color: Theme.surfaceRaised
        border.pixelAligned: false
        border.width: Theme.hairline(Screen.devicePixelRatio)
        border.color: Theme.over(color, Theme.borderSubtle)
    }

    Item {
        id: inside
        x: card.leftPadding
        y: card.topPadding
        width: card.width - card.leftPadding - card.rightPadding
        height: card.height - card.topPadding - card.bottomPadding
    }
}
