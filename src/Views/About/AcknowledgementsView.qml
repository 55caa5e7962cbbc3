import QtQuick
import Ostrella.About
import Ostrella.Controls

// Whose tools the application runs, and under which licences.
Window {
    id: window

    required property AboutModel model

    title: model.texts.acknowledgements
    color: Theme.surfaceBase
    flags: Qt.Dialog
    modality: Qt.WindowModal
    width: Math.min(Theme.length(488), Screen.desktopAvailableWidth)
    height: Math.min(notices.height + foot.height, Screen.desktopAvailableHeight)
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height

    onVisibleChanged: {
        if (visible)
            done.forceActiveFocus(Qt.PopupFocusReason);
    }
    onClosing: model.showAcknowledgements = false

    Shortcut {
        sequences: ["Esc", "Ctrl+W"]
        onActivated: window.close()
    }

    Flickable {
        anchors {
            left: parent.left
            right: parent.right
            top: parent.top
            bottom: foot.top
        }
        contentHeight: notices.height
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        clip: interactive

        Column {
            id: notices
            x: 20
            width: parent.width - 40
            topPadding: 16
            spacing: 12

            Repeater {
                model: window.model.notices

                Column {
                    required property var modelData

                    width: notices.width
                    spacing: 2

                    Text {
                        width: parent.width
                        text: parent.modelData.heading
                        font: Theme.bodyMedium
                        color: Theme.textPrimary
                        textFormat: Text.PlainText
                        Accessible.role: Accessible.Heading
                        Accessible.name: text
                    }
                    SettingsCaption {
                        width: parent.width
                        text: parent.modelData.text
                        color: Theme.textSecondary
                    }
                }
            }
        }
    }

    Item {
        id: foot
        width: parent.width
        height: Math.max(done.height, libraries.height) + 28
        anchors.bottom: parent.bottom

        SettingsCaption {
            id: libraries
            x: 20
            width: done.x - x - 24
            anchors.verticalCenter: done.verticalCenter
            text: window.model.texts.libraries
        }
        BrandButton {
            id: done
            anchors.right: parent.right
            anchors.rightMargin: 20
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 16
            text: window.model.texts.done
            kind: "primary"
            Keys.onReturnPressed: clicked()
            Keys.onEnterPressed: clicked()
            onClicked: window.close()
        }
    }
}
