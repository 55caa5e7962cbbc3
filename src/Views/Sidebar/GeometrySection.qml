import QtQuick
import Ostrella.Controls
import Ostrella.Sidebar

// The loaded model, and the button that loads another.
SidebarSection {
    id: section

    required property SidebarModel model

    title: model.texts.geometry

    Text {
        width: parent.width
        height: Theme.rowHeight
        visible: !section.model.hasMesh
        text: section.model.geometryText
        font: Theme.body
        color: enabled ? Theme.textTertiary : Theme.textDisabled
        elide: Text.ElideMiddle
        textFormat: Text.PlainText
        verticalAlignment: Text.AlignVCenter
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    ValueRow {
        title: section.model.texts.file
        value: section.model.hasMesh ? section.model.fileName : ""
    }

    ValueRow {
        title: section.model.texts.facets
        value: section.model.hasMesh ? section.model.facets : ""
    }

    ValueRow {
        title: section.model.texts.boundingBox
        value: section.model.hasMesh ? section.model.boundingBox : ""
    }

    Item {
        width: parent.width
        height: load.height + 7

        BrandButton {
            id: load

            y: 7
            width: parent.width
            text: section.model.texts.load
            help: section.model.texts.loadHelp
            enabled: section.model.canLoad
            onClicked: section.model.load()
        }
    }
}
