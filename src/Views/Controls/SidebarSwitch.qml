import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// A small switch.
T.Switch {
    id: control

    property string label: ""
    property bool isOn: false
    property string help: ""

    signal toggledByUser(bool on)

    hoverEnabled: true
    implicitWidth: Theme.switchWidth
    implicitHeight: Theme.switchHeight
    checked: isOn
    Accessible.name: label
    Accessible.description: help
    Accessible.onPressAction: toggledByUser(!isOn)
    Accessible.onToggleAction: toggledByUser(!isOn)

    onToggled: {
        const wanted = checked;
        // What is shown follows what is set, not what was asked for.
        checked = Qt.binding(() => control.isOn);
        toggledByUser(wanted);
    }

    indicator: Rectangle {
        width: control.width
        height: control.height
        radius: height / 2
        color: !control.enabled ? Theme.borderSubtle
            : control.checked ? (control.down ? Theme.accentPressed : Theme.accentPrimary)
            : control.hovered ? Theme.over(Theme.borderStrong, Theme.washHover)
            : Theme.borderStrong

        Rectangle {
            x: control.checked ? parent.width - width - 2 : 2
            y: 2
            width: Theme.switchKnob
            height: width
            radius: width / 2
            color: !Theme.dark ? "white" : control.checked && control.enabled ? Theme.accentOn : Theme.textPrimary
            opacity: control.enabled ? 1 : Theme.dark ? 0.45 : 0.85

            Behavior on x {
                NumberAnimation {
                    duration: 150 * Theme.motion
                    easing.type: Easing.OutQuad
                }
            }
        }

        FocusRing {
            visible: control.visualFocus
            accent: true
            frameRadius: parent.radius
        }
    }

    Help {
        control: control
        text: control.help
    }
}
