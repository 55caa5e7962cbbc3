import QtQuick
import Ostrella.Controls
import Ostrella.Sidebar

// How the model stands in the flow: three angles, and the way to turn it by hand.
SidebarSection {
    id: section

    required property SidebarModel model

    title: model.texts.orientation
    enabled: model.canOrient
    action: LinkButton {
        text: section.model.texts.reset
        help: section.model.texts.resetHelp
        visible: section.model.isRotated
        font: Theme.caption
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        Accessible.name: section.model.texts.resetName
        onClicked: section.model.resetOrientation()
    }

    Item {
        width: parent.width
        height: angles.height

        SidebarRow {
            id: angles

            width: parent.width
            title: section.model.texts.angles
            suffix: section.model.texts.anglesSuffix
            spacing: 6

            AngleField {
                description: section.model.rotationXField
                value: section.model.rotationX
                onEdited: value => section.model.rotationX = value
            }

            AngleField {
                description: section.model.rotationYField
                value: section.model.rotationY
                onEdited: value => section.model.rotationY = value
            }

            AngleField {
                description: section.model.rotationZField
                value: section.model.rotationZ
                onEdited: value => section.model.rotationZ = value
            }
        }

        // Above the fields too, which would keep the right button to themselves.
        MouseArea {
            acceptedButtons: Qt.RightButton
            anchors.fill: parent
            onClicked: menu.popup()
        }

        BrandMenu {
            id: menu

            BrandMenuItem {
                text: section.model.texts.resetMenuItem
                enabled: section.model.isRotated
                onTriggered: section.model.resetOrientation()
            }
        }
    }

    Item {
        width: parent.width
        height: Math.max(hint.height, orient.height) + 8

        Text {
            id: hint

            // The same lines whatever the button beside it says.
            width: Math.min(188 * Theme.lengthScale, parent.width - orient.width - 12)
            text: section.model.texts.orientHint
            font: Theme.caption
            color: enabled ? Theme.textTertiary : Theme.textDisabled
            wrapMode: Text.WordWrap
            textFormat: Text.PlainText
            anchors.bottom: parent.bottom
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        BrandButton {
            id: orient

            small: true
            text: section.model.orientButtonText
            font: Theme.caption
            anchors.right: parent.right
            anchors.verticalCenter: hint.verticalCenter
            onClicked: section.model.toggleOrientMode()
        }
    }
}
