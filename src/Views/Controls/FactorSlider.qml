import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// A multiple of the body's length on a slider, with its value behind. A value out of the range is
// told as it is, and a step brings it in.
Item {
    id: factor

    property string label: ""
    property real value: 0
    property real from: 0
    property real to: 1
    property real step: 0.1

    signal edited(real value)

    function change(steps: int) {
        const wanted = Stepping.steppedFactor(value, steps, step, from, to);
        if (wanted !== value)
            edited(wanted);
    }

    implicitWidth: slider.implicitWidth + number.width + 12
    implicitHeight: Theme.fieldHeight

    T.Slider {
        id: slider

        readonly property real shown: Stepping.factorInRange(factor.value, factor.from, factor.to)
        // Before, the range may not be the one that is meant.
        property bool complete: false
        // As readers of the screen ask for them.
        readonly property real minimumValue: from
        readonly property real maximumValue: to

        implicitWidth: Math.round(152 * Theme.lengthScale)
        height: parent.height
        from: factor.from
        to: factor.to
        stepSize: factor.step
        snapMode: T.Slider.SnapAlways
        value: shown
        hoverEnabled: true
        Accessible.name: factor.label
        Accessible.onIncreaseAction: factor.change(1)
        Accessible.onDecreaseAction: factor.change(-1)
        Component.onCompleted: complete = true

        onValueChanged: {
            if (!complete || value === shown)
                return;
            const wanted = Stepping.snappedFactor(value, factor.step, factor.from, factor.to);
            if (wanted !== factor.value)
                factor.edited(wanted);
            if (!pressed)
                value = Qt.binding(() => shown);
        }
        onPressedChanged: {
            if (!pressed)
                value = Qt.binding(() => shown);
        }

        Keys.onPressed: event => {
            const steps = event.key === Qt.Key_Up || event.key === Qt.Key_Right ? 1
                : event.key === Qt.Key_Down || event.key === Qt.Key_Left ? -1
                : event.key === Qt.Key_PageUp ? 10
                : event.key === Qt.Key_PageDown ? -10 : 0;
            event.accepted = steps !== 0;
            factor.change(steps);
        }

        background: Rectangle {
            y: (slider.height - height) / 2
            width: slider.width
            height: Math.round(4 * Theme.lengthScale)
            radius: height / 2
            color: slider.enabled ? Theme.borderStrong : Theme.borderSubtle

            Rectangle {
                width: slider.handle.x + slider.handle.width / 2
                height: parent.height
                radius: parent.radius
                color: slider.enabled ? Theme.accentPrimary : Theme.textDisabled
            }
        }

        handle: Rectangle {
            x: Math.round(slider.visualPosition * (slider.width - width))
            y: (slider.height - height) / 2
            width: Math.round(16 * Theme.lengthScale)
            height: width
            radius: width / 2
            color: !slider.enabled ? Theme.textDisabled : Theme.dark ? Theme.textPrimary : "white"

            // Its shadow, where it isn't lighter than all around it.
            Rectangle {
                visible: !Theme.dark
                z: -1
                x: -1
                width: parent.width + 2
                height: parent.height + 2
                radius: width / 2
                color: Theme.borderStrong
            }

            FocusRing {
                visible: slider.visualFocus
                accent: true
                frameRadius: parent.radius
            }
        }
    }

    NumberText {
        id: number
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(Math.round(56 * Theme.lengthScale), Math.ceil(implicitWidth))
        horizontalAlignment: Text.AlignRight
        text: Stepping.factor(factor.value)
        color: factor.enabled ? Theme.textPrimary : Theme.textDisabled
        Accessible.ignored: true
    }
}
