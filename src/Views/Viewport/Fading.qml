import QtQuick
import Ostrella.Controls

// Something over the scene that comes and goes by fading.
FocusScope {
    id: fading

    property bool shown: false
    property int duration: 150

    opacity: shown ? 1 : 0
    visible: opacity > 0
    enabled: shown

    Behavior on opacity {
        NumberAnimation {
            duration: fading.duration * Theme.motion
            easing.type: Easing.OutQuad
        }
    }
}
