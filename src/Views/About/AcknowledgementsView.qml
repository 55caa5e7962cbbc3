import QtQuick
import Ostrella.About
import Ostrella.Controls

// Whose tools the application runs, and under which licences.
FixedWindow {
    id: window

    required property AboutModel model

    title: model.texts.acknowledgements
    modality: Qt.WindowModal
    wantedWidth: Math.round(488 * Theme.lengthScale)
    wantedHeight: notices.height + foot.height

    function open() {
        // Otherwise its size would be known with its first frame only.
        for (let i = 0; i < items.count; ++i)
            items.itemAt(i).forceLayout();
        notices.forceLayout();
        x = transientParent.x + Math.round((transientParent.width - width) / 2);
        y = transientParent.y + Math.round((transientParent.height - height) / 2);
        show();
        requestActivate();
        done.forceActiveFocus(Qt.PopupFocusReason);
    }

    onClosing: model.showAcknowledgements = false

    ScrolledBody {
        anchors {
            left: parent.left
            right: parent.right
            top: parent.top
            bottom: foot.top
        }
        contentHeight: notices.height
        takesKeys: true

        Column {
            id: notices
            x: 20
            width: window.fittingWidth - 40
            topPadding: 16
            spacing: 12

            Repeater {
                id: items
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
