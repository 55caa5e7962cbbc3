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

    // Before, the range may not be the one that is meant.
    property bool complete: false
    readonly property bool pending: text !== shown

    signal edited(real value)

    function bringInRange() {
        const kept = NumberEditing.inRange(value, from, to);
        if (kept !== value)
            edited(kept);
    }

    function take() {
        // The shown text again would only lose the digits that aren't shown.
        const taken = !pending ? value : NumberEditing.value(text, value, from, to);
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
        if (complete)
            Qt.callLater(bringInRange);
    }
    onShownChanged: text = shown
    Component.onCompleted: {
        complete = true;
        text = shown;
        bringInRange();
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
    // Keys that mean something else to the window are the field's while a text waits to be taken.
    Keys.onShortcutOverride: event => {
        event.accepted = pending && (event.key === Qt.Key_Return || event.key === Qt.Key_Enter
            || event.key === Qt.Key_Escape);
    }
    Keys.onReturnPressed: event => {
        event.accepted = pending;
        take();
        selectAll();
    }
    Keys.onEnterPressed: event => {
        event.accepted = pending;
        take();
        selectAll();
    }
    Keys.onEscapePressed: event => {
        event.accepted = pending;
        putBack();
    }
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
