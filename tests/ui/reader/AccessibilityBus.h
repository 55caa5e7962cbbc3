#pragma once

#include "Platform/desktop/DesktopBench.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QString>
#include <QVariantList>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace ostrella::test {

/// A thing on the screen as a reader of it hears of it from another process.
class SpokenThing {
public:
    SpokenThing(QDBusConnection bus, QString service, QString path);

    std::string name() const;
    /// As the protocol calls it, such as "check box".
    std::string role() const;
    /// Of a field.
    std::string text() const;
    /// Can be used now.
    bool isEnabled() const;
    bool isChecked() const;
    std::vector<SpokenThing> children() const;

    /// The names of what can be done with it.
    std::vector<std::string> actions() const;
    /// Performs one of them; false if there is none of this name or it is refused.
    bool perform(const std::string& action) const;

    /// The first that fits of this one and all within it, in the order in which they are told.
    std::optional<SpokenThing> find(const std::function<bool(const SpokenThing&)>& fits) const;

private:
    QVariantList call(
        const char* interface, const char* method, const QVariantList& arguments = {}) const;
    bool hasState(unsigned number) const;

    QDBusConnection bus_;
    QString service_;
    QString path_;
};

/// A session bus and the desktop's bus for readers of the screen, both the test's own.
class AccessibilityBus {
public:
    /// A failed test if the buses don't come up.
    AccessibilityBus();
    ~AccessibilityBus();
    AccessibilityBus(const AccessibilityBus&) = delete;
    AccessibilityBus& operator=(const AccessibilityBus&) = delete;

    const QString& sessionAddress() const { return session_.address(); }

    /// What a reader does as it starts: it asks the desktop that applications speak.
    void startReader();
    /// The names of those that speak.
    std::vector<std::string> applications() const;
    /// The application of this name, once it has made itself known.
    std::optional<SpokenThing> application(const std::string& name) const;

private:
    TemporaryDirectory folder_;
    PrivateBus session_;
    QProcess launcher_;
    QDBusConnection bus_{QString()};
};

} // namespace ostrella::test
