#pragma once

#include <QObject>
#include <QString>

#include <memory>
#include <string>

namespace ostrella {

/// A note of the application's among the desktop's notifications, for what has come to its end
/// while the user was elsewhere. There is one at a time: the next takes the place of the last.
/// Nothing is waited for; where nobody shows notes, none is shown. Main thread only.
class DesktopNotification : public QObject {
    Q_OBJECT

public:
    explicit DesktopNotification(QObject* parent = nullptr);
    ~DesktopNotification() override;

    /// Both texts are plain. Without a connection yet, the last one is shown once there is one.
    void show(const std::string& title, const std::string& body);
    /// Takes it away again, if it is still there.
    void withdraw();

Q_SIGNALS:
    /// The user has clicked on it: the window should come to the front. `token` is what the desktop
    /// gives along, so that the window may do so; empty where it gives none.
    void activated(const QString& token);

private:
    class Desk;
    std::unique_ptr<Desk> desk_;
};

} // namespace ostrella
