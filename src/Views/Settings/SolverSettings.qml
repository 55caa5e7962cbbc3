import QtQuick
import Ostrella.Controls
import Ostrella.Settings

SettingsPage {
    id: page

    required property SettingsModel model

    Column {
        width: page.width
        spacing: 8

        SettingsGroup {
            width: parent.width
            title: page.model.texts.iterations

            SettingsRow {
                label: page.model.maxIterationsField.label

                BrandStepper {
                    label: page.model.maxIterationsField.label
                    from: page.model.maxIterationsField.from
                    to: page.model.maxIterationsField.to
                    step: page.model.maxIterationsField.step
                    value: page.model.maxIterations
                    onEdited: value => page.model.maxIterations = value
                }
            }
        }
        SettingsCaption {
            width: parent.width
            text: page.model.texts.iterationsCaption
        }
    }

    Column {
        width: page.width
        spacing: 8

        SettingsGroup {
            width: parent.width
            title: page.model.texts.updates

            SettingsRow {
                label: page.model.texts.currentVersion

                NumberText {
                    text: page.model.version
                    color: Theme.textSecondary
                }
            }
            SettingsRow {
                label: page.model.texts.checkAutomatically
                enabled: page.model.hasUpdates

                SidebarSwitch {
                    label: page.model.texts.checkAutomatically
                    isOn: page.model.checksAutomatically
                    onToggledByUser: on => page.model.checksAutomatically = on
                }
            }
        }
        Item {
            width: parent.width
            implicitHeight: Math.max(note.implicitHeight, check.y + check.height)

            SettingsCaption {
                id: note
                width: parent.width - check.width - 24
                text: page.model.texts.updatesCaption
            }
            BrandButton {
                id: check
                y: 2
                anchors.right: parent.right
                text: page.model.texts.checkNow
                enabled: page.model.canCheckForUpdates
                onClicked: page.model.checkForUpdates()
            }
        }
    }
}
