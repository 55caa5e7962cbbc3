import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// A whole number between the two buttons that change it by a step. A value out of the range is
// shown as it is, and a step brings it in. The keyboard comes to the number; arrows step, the page
// keys by ten.
Item {
    id: stepper

    property string label: ""
    property int value: 0
    property int from: 0
    property int to: 100
    property int step: 1

    signal edited(int value)

    function change(steps: int) {
        const wanted = Stepping.stepped(value, steps, step, from, to);
        if (wanted !== value)
            edited(wanted);
    }

    implicitWidth: frame.implicitWidth
    implicitHeight: Theme.fieldHeight

    component StepButton: T.AbstractButton {
        id: button

        required property int steps
        required property string symbol
        required property string help

        enabled: Stepping.canStep(stepper.value, steps, stepper.step, stepper.from, stepper.to)
        autoRepeat: true
        hoverEnabled: true
        focusPolicy: Qt.NoFocus
        width: Math.round(26 * Theme.lengthScale)
        height: stepper.height
        Accessible.ignored: true
        onClicked: stepper.change(steps)

        background: Item {
            clip: true

            Rectangle {
                x: button.steps < 0 ? 0 : -radius
                width: parent.width + radius
                height: parent.height
                radius: Theme.fieldRadius
                color: !button.enabled ? Theme.buttonFill
                    : button.down ? Theme.buttonPressed
                    : button.hovered ? Theme.buttonHover : Theme.buttonFill
            }
        }

        contentItem: Item {
            Symbol {
                anchors.centerIn: parent
                name: button.symbol
                size: 12 * Theme.lengthScale
                color: !button.enabled ? Theme.textDisabled
                    : button.hovered || button.down ? Theme.textPrimary : Theme.textSecondary
            }
        }

        Help {
            control: button
            text: button.help
        }
    }

    T.SpinBox {
        id: frame

        // As readers of the screen ask for them. The control's own range is as wide as it can be,
        // since it would not show a value out of it.
        readonly property int minimumValue: stepper.from
        readonly property int maximumValue: stepper.to

        anchors.fill: parent
        implicitWidth: 2 * less.width + field.width
        focusPolicy: Qt.StrongFocus
        from: -2147483648
        to: 2147483647
        value: stepper.value
        stepSize: stepper.step
        Accessible.name: stepper.label
        Accessible.onIncreaseAction: stepper.change(1)
        Accessible.onDecreaseAction: stepper.change(-1)

        // Set by a reader.
        onValueChanged: {
            if (value === stepper.value)
                return;
            const wanted = Stepping.stepped(value, 0, stepper.step, stepper.from, stepper.to);
            value = Qt.binding(() => stepper.value);
            stepper.edited(wanted);
        }

        Keys.onPressed: event => {
            const steps = event.key === Qt.Key_Up || event.key === Qt.Key_Right ? 1
                : event.key === Qt.Key_Down || event.key === Qt.Key_Left ? -1
                : event.key === Qt.Key_PageUp ? 10
                : event.key === Qt.Key_PageDown ? -10 : 0;
            event.accepted = steps !== 0;
            stepper.change(steps);
        }
    }

    Item {
        anchors.fill: parent

        StepButton {
            id: less
            steps: -1
            symbol: "minus"
            help: "Decrease " + stepper.label
        }
        Rectangle {
            id: field
            x: less.width
            width: Math.max(Math.round(64 * Theme.lengthScale), Math.ceil(number.implicitWidth) + 16)
            height: parent.height
            color: Theme.fieldFill

            NumberText {
                id: number
                anchors.centerIn: parent
                text: Stepping.count(stepper.value)
                color: stepper.enabled ? Theme.textPrimary : Theme.textDisabled
                Accessible.ignored: true
            }
            Rectangle {
                width: 1
                height: parent.height
                color: outline.border.color
            }
            Rectangle {
                x: parent.width - width
                width: 1
                height: parent.height
                color: outline.border.color
            }
        }
        StepButton {
            x: field.x + field.width
            steps: 1
            symbol: "plus"
            help: "Increase " + stepper.label
        }
        Rectangle {
            id: outline
            anchors.fill: parent
            radius: Theme.fieldRadius
            color: "transparent"
            border.width: 1
            border.color: frame.visualFocus ? Theme.accentPrimary
                : stepper.enabled ? Theme.borderStrong : Theme.borderSubtle

            FocusRing {
                visible: frame.visualFocus
                frameRadius: parent.radius
            }
        }
    }
}
