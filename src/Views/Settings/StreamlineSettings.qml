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
            title: page.model.texts.window

            SettingsRow {
                label: page.model.inletOffsetField.label

                FactorSlider {
                    label: page.model.inletOffsetField.label
                    from: page.model.inletOffsetField.from
                    to: page.model.inletOffsetField.to
                    step: page.model.inletOffsetField.step
                    value: page.model.inletOffset
                    onEdited: value => page.model.inletOffset = value
                }
            }
            SettingsRow {
                label: page.model.wakeLengthField.label

                FactorSlider {
                    label: page.model.wakeLengthField.label
                    from: page.model.wakeLengthField.from
                    to: page.model.wakeLengthField.to
                    step: page.model.wakeLengthField.step
                    value: page.model.wakeLength
                    onEdited: value => page.model.wakeLength = value
                }
            }
        }
        SettingsCaption {
            width: parent.width
            text: page.model.texts.windowCaption
        }
    }

    Column {
        width: page.width
        spacing: 8

        SettingsGroup {
            width: parent.width
            title: page.model.texts.density

            SettingsRow {
                label: page.model.seedCountField.label

                BrandStepper {
                    label: page.model.seedCountField.label
                    from: page.model.seedCountField.from
                    to: page.model.seedCountField.to
                    step: page.model.seedCountField.step
                    value: page.model.seedCount
                    onEdited: value => page.model.seedCount = value
                }
            }
        }
        SettingsCaption {
            width: parent.width
            text: page.model.texts.densityCaption
        }
    }
}
