#include "Views/Chrome/CommandItem.h"

#include <utility>

namespace ostrella {

CommandItem::CommandItem(Rules rules, QObject* parent) : QObject(parent), rules_(std::move(rules)) {
    refresh();
}

bool CommandItem::mayBeDone() const {
    return !rules_.isEnabled || rules_.isEnabled();
}

void CommandItem::trigger() {
    // What is on the screen may be a turn of the event loop behind.
    if (rules_.action && mayBeDone()) {
        rules_.action();
    }
}

void CommandItem::refresh() {
    Shown now{mayBeDone(), rules_.isChecked && rules_.isChecked(),
        rules_.help ? rules_.help() : QString(), rules_.label ? rules_.label() : QString()};
    if (now != shown_) {
        shown_ = std::move(now);
        Q_EMIT changed();
    }
}

} // namespace ostrella
