import QtQuick
import Ostrella.Controls
import Ostrella.Sidebar

// The turbulence model, and what can be added to it.
SidebarSection {
    id: section

    required property SidebarModel model

    title: model.texts.turbulence
    isLast: true

    SidebarRow {
        width: parent.width
        title: section.model.texts.model

        SidebarSelect {
            label: section.model.texts.modelHelp
            help: section.model.texts.modelHelp
            options: section.model.turbulenceModels
            index: section.model.turbulenceModel
            anchors.verticalCenter: parent.verticalCenter
            onChosen: index => section.model.turbulenceModel = index
        }
    }

    SwitchRow {
        visible: section.model.showsSwitches
        title: section.model.texts.rotationCorrection.title
        suffix: section.model.texts.rotationCorrection.suffix
        label: section.model.texts.rotationCorrection.label
        help: section.model.texts.rotationCorrection.help
        isOn: section.model.rotationCorrection
        onToggledByUser: on => section.model.rotationCorrection = on
    }

    SwitchRow {
        visible: section.model.showsSwitches
        title: section.model.texts.transition.title
        suffix: section.model.texts.transition.suffix
        label: section.model.texts.transition.label
        help: section.model.texts.transition.help
        isOn: section.model.transition
        onToggledByUser: on => section.model.transition = on
    }
}
