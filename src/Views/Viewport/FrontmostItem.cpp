#include "Views/Viewport/FrontmostItem.h"

#include <QQuickItem>

#include <algorithm>

namespace ostrella {

namespace {

/// It draws, or takes what the pointer does: it is not a mere place for others.
bool isSomething(const QQuickItem& item) {
    return item.flags().testFlag(QQuickItem::ItemHasContents) ||
           item.acceptedMouseButtons() != Qt::NoButton || item.acceptHoverEvents();
}

QQuickItem* search(QQuickItem& item, QPointF point, bool itself) {
    if (!item.isVisible() || item.opacity() <= 0)
        return nullptr;
    const bool inside = item.contains(point);
    if (item.clip() && !inside)
        return nullptr;
    QList<QQuickItem*> children = item.childItems();
    std::ranges::stable_sort(children, {}, [](const QQuickItem* child) { return child->z(); });
    const auto under = [&](QQuickItem* child) {
        return search(*child, item.mapToItem(child, point), true);
    };
    // What stands behind its parent is drawn before it.
    auto child = children.crbegin();
    for (; child != children.crend() && (*child)->z() >= 0; ++child) {
        if (QQuickItem* found = under(*child))
            return found;
    }
    if (itself && inside && isSomething(item))
        return &item;
    for (; child != children.crend(); ++child) {
        if (QQuickItem* found = under(*child))
            return found;
    }
    return nullptr;
}

} // namespace

QQuickItem* frontmostItem(QQuickItem& root, QPointF point) {
    return search(root, point, false);
}

} // namespace ostrella
