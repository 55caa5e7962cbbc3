import QtQuick
import Ostrella.About
import Ostrella.Controls

// What this is, which version, and what it runs.
FixedWindow {
    id: window

    required property AboutModel model

    title: model.texts.windowTitle
    // As wide as the longest row needs.
    wantedWidth: Math.max(Math.round(336 * Theme.lengthScale), tagLine.implicitWidth + 32, rows.neededWidth + 60)
    wantedHeight: content.height

    // Also before it is shown: then it has the width that it keeps.
    Component.onCompleted: model.appear()
    onVisibleChanged: {
        if (visible)
            model.appear();
    }
    // The acknowledgements cannot go when this is gone already.
    onClosing: model.showAcknowledgements = false
    // What has the keyboard is in sight.
    onActiveFocusItemChanged: body.show(activeFocusItem)

    ScrolledBody {
        id: body
        anchors.fill: parent
        contentHeight: content.height
        takesKeys: true

        Column {
            id: content
            width: parent.width
            topPadding: 20
            bottomPadding: 20

            AppIcon {
                anchors.horizontalCenter: parent.horizontalCenter
                width: Math.round(96 * Theme.lengthScale)
                height: width
                Accessible.ignored: true
            }
            Item {
                width: 1
                height: 12
            }
            Text {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: window.model.texts.title
                font: Theme.title
                color: Theme.textPrimary
                textFormat: Text.PlainText
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            Item {
                width: 1
                height: 3
            }
            Text {
                id: tagLine
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: window.model.texts.tagLine
                font: Theme.body
                color: Theme.textSecondary
                textFormat: Text.PlainText
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Item {
                width: 1
                height: 4
            }
            Text {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: window.model.texts.version
                font: Theme.caption
                color: Theme.textTertiary
                textFormat: Text.PlainText
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Item {
                width: 1
                height: 25
            }
            SettingsGroup {
                id: rows

                readonly property real neededWidth: Math.max(
                    solver.neededWidth, mesher.neededWidth, renderer.neededWidth)

                x: 16
                width: parent.width - 32

                InfoRow {
                    id: solver
                    label: window.model.texts.solver
                    value: window.model.solver
                }
                InfoRow {
                    id: mesher
                    label: window.model.texts.mesher
                    value: window.model.mesher
                }
                InfoRow {
                    id: renderer
                    label: window.model.texts.renderer
                    value: window.model.renderer
                }
            }
            Item {
                width: 1
                height: 24
            }
            Column {
                id: primaryLinks
                anchors.horizontalCenter: parent.horizontalCenter
                spacing: 12

                LinkButton {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: window.model.texts.website
                    help: window.model.texts.websiteHelp
                    onClicked: window.model.openSite()
                }
                LinkButton {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: window.model.texts.checkForUpdates
                    enabled: window.model.canCheckForUpdates
                    onClicked: window.model.checkForUpdates()
                }
                LinkButton {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: window.model.texts.acknowledgements
                    onClicked: window.model.showAcknowledgements = true
                }
            }
            Item {
                visible: rights.visible
                width: 1
                height: 54
            }
            Text {
                id: rights
                visible: text !== ""
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: window.model.texts.rights
                font: Theme.caption
                color: Theme.textTertiary
                textFormat: Text.PlainText
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }

    component InfoRow: SettingsRow {
        property string value: ""

        labelColor: Theme.textTertiary
        implicitHeight: Theme.aboutRowHeight

        NumberText {
            text: parent.parent.value
        }
    }

    AcknowledgementsView {
        id: sheet
        model: window.model
        transientParent: window
    }

    Connections {
        target: window.model

        function onShowAcknowledgementsChanged() {
            if (window.model.showAcknowledgements)
                sheet.open();
            else
                sheet.close();
        }
    }
}
