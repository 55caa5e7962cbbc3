import QtQuick
import Ostrella.Controls

// A value at the right of a row, with digits of one width; long names are cut in the middle.
NumberText {
    color: enabled ? Theme.textPrimary : Theme.textDisabled
    elide: Text.ElideMiddle
    horizontalAlignment: Text.AlignRight
}
