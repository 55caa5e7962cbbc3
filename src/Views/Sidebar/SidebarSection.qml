import QtQuick
import Ostrella.Controls

// A group of the sidebar's rows under its heading, ended by a hairline unless it is the last.
Column {
    id: section

    property string title: ""
    property bool isLast: false
    // What stands at the right end of the heading.
    property alias action: head.data
    default property alias rows: body.data

    Item {
        width: parent.width
        height: 16
    }

    Item {
        id: head

        width: parent.width
        height: 20

        SectionLabel {
            text: section.title
            anchors.verticalCenter: parent.verticalCenter
        }
    }

    Item {
        width: parent.width
        height: 4
    }

    Column {
        id: body

        width: parent.width

        move: Transition {
            NumberAnimation {
                properties: "y"
                duration: 150 * Theme.motion
                easing.type: Easing.OutQuad
            }
            // A row that is moved while it comes would stay half to be seen.
            NumberAnimation {
                property: "opacity"
                to: 1
                duration: 150 * Theme.motion
                easing.type: Easing.OutQuad
            }
        }
        add: Transition {
            NumberAnimation {
                property: "opacity"
                from: 0
                to: 1
                duration: 150 * Theme.motion
                easing.type: Easing.OutQuad
            }
        }
    }

    Item {
        width: parent.width
        height: 14
    }

    Hairline {
        width: parent.width
        visible: !section.isLast
    }
}
