#pragma once

#include "Views/Format/ViewportDrop.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <cstdint>
#include <functional>

namespace ostrella {

/// What happens to files that are dragged over the viewport and dropped on it. Main thread only.
class STLDropDelegate final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the viewport's model")
    /// A drag is over the viewport.
    Q_PROPERTY(bool isTargeted READ isTargeted NOTIFY changed)
    Q_PROPERTY(bool refuses READ refuses NOTIFY changed)
    /// What the overlay says, and its symbol.
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)

public:
    using DropPreview = ViewportFormat::DropPreview;
    using DropOutcome = ViewportFormat::DropOutcome;
    /// Receives the result of a drop, in a later turn of the event loop.
    using Handle = std::function<void(const DropOutcome&)>;

    explicit STLDropDelegate(Handle handle, QObject* parent = nullptr);

    /// A drag of these has come in. What is no file of this machine has no place to load from.
    void dropEntered(const QList<QUrl>& items);
    /// Whether a drop at this moment would do anything.
    bool dropUpdated() const;
    void dropExited();
    /// False if the drop does nothing.
    bool performDrop(const QList<QUrl>& items);

    bool isTargeted() const { return isTargeted_; }
    const DropPreview& preview() const { return preview_; }
    bool refuses() const { return preview_.kind == DropPreview::Kind::refuse; }
    QString text() const;
    QString symbol() const;

Q_SIGNALS:
    void changed();

private:
    void show(bool isTargeted, DropPreview preview);
    void resolve(const QList<QUrl>& items, std::function<void(const DropOutcome&)> completion);

    Handle handle_;
    bool isTargeted_ = false;
    DropPreview preview_;
    std::int64_t drag_ = 0; ///< number of the present one: answers to older ones count no longer
};

} // namespace ostrella
