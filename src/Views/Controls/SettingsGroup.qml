import QtQuick
import Ostrella.Controls

// Rows of settings in a box, under a heading if there is one.
Column {
    id: group

    property string title: ""
    default property alias content: rows.data

    spacing: 8

    SectionLabel {
        visible: text !== ""
        width: parent.width
        text: group.title
    }

    BrandGroup {
        width: parent.width
        padding: 14
        implicitHeight: rows.implicitHeight

        Column {
            id: rows
            width: parent.width
        }
    }
}
