#include "Platform/desktop/Dock.h"

#include <QDBusArgument>

namespace ostrella::test {

namespace {

const QString name = QStringLiteral("dock");

} // namespace

Dock::Dock(const QString& address)
    : bus_(QDBusConnection::connectToBus(address, name)),
      isListening_(
          bus_.connect(QString(), QString(), QStringLiteral("com.canonical.Unity.LauncherEntry"),
              QStringLiteral("Update"), this, SLOT(hear(QDBusMessage)))) {}

Dock::~Dock() {
    QDBusConnection::disconnectFromBus(name);
}

void Dock::hear(const QDBusMessage& update) {
    application = update.arguments().at(0).toString();
    const auto properties = qdbus_cast<QVariantMap>(update.arguments().at(1));
    const bool isVisible = properties[QStringLiteral("progress-visible")].toBool();
    heard.push_back(isVisible ? properties[QStringLiteral("progress")].toDouble() : -1);
}

} // namespace ostrella::test
