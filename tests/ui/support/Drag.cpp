#include "ui/support/Drag.h"

#include <QCoreApplication>
#include <QUrl>
#include <QWindow>
#include <qpa/qplatformdrag.h>
#include <qpa/qwindowsysteminterface.h>

namespace ostrella::test {

namespace {

QList<QUrl> addresses(const std::vector<std::filesystem::path>& files) {
    QList<QUrl> items;
    for (const auto& file : files) {
        items.append(QUrl::fromLocalFile(QString::fromStdString(file.string())));
    }
    return items;
}

} // namespace

Drag::Drag(QWindow& window, const std::vector<std::filesystem::path>& files)
    : Drag(window, addresses(files)) {}

Drag::Drag(QWindow& window, const QList<QUrl>& items) : window_(window) {
    data_.setUrls(items);
}

Drag::~Drag() {
    leave();
}

bool Drag::moveTo(QPointF point) {
    isInside_ = true;
    return QWindowSystemInterface::handleDrag(
        &window_, &data_, point.toPoint(), Qt::CopyAction, Qt::LeftButton, Qt::NoModifier)
        .isAccepted();
}

bool Drag::drop(QPointF point) {
    isInside_ = false;
    return QWindowSystemInterface::handleDrop(
        &window_, &data_, point.toPoint(), Qt::CopyAction, Qt::NoButton, Qt::NoModifier)
        .isAccepted();
}

void Drag::leave() {
    if (isInside_) {
        isInside_ = false;
        QWindowSystemInterface::handleDrag(
            &window_, nullptr, QPoint(), Qt::IgnoreAction, Qt::NoButton, Qt::NoModifier);
    }
}

} // namespace ostrella::test
