import QtQuick
import Ostrella.Controls

// A rounded frame of dashes.
Canvas {
    id: frame

    property real radius: Theme.cardRadius
    property color color: Theme.accentPrimary

    onColorChanged: requestPaint()
    onWidthChanged: requestPaint()
    onHeightChanged: requestPaint()
    onPaint: {
        const context = getContext("2d");
        context.reset();
        context.strokeStyle = frame.color;
        context.lineWidth = 1;
        context.setLineDash([4, 3]);
        context.beginPath();
        context.roundedRect(0.5, 0.5, width - 1, height - 1, radius, radius);
        context.stroke();
    }
}
