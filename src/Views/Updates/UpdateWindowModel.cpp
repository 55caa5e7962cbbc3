#include "Views/Updates/UpdateWindowModel.h"

#include "Views/QStringOf.h"

#include <utility>

namespace ostrella {

using Stage = UpdateSession::Stage;

UpdateWindowModel::UpdateWindowModel(Surroundings surroundings, QObject* parent)
    : QObject(parent), surroundings_(std::move(surroundings)) {}

void UpdateWindowModel::setSession(const UpdateSession& session) {
    const bool isOther = session.stage != session_.stage || session.item != session_.item ||
                         session.text != session_.text ||
                         session.userInitiated != session_.userInitiated;
    if (session.item.notes != session_.item.notes) {
        notes_ = qStringOf(UpdateFormat::notes(session.item.notes));
    }
    const QString before = progress();
    const qreal fractionBefore = fraction();
    const bool wasBusy = isBusy();
    session_ = session;
    // First, so that a bar is not seen with the last one's bytes.
    if (progress() != before || fraction() != fractionBefore || isBusy() != wasBusy) {
        Q_EMIT progressChanged();
    }
    if (isOther) {
        Q_EMIT stageChanged();
    }
}

QString UpdateWindowModel::windowTitle() const {
    return qStringOf(UpdateFormat::windowTitle);
}

QString UpdateWindowModel::title() const {
    return qStringOf(UpdateFormat::title(session_));
}

QString UpdateWindowModel::detail() const {
    return qStringOf(UpdateFormat::detail(session_, surroundings_.ownVersion));
}

QString UpdateWindowModel::symbol() const {
    return qStringOf(UpdateFormat::symbol(session_.stage));
}

qreal UpdateWindowModel::fraction() const {
    if (session_.stage == Stage::preparing) {
        return 1;
    }
    return session_.stage == Stage::downloading
               ? UpdateFormat::fraction(session_.received, session_.expected).value_or(0)
               : 0;
}

QString UpdateWindowModel::progress() const {
    return session_.stage == Stage::downloading
               ? qStringOf(UpdateFormat::progress(session_.received, session_.expected))
               : detail();
}

QString UpdateWindowModel::notesTitle() const {
    return qStringOf(UpdateFormat::notesTitle);
}

QString UpdateWindowModel::notes() const {
    return UpdateFormat::showsNotes(session_.stage) ? notes_ : QString();
}

QString UpdateWindowModel::notesLink() const {
    const bool isThere = UpdateFormat::showsNotes(session_.stage) &&
                         UpdateFormat::mayOpen(session_.item.notesAddress);
    return isThere ? qStringOf(UpdateFormat::notesLink) : QString();
}

QString UpdateWindowModel::pageLink() const {
    const bool isThere = (session_.stage == Stage::noticeOnly || session_.stage == Stage::failed) &&
                         UpdateFormat::mayOpen(session_.item.infoAddress);
    return isThere ? qStringOf(UpdateFormat::pageLink) : QString();
}

QVariantList UpdateWindowModel::buttons() const {
    QVariantList list;
    for (const auto& button : UpdateFormat::buttons(session_.stage)) {
        list.append(QVariantMap{{QStringLiteral("text"), qStringOf(button.text)},
            {QStringLiteral("isPrimary"), button.isPrimary},
            {QStringLiteral("isApart"), button.isApart}});
    }
    return list;
}

int UpdateWindowModel::firstButton() const {
    const auto index = UpdateFormat::firstButton(session_);
    return index ? static_cast<int>(*index) : -1;
}

void UpdateWindowModel::press(int index) {
    const auto all = UpdateFormat::buttons(session_.stage);
    if (index >= 0 && static_cast<std::size_t>(index) < all.size()) {
        surroundings_.answer(all[static_cast<std::size_t>(index)].answer);
    }
}

void UpdateWindowModel::close() {
    if (const auto answer = UpdateFormat::closing(session_.stage)) {
        surroundings_.answer(*answer);
    }
}

void UpdateWindowModel::openNotes() {
    if (!notesLink().isEmpty()) {
        surroundings_.openAddress(session_.item.notesAddress);
    }
}

void UpdateWindowModel::openPage() {
    if (!pageLink().isEmpty()) {
        surroundings_.openAddress(session_.item.infoAddress);
    }
}

} // namespace ostrella
