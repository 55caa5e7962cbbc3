#include "Views/Viewport/STLDropDelegate.h"

#include "Views/QStringOf.h"

#include <QMetaObject>
#include <QMimeDatabase>

#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

namespace ostrella {

namespace {

std::vector<ViewportFormat::DropKind> kindsOf(const QList<QUrl>& items) {
    const QMimeDatabase types;
    std::vector<ViewportFormat::DropKind> kinds;
    for (const QUrl& item : items) {
        const QString name = item.fileName();
        const QString type = types.mimeTypeForFile(name, QMimeDatabase::MatchExtension).name();
        kinds.push_back(ViewportFormat::dropKind(
            name.isEmpty() ? std::nullopt : std::optional(name.toStdString()),
            {type.toStdString()}));
    }
    return kinds;
}

} // namespace

STLDropDelegate::STLDropDelegate(Handle handle, QObject* parent)
    : QObject(parent), handle_(std::move(handle)) {}

void STLDropDelegate::dropEntered(const QList<QUrl>& items) {
    show(true, ViewportFormat::previewOf(kindsOf(items)));
    resolve(items, [this, drag = ++drag_](const DropOutcome& outcome) {
        const DropPreview preview = outcome.preview();
        if (isTargeted_ && drag == drag_ && preview.kind != DropPreview::Kind::pending) {
            show(true, preview);
        }
    });
}

bool STLDropDelegate::dropUpdated() const {
    return !refuses();
}

void STLDropDelegate::dropExited() {
    show(false, DropPreview::pending());
}

bool STLDropDelegate::performDrop(const QList<QUrl>& items) {
    const bool wasRefused = refuses();
    show(false, DropPreview::pending());
    if (wasRefused || items.isEmpty()) {
        return false;
    }
    resolve(items, handle_);
    return true;
}

void STLDropDelegate::resolve(
    const QList<QUrl>& items, std::function<void(const DropOutcome&)> completion) {
    std::vector<std::filesystem::path> places;
    for (const QUrl& item : items) {
        if (item.isLocalFile()) {
            // A folder may come with a slash at its end, behind which there is no name.
            places.emplace_back(
                item.adjusted(QUrl::StripTrailingSlash).toLocalFile().toStdU16String());
        }
    }
    QMetaObject::invokeMethod(
        this,
        [outcome = DropOutcome(places), completion = std::move(completion)] {
            completion(outcome);
        },
        Qt::QueuedConnection);
}

void STLDropDelegate::show(bool isTargeted, DropPreview preview) {
    if (isTargeted != isTargeted_ || preview != preview_) {
        isTargeted_ = isTargeted;
        preview_ = std::move(preview);
        Q_EMIT changed();
    }
}

QString STLDropDelegate::text() const {
    return qStringOf(ViewportFormat::dropText(preview_));
}

QString STLDropDelegate::symbol() const {
    return qStringOf(ViewportFormat::dropSymbol(preview_));
}

} // namespace ostrella
