#include "Views/Panel/LogVisibleRows.h"

#include <algorithm>
#include <utility>

namespace ostrella {

void LogVisibleRows::show(std::vector<Row> rows) {
    const auto before = static_cast<int>(rows_.size());
    const auto now = static_cast<int>(rows.size());
    if (now < before) {
        beginRemoveRows({}, now, before - 1);
        rows_.resize(rows.size());
        endRemoveRows();
    }
    const int kept = std::min(before, now);
    const bool differs = !std::equal(rows_.begin(), rows_.begin() + kept, rows.begin());
    if (now > before) {
        beginInsertRows({}, before, now - 1);
        rows_ = std::move(rows);
        endInsertRows();
    } else {
        rows_ = std::move(rows);
    }
    if (differs) {
        Q_EMIT dataChanged(index(0), index(kept - 1));
    }
}

int LogVisibleRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant LogVisibleRows::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case textRole:
        return row.text;
    case topRole:
        return row.top;
    case heightRole:
        return row.height;
    default:
        return {};
    }
}

QHash<int, QByteArray> LogVisibleRows::roleNames() const {
    return {{textRole, QByteArrayLiteral("rowText")}, {topRole, QByteArrayLiteral("rowTop")},
        {heightRole, QByteArrayLiteral("rowHeight")}};
}

} // namespace ostrella
