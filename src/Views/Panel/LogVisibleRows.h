#pragma once

#include <QAbstractListModel>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace ostrella {

/// The rows of the log that are in view, for those who have them read aloud: `rowText`, and
/// `rowTop` and `rowHeight` in points from the view's top.
class LogVisibleRows : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the log's view")

public:
    struct Row {
        QString text;
        qreal top = 0;
        qreal height = 0;

        bool operator==(const Row&) const = default;
    };
    enum Role { textRole = Qt::UserRole, topRole, heightRole };

    void show(std::vector<Row> rows);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<Row> rows_;
};

} // namespace ostrella
