import QtQuick
import Ostrella.Controls
import Ostrella.Viewport

// The scene, and what lies over it.
Item {
    id: view

    required property ViewportModel model
    readonly property var places: model.place({
            size: Qt.size(width, height),
            lengthScale: Theme.lengthScale,
            card: infoSlot.shown ? wish(info) : errorSlot.shown ? wish(error) : null,
            legend: legendSlot.shown ? {
                width: legend.width,
                heightAroundBar: legend.heightAroundBar
            } : null,
            viewControl: sizeOf(controlSlot),
            orientCard: sizeOf(orientSlot),
            notice: sizeOf(noticeSlot),
            loading: sizeOf(loadingSlot),
            welcome: sizeOf(welcomeSlot)
        })
    readonly property real mostCardWidth: model.mostCardWidth(width, legendSlot.shown ? legend.width : 0)

    function wish(card) {
        return {
            width: card.width,
            leastHeight: card.leastHeight,
            height: card.fullHeight
        };
    }

    function sizeOf(slot) {
        return slot.shown ? Qt.size(slot.card.width, slot.card.height) : null;
    }

    onPlacesChanged: model.reportBarHeight(places.barHeight)
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

    OverlaySlot {
        id: welcomeSlot

        // Two texts in the same place are none.
        shown: view.model.showsWelcome && !view.model.drop.isTargeted
        place: view.places.welcome
        card: WelcomeCard {
            model: view.model.welcome
        }
    }

    OverlaySlot {
        id: infoSlot

        readonly property string kind: view.model.card.kind

        shown: kind === "geometry" || kind === "solver" || kind === "result"
        place: shown ? view.places.card : null
        card: InfoCard {
            id: info

            model: view.model.card
            mostWidth: view.mostCardWidth
            mostHeight: view.places.mostCardHeight
            squeezed: view.places.cardIsSqueezed
        }
    }

    OverlaySlot {
        id: errorSlot

        shown: view.model.card.kind === "error"
        place: shown ? view.places.card : null
        card: ErrorCard {
            id: error

            model: view.model.card
            mostWidth: view.mostCardWidth
            mostHeight: view.places.mostCardHeight
        }
    }

    OverlayFrame {
        model: view.model
        overlay: ViewportModel.Card
        target: errorSlot.shown ? errorSlot : infoSlot
        shown: errorSlot.shown || infoSlot.shown
    }

    OverlaySlot {
        id: legendSlot

        shown: view.model.legend.isShown
        place: view.places.legend
        card: CpLegendView {
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

    OverlaySlot {
        id: controlSlot

        shown: view.model.showsViewControl
        place: view.places.viewControl
        card: ViewControl {
            model: view.model
        }
    }

    OverlayFrame {
        model: view.model
        overlay: ViewportModel.ViewControl
        target: controlSlot
        shown: controlSlot.shown
    }

    OverlaySlot {
        id: orientSlot

        shown: view.model.showsOrientCard
        place: view.places.orientCard
        card: OrientCard {
            model: view.model.orientCard
        }
    }

    OverlayFrame {
        model: view.model
        overlay: ViewportModel.OrientCard
        target: orientSlot
        shown: orientSlot.shown
    }

    OverlaySlot {
        id: loadingSlot

        shown: view.model.loadingText !== ""
        place: view.places.loading
        card: LoadingCard {
            id: loading

            mostWidth: Math.min(480, view.width - 48)
        }

        // What it says stays while it goes.
        Connections {
            target: view.model

            function onChanged() {
                if (view.model.loadingText !== "")
                    loading.text = view.model.loadingText;
            }
        }
    }

    OverlaySlot {
        id: noticeSlot

        shown: view.model.notice !== ""
        duration: 200
        goingDuration: 400
        place: view.places.notice
        card: NoticeCard {
            id: notice

            symbol: view.model.noticeSymbol
            mostWidth: Math.min(560, view.width - 32)
        }

        Connections {
            target: view.model

            function onNoticeChanged() {
                if (view.model.notice !== "")
                    notice.text = view.model.notice;
            }
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
