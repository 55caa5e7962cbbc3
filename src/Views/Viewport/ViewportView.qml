import QtQuick
import Ostrella.Controls
import Ostrella.Viewport

// The scene, and what lies over it.
Item {
    id: view

    required property ViewportModel model
    readonly property real edge: Theme.edge

    // How high a card can be before it comes to those of the others that stand below it.
    function roomBelow(card, others) {
        let foot = height - edge;
        for (const other of others) {
            if (other.shown && other.x < card.x + card.width && other.x + other.width > card.x)
                foot = Math.min(foot, other.y - 8);
        }
        return foot - card.y;
    }

    clip: true
    onWidthChanged: model.reportSize(Qt.size(width, height))
    onHeightChanged: model.reportSize(Qt.size(width, height))

    ViewportItem {
        id: scene

        activeFocusOnTab: true
        anchors.fill: parent
        Accessible.role: Accessible.Graphic
        Accessible.name: "Viewport"
        Component.onCompleted: view.model.attach(scene)
    }

    // Within the view, which is cut off at its edge.
    Rectangle {
        visible: scene.showsFocus
        color: "transparent"
        border.width: 3
        border.color: Theme.accentSubtle
        anchors.fill: parent
        Accessible.ignored: true
    }

    OverlayFrame {
        model: view.model
        overlay: ViewportModel.Canvas
        target: scene
    }

    Fading {
        // Two texts in the same place are none.
        shown: view.model.showsWelcome && !view.model.drop.isTargeted
        width: welcome.width
        height: welcome.height
        anchors.centerIn: parent

        WelcomeCard {
            id: welcome

            // 24 to each edge.
            scale: Math.min(1, (view.width - 48) / width, (view.height - 48) / height)
            model: view.model.welcome
        }
    }

    Fading {
        id: infoSlot

        readonly property string kind: view.model.card.kind

        x: view.edge
        y: view.edge
        shown: kind === "geometry" || kind === "solver" || kind === "result"
        width: info.width
        height: info.height

        InfoCard {
            id: info

            model: view.model.card
            squeezed: orientSlot.shown && view.edge + width > orientSlot.x && view.edge + fullHeight + 8 > orientSlot.y
            mostHeight: view.roomBelow(infoSlot, [controlSlot, orientSlot, noticeSlot, loadingSlot])
        }
    }

    Fading {
        id: errorSlot

        x: view.edge
        y: view.edge
        shown: view.model.card.kind === "error"
        width: error.width
        height: error.height

        ErrorCard {
            id: error

            model: view.model.card
            mostHeight: Math.max(54, view.height - 200)
        }
    }

    OverlayFrame {
        model: view.model
        overlay: ViewportModel.Card
        target: errorSlot.shown ? errorSlot : infoSlot
        shown: errorSlot.shown || infoSlot.shown
    }

    Fading {
        id: legendSlot

        x: view.width - width - view.edge
        y: view.edge
        shown: view.model.legend.isShown
        width: legend.width
        height: legend.height

        CpLegendView {
            id: legend

            model: view.model.legend
        }
    }

    OverlayFrame {
        model: view.model
        overlay: ViewportModel.Legend
        target: legendSlot
        shown: legendSlot.shown
    }

    Fading {
        id: controlSlot

        x: view.width - width - view.edge
        y: view.height - height - view.edge
        shown: view.model.showsViewControl
        width: control.width
        height: control.height

        ViewControl {
            id: control

            model: view.model
        }
    }

    OverlayFrame {
        model: view.model
        overlay: ViewportModel.ViewControl
        target: controlSlot
        shown: controlSlot.shown
    }

    Fading {
        id: orientSlot

        x: Math.max(view.edge, Math.round((view.width - width) / 2))
        y: view.height - height - view.model.orientCardLift
        shown: view.model.showsOrientCard
        width: orient.width * orient.scale
        height: orient.height * orient.scale

        OrientCard {
            id: orient

            transformOrigin: Item.TopLeft
            scale: Math.min(1, (view.width - 2 * view.edge) / width)
            model: view.model.orientCard
        }
    }

    OverlayFrame {
        model: view.model
        overlay: ViewportModel.OrientCard
        target: orientSlot
        shown: orientSlot.shown
    }

    Fading {
        id: loadingSlot

        shown: view.model.loadingText !== ""
        width: loading.width
        height: loading.height
        anchors.centerIn: parent

        // What it says stays while it goes.
        Connections {
            target: view.model

            function onChanged() {
                if (view.model.loadingText !== "")
                    loading.text = view.model.loadingText;
            }
        }

        LoadingCard {
            id: loading

            mostWidth: Math.min(480, view.width - 48)
        }
    }

    Fading {
        id: noticeSlot

        shown: view.model.notice !== ""
        duration: 200
        goingDuration: 400
        width: notice.width
        height: notice.height
        x: Math.round((view.width - width) / 2)
        y: view.height - height - view.edge - view.model.noticeLift

        Connections {
            target: view.model

            function onNoticeChanged() {
                if (view.model.notice !== "")
                    notice.text = view.model.notice;
            }
        }

        NoticeCard {
            id: notice

            symbol: view.model.noticeSymbol
            mostWidth: Math.min(560, view.width - 32)
        }
    }

    Fading {
        shown: view.model.drop.isTargeted
        anchors.fill: parent

        DropOverlay {
            model: view.model.drop
            anchors.fill: parent
        }
    }

    DropTarget {
        delegate: view.model.drop
        anchors.fill: parent
    }
}
