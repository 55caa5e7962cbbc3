pragma ComponentBehavior: Bound

import QtQuick
import Ostrella.Controls
import Ostrella.Updates

// The window of a search for an update and of what comes of it. It is as tall as what it has to
// say, as far as the screen has room.
Window {
    id: window

    required property UpdateWindowModel model
    readonly property real margin: 20
    readonly property real room: Screen.desktopAvailableHeight > 0
        ? Screen.desktopAvailableHeight - 80 : 1e6
    // What is not the head's, at least and at most.
    readonly property real least: margin + notesArea.least + links.wanted + margin + foot.height
    readonly property real wanted: Math.ceil(Math.min(room,
        head.wanted + least - notesArea.least + notesArea.wanted))

    function takeKeyboard() {
        const first = model.firstButton < 0 ? null : buttons.itemAt(model.firstButton);
        (first ?? content).forceActiveFocus(Qt.OtherFocusReason);
    }

    component Answer: BrandButton {
        required property var modelData
        required property int index

        text: modelData.text
        kind: modelData.isPrimary ? "primary" : "secondary"
        onClicked: window.model.press(index)
        // One button takes another's place under the pointer: the second half of a double click on
        // the one is not meant for the other.
        onDoubleClicked: {}
        Keys.onReturnPressed: window.model.press(index)
        Keys.onEnterPressed: window.model.press(index)
    }

    title: model.windowTitle
    flags: Qt.Dialog
    color: Theme.surfaceBase
    width: Math.min(480 * Theme.lengthScale, Math.max(320, Screen.desktopAvailableWidth))
    height: wanted
    minimumWidth: width
    maximumWidth: width
    minimumHeight: wanted
    maximumHeight: wanted
    onVisibleChanged: {
        if (visible)
            Qt.callLater(takeKeyboard);
    }
    onClosing: model.close()

    Connections {
        target: window.model

        function onStageChanged() {
            // When the buttons of the stage are there.
            Qt.callLater(window.takeKeyboard);
        }
    }

    Shortcut {
        sequences: ["Ctrl+W", "Esc"]
        onActivated: window.close()
    }

    Item {
        id: content

        anchors.fill: parent
        focus: true
        Accessible.role: Accessible.Grouping
        Accessible.name: window.model.title
        Accessible.description: window.model.showsProgress ? window.model.progress
            : window.model.detail

        UpdateHeadline {
            id: head

            model: window.model
            most: Math.max(60, window.room - window.least)
            x: window.margin
            y: window.margin
            width: parent.width - 2 * window.margin
        }

        Item {
            id: notesArea

            readonly property real chrome: caption.height + 8 + 16
            readonly property real least: visible ? chrome + 72 * Theme.lengthScale : 0
            readonly property real wanted: visible
                ? chrome + Math.min(Math.max(notes.wanted, 72 * Theme.lengthScale),
                    200 * Theme.lengthScale) : 0

            visible: window.model.notes !== ""
            x: window.margin
            y: head.y + head.height + 16
            width: parent.width - 2 * window.margin
            height: Math.max(0, foot.y - window.margin - links.wanted - y)

            SectionLabel {
                id: caption

                text: window.model.notesTitle
            }

            ScrolledText {
                id: notes

                y: caption.height + 8
                width: parent.width
                height: Math.max(0, parent.height - y)
                boxed: true
                text: window.model.notes
            }
        }

        Column {
            id: links

            readonly property real wanted: visible ? height + 12 : 0

            visible: window.model.notesLink !== "" || window.model.pageLink !== ""
            x: window.margin
            y: foot.y - window.margin - height
            spacing: 8

            LinkButton {
                id: notesLink

                visible: text !== ""
                text: window.model.notesLink
                onClicked: window.model.openNotes()
            }

            LinkButton {
                id: pageLink

                visible: text !== ""
                text: window.model.pageLink
                onClicked: window.model.openPage()
            }
        }

        Item {
            id: foot

            // Side by side, or where large texts leave no room for that, one below the other.
            readonly property bool isStacked: apart.width > 0
                && apart.width + others.width + 8 > width - 2 * window.margin

            y: parent.height - height
            width: parent.width
            height: 32 + Theme.buttonHeight + (isStacked ? Theme.buttonHeight + 8 : 0)

            Hairline {
                edge: Qt.TopEdge
            }

            Row {
                id: apart

                x: window.margin
                y: 16
                spacing: 8

                Repeater {
                    model: window.model.buttons

                    Answer {
                        visible: modelData.isApart
                    }
                }
            }

            Row {
                id: others

                anchors.right: parent.right
                anchors.rightMargin: window.margin
                y: foot.height - 16 - height
                spacing: 8

                Repeater {
                    id: buttons

                    model: window.model.buttons

                    Answer {
                        visible: !modelData.isApart
                    }
                }
            }
        }
    }
}
