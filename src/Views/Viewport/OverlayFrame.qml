import QtQuick
import Ostrella.Viewport

// Tells the viewport's model where an overlay stands, as long as it is shown.
QtObject {
    id: reporter

    required property ViewportModel model
    required property int overlay
    required property Item target
    property bool shown: true
    readonly property rect frame: shown ? Qt.rect(target.x, target.y, target.width, target.height) : Qt.rect(0, 0, 0, 0)

    onFrameChanged: model.reportFrame(overlay, frame)
    Component.onCompleted: model.reportFrame(overlay, frame)
}
