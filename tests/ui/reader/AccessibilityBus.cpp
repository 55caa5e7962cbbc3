#include "AccessibilityBus.h"

#include <QDBusArgument>
#include <QDBusReply>
#include <QDBusVariant>

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace ostrella::test {

namespace {

// Numbers of states in the protocol.
constexpr unsigned checked = 4;
constexpr unsigned sensitive = 24;

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* properties = "org.freedesktop.DBus.Properties";

QString q(const char* text) {
    return QString::fromLatin1(text);
}

/// What all applications that speak are children of.
SpokenThing desktopOn(const QDBusConnection& bus) {
    return {bus, q("org.a11y.atspi.Registry"), q("/org/a11y/atspi/accessible/root")};
}

} // namespace

SpokenThing::SpokenThing(QDBusConnection bus, QString service, QString path)
    : bus_(std::move(bus)), service_(std::move(service)), path_(std::move(path)) {}

QVariantList SpokenThing::call(
    const char* interface, const char* method, const QVariantList& arguments) const {
    QDBusMessage message = QDBusMessage::createMethodCall(service_, path_, q(interface), q(method));
    message.setArguments(arguments);
    return bus_.call(message).arguments();
}

std::string SpokenThing::name() const {
    const QVariantList answer = call(properties, "Get", {q(accessible), q("Name")});
    return answer.isEmpty()
               ? std::string()
               : answer.front().value<QDBusVariant>().variant().toString().toStdString();
}

std::string SpokenThing::role() const {
    return call(accessible, "GetRoleName").value(0).toString().toStdString();
}

std::string SpokenThing::text() const {
    return call("org.a11y.atspi.Text", "GetText", {0, -1}).value(0).toString().toStdString();
}

bool SpokenThing::hasState(unsigned number) const {
    const QVariantList answer = call(accessible, "GetState");
    if (answer.isEmpty()) {
        return false;
    }
    const auto words = qdbus_cast<QList<uint>>(answer.front());
    const qsizetype word = number / 32;
    return word < words.size() && (words[word] >> (number % 32) & 1U) != 0;
}

bool SpokenThing::isEnabled() const {
    return hasState(sensitive);
}

bool SpokenThing::isChecked() const {
    return hasState(checked);
}

std::vector<SpokenThing> SpokenThing::children() const {
    std::vector<SpokenThing> children;
    const QVariantList answer = call(accessible, "GetChildren");
    if (answer.isEmpty() || !answer.front().canConvert<QDBusArgument>()) {
        return children;
    }
    const auto list = answer.front().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString service;
        QDBusObjectPath path;
        list.beginStructure();
        list >> service >> path;
        list.endStructure();
        children.emplace_back(bus_, service, path.path());
    }
    list.endArray();
    return children;
}

std::vector<std::string> SpokenThing::actions() const {
    std::vector<std::string> names;
    const QVariantList answer = call("org.a11y.atspi.Action", "GetActions");
    if (answer.isEmpty() || !answer.front().canConvert<QDBusArgument>()) {
        return names;
    }
    const auto list = answer.front().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString name;
        QString description;
        QString keys;
        list.beginStructure();
        list >> name >> description >> keys;
        list.endStructure();
        names.push_back(name.toStdString());
    }
    list.endArray();
    return names;
}

bool SpokenThing::perform(const std::string& action) const {
    const auto names = actions();
    const auto found = std::find(names.begin(), names.end(), action);
    return found != names.end() &&
           call("org.a11y.atspi.Action", "DoAction", {static_cast<int>(found - names.begin())})
               .value(0)
               .toBool();
}

std::optional<SpokenThing> SpokenThing::find(
    const std::function<bool(const SpokenThing&)>& fits) const {
    if (fits(*this)) {
        return *this;
    }
    for (const SpokenThing& child : children()) {
        if (auto found = child.find(fits)) {
            return found;
        }
    }
    return std::nullopt;
}

AccessibilityBus::AccessibilityBus() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(q("XDG_RUNTIME_DIR"), QString::fromStdString(folder_.path().string()));
    // Whatever this machine's desktop has been told.
    environment.insert(q("GSETTINGS_BACKEND"), q("memory"));
    launcher_.setProcessEnvironment(environment);
    launcher_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    launcher_.start(q(OSTRELLA_ACCESSIBILITY_BUS), {q("--launch-immediately")});
    EXPECT_TRUE(launcher_.waitForStarted()) << launcher_.errorString().toStdString();

    const QDBusConnection session =
        QDBusConnection::connectToBus(session_.address(), q("test-session"));
    QString address;
    EXPECT_TRUE(waitUntil([&] {
        const QDBusReply<QString> reply = session.call(QDBusMessage::createMethodCall(
            q("org.a11y.Bus"), q("/org/a11y/bus"), q("org.a11y.Bus"), q("GetAddress")));
        address = reply.value();
        return !address.isEmpty();
    })) << "the desktop's bus for readers does not come up";
    bus_ = QDBusConnection::connectToBus(address, q("test-reader"));
    EXPECT_TRUE(bus_.isConnected()) << bus_.lastError().message().toStdString();
}

AccessibilityBus::~AccessibilityBus() {
    bus_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(q("test-reader"));
    QDBusConnection::disconnectFromBus(q("test-session"));
    // It takes its bus with it.
    launcher_.terminate();
    if (!launcher_.waitForFinished(10000)) {
        ADD_FAILURE() << "the bus for readers does not end";
        launcher_.kill();
        launcher_.waitForFinished();
    }
}

void AccessibilityBus::startReader() {
    for (const char* status : {"IsEnabled", "ScreenReaderEnabled"}) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            q("org.a11y.Bus"), q("/org/a11y/bus"), q(properties), q("Set"));
        message.setArguments(
            {q("org.a11y.Status"), q(status), QVariant::fromValue(QDBusVariant(QVariant(true)))});
        const QDBusMessage answer = QDBusConnection(q("test-session")).call(message);
        EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage) << answer.errorMessage().toStdString();
    }
}

std::vector<std::string> AccessibilityBus::applications() const {
    std::vector<std::string> names;
    for (const SpokenThing& child : desktopOn(bus_).children()) {
        names.push_back(child.name());
    }
    return names;
}

std::optional<SpokenThing> AccessibilityBus::application(const std::string& name) const {
    for (const SpokenThing& child : desktopOn(bus_).children()) {
        if (child.name() == name) {
            return child;
        }
    }
    return std::nullopt;
}

} // namespace ostrella::test
