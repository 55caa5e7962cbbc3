import QtQuick
import Ostrella.Controls
import Ostrella.Viewport

// What a drop at this place would do.
Item {
    id: overlay

    required property STLDropDelegate model

    Accessible.role: Accessible.StaticText
    Accessible.name: model.text

    Rectangle {
        anchors.fill: parent
        color: Theme.sceneBase
        opacity: 0.88
    }

    DashedFrame {
        anchors.fill: parent
        anchors.margins: 16
        radius: Theme.cardRadius
        color: overlay.model.refuses ? Theme.sceneTextTertiary : Theme.sceneAccent
    }

    Column {
        spacing: 12
        width: parent.width - 96
        anchors.centerIn: parent

        Symbol {
            name: overlay.model.symbol
            size: 32 * Theme.lengthScale
            color: overlay.model.refuses ? Theme.sceneError : Theme.sceneAccent
            anchors.horizontalCenter: parent.horizontalCenter
        }

        Text {
            text: overlay.model.text
            width: parent.width
            font: Theme.bodyMedium
            color: Theme.sceneText
            elide: Text.ElideMiddle
            horizontalAlignment: Text.AlignHCenter
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }
}
