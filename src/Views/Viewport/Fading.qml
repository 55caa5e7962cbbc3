import QtQuick
import Ostrella.Controls

// Something over the scene that comes and goes by fading.
FocusScope {
    id: fading

    property bool shown: false
    // Milliseconds, of coming and of going.
    property int duration: 150
    property int goingDuration: duration

    opacity: shown ? 1 : 0
    visible: opacity > 0
    enabled: shown

    Behavior on opacity {
        id: change

        NumberAnimation {
            duration: (change.targetValue > 0 ? fading.duration : fading.goingDuration) * Theme.motion
            easing.type: Easing.OutQuad
        }
    }
}
