import QtQuick
import Ostrella.Chrome
import Ostrella.Controls

// A group of toolbar items in one rounded box.
ToolbarCluster {
    id: cluster

    required property var entries
    property int look: ToolbarButton.Labels

    Repeater {
        model: cluster.entries

        Loader {
            id: slot

            required property var modelData

            sourceComponent: modelData.toggle ? toggle : button

            Component {
                id: button

                ToolbarButton {
                    text: slot.modelData.text
                    symbol: slot.modelData.symbol
                    help: slot.modelData.item.help
                    look: cluster.look
                    enabled: slot.modelData.item.enabled
                    Accessible.name: slot.modelData.item.label !== "" ? slot.modelData.item.label : text
                    onClicked: slot.modelData.item.trigger()
                }
            }

            Component {
                id: toggle

                ToolbarToggle {
                    text: slot.modelData.text
                    symbol: slot.modelData.symbol
                    help: slot.modelData.item.help
                    look: cluster.look
                    enabled: slot.modelData.item.enabled
                    checked: slot.modelData.item.checked
                    onToggled: {
                        // What is shown follows what is set, not what was asked for.
                        checked = Qt.binding(() => slot.modelData.item.checked);
                        slot.modelData.item.trigger();
                    }
                }
            }
        }
    }
}
