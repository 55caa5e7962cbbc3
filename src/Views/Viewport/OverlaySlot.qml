import QtQuick

// The place of a card over the scene. The card fades where it stands.
Fading {
    id: slot

    // With `frame` and `scale`; none while the card is not on show.
    property var place: null
    property real factor: 1
    required property Item card

    function follow() {
        if (place) {
            x = place.frame.x;
            y = place.frame.y;
            factor = place.scale;
        }
    }

    width: card.width * factor
    height: card.height * factor
    onPlaceChanged: follow()
    Component.onCompleted: {
        card.parent = slot;
        card.transformOrigin = Item.TopLeft;
        follow();
    }

    Binding {
        target: slot.card
        property: "scale"
        value: slot.factor
    }
}
