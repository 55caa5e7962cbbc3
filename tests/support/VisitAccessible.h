#pragma once

#include <QAccessible>

#include <functional>

namespace ostrella::test {

/// Calls `visit` for all that lies below `parent` in the tree that readers of the screen walk, each
/// before what lies below it.
inline void visitAll(
    QAccessibleInterface* parent, const std::function<void(QAccessibleInterface*)>& visit) {
    for (int i = 0; i < parent->childCount(); ++i) {
        if (QAccessibleInterface* child = parent->child(i)) {
            visit(child);
            visitAll(child, visit);
        }
    }
}

} // namespace ostrella::test
