import QtQuick
import QtQuick.Templates as T
import Ostrella.Controls

// A number that is typed: taken on Return, on Tab and when the keyboard goes elsewhere; Escape
// brings the old one back.
T.TextField {
    id: field

    property string label: ""
    property real value: 0
    property real from: 0
    property real to: 1
    property string unit: ""
    property int fewestDigits: 1
    property int mostDigits: 4
    property string help: ""
    readonly property bool invalid: activeFocus && !NumberEditing.isNumber(text)
    readonly property string shown: NumberEditing.text(
        value, from, to, fewestDigits, mostDigits)

    signal edited(real value)

    function take() {
        // The shown text again would only lose the digits that aren't shown.
        const taken = text === shown ? value : NumberEditing.value(text, value, from, to);
        if (taken !== value)
            edited(taken);
        text = shown;
    }
    function putBack() {
        text = shown;
        selectAll();
    }

    hoverEnabled: true
    implicitWidth: 120 * Theme.lengthScale
    implicitHeight: Theme.fieldHeight
    leftPadding: 8
    rightPadding: unit === "" ? 8 : Math.ceil(8 + sign.implicitWidth + 4)
    font: Theme.bodyNumbers
    color: enabled ? Theme.textPrimary : Theme.textDisabled
    selectionColor: Theme.over(Theme.fieldFill, Theme.accentSubtle)
    selectedTextColor: Theme.textPrimary
    horizontalAlignment: TextInput.AlignRight
    verticalAlignment: TextInput.AlignVCenter
    selectByMouse: true
    inputMethodHints: Qt.ImhFormattedNumbersOnly
    Accessible.name: label
    Accessible.description: help

    onValueChanged: {
        const kept = NumberEditing.inRange(value, from, to);
        if (!Object.is(kept, value))
            edited(kept);
    }
    onShownChanged: text = shown
    Component.onCompleted: {
        text = shown;
        const kept = NumberEditing.inRange(value, from, to);
        if (!Object.is(kept, value))
            edited(kept);
    }
    onActiveFocusChanged: {
        if (!activeFocus) {
            take();
            deselect();
        } else if (focusReason === Qt.TabFocusReason || focusReason === Qt.BacktabFocusReason
                || focusReason === Qt.ShortcutFocusReason) {
            selectAll();
        }
    }
    Keys.onReturnPressed: {
        take();
        selectAll();
    }
    Keys.onEnterPressed: {
        take();
        selectAll();
    }
    Keys.onEscapePressed: putBack()
    Keys.onUpPressed: event => { event.accepted = true; }
    Keys.onDownPressed: event => { event.accepted = true; }

    Text {
        id: sign
        visible: field.unit !== ""
        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        text: field.unit
        font: Theme.body
        color: field.enabled ? Theme.textTertiary : Theme.textDisabled
        textFormat: Text.PlainText
        Accessible.ignored: true
    }

    background: Rectangle {
        radius: Theme.fieldRadius
        color: Theme.fieldFill
        border.width: 1
        border.color: field.invalid ? Theme.statusError
            : field.activeFocus ? Theme.accentPrimary
            : Theme.over(color, field.enabled ? Theme.borderStrong : Theme.borderSubtle)

        FocusRing {
            visible: field.activeFocus && !field.invalid
            frameRadius: parent.radius
        }
    }

    Help {
        control: field
        text: field.help
    }
}
