import QtQuick
import Ostrella.Controls
import Ostrella.Sidebar

// The air that meets the model.
SidebarSection {
    id: section

    required property SidebarModel model

    title: model.texts.freeStream

    SidebarRow {
        width: parent.width
        title: section.model.texts.regime

        SidebarSelect {
            label: section.model.texts.regime
            options: section.model.regimes
            index: section.model.regime
            anchors.verticalCenter: parent.verticalCenter
            onChosen: index => section.model.regime = index
        }
    }

    NumberRow {
        description: section.model.velocityField
        value: section.model.velocity
        onEdited: value => section.model.velocity = value
    }

    NumberRow {
        description: section.model.alphaField
        value: section.model.alpha
        onEdited: value => section.model.alpha = value
    }

    NumberRow {
        description: section.model.betaField
        value: section.model.beta
        onEdited: value => section.model.beta = value
    }

    NumberRow {
        description: section.model.densityField
        value: section.model.density
        onEdited: value => section.model.density = value
    }
}
