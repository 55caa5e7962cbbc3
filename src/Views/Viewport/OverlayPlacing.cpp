#include "Views/Viewport/OverlayPlacing.h"

#include "Views/Format/ViewportPlacement.h"

#include <QRectF>
#include <QSizeF>

namespace ostrella {

namespace {

using ViewportLayout::OverlayPlace;

double number(const QVariantMap& map, const char* key) {
    return map.value(QString::fromLatin1(key)).toDouble();
}

std::optional<LayoutSize> size(const QVariantMap& wishes, const char* key) {
    const QVariant value = wishes.value(QString::fromLatin1(key));
    if (!value.canConvert<QSizeF>()) {
        return std::nullopt;
    }
    const QSizeF size = value.toSizeF();
    return LayoutSize{size.width(), size.height()};
}

std::optional<QVariantMap> map(const QVariantMap& wishes, const char* key) {
    const QVariantMap value = wishes.value(QString::fromLatin1(key)).toMap();
    return value.isEmpty() ? std::nullopt : std::optional(value);
}

void insert(QVariantMap& places, const char* key, const std::optional<OverlayPlace>& place) {
    if (place) {
        const LayoutRect& frame = place->frame;
        places.insert(QString::fromLatin1(key),
            QVariantMap{
                {QStringLiteral("frame"), QRectF(frame.x, frame.y, frame.width, frame.height)},
                {QStringLiteral("scale"), place->scale}});
    }
}

} // namespace

QVariantMap placeOverlays(const QVariantMap& wishes) {
    ViewportLayout::OverlayWishes wanted;
    wanted.size = size(wishes, "size").value_or(LayoutSize());
    wanted.lengthScale = number(wishes, "lengthScale");
    if (const auto card = map(wishes, "card")) {
        wanted.card = {
            number(*card, "width"), number(*card, "leastHeight"), number(*card, "height")};
    }
    if (const auto legend = map(wishes, "legend")) {
        wanted.legend = {number(*legend, "width"), number(*legend, "heightAroundBar")};
    }
    wanted.viewControl = size(wishes, "viewControl");
    wanted.orientCard = size(wishes, "orientCard");
    wanted.notice = size(wishes, "notice");
    wanted.loading = size(wishes, "loading");
    wanted.welcome = size(wishes, "welcome");

    const ViewportLayout::OverlayPlaces placed = ViewportLayout::place(wanted);
    QVariantMap places{{QStringLiteral("barHeight"), placed.barHeight},
        {QStringLiteral("mostCardHeight"), placed.mostCardHeight},
        {QStringLiteral("cardIsSqueezed"), placed.cardIsSqueezed}};
    insert(places, "card", placed.card);
    insert(places, "legend", placed.legend);
    insert(places, "viewControl", placed.viewControl);
    insert(places, "orientCard", placed.orientCard);
    insert(places, "notice", placed.notice);
    insert(places, "loading", placed.loading);
    insert(places, "welcome", placed.welcome);
    return places;
}

} // namespace ostrella
