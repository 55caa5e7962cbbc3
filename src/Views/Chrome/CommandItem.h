#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace ostrella {

/// Something that the user can ask for, as a menu item or a button sees it. Main thread only.
class CommandItem final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the window's commands")
    Q_PROPERTY(bool enabled READ isEnabled NOTIFY changed)
    Q_PROPERTY(bool checked READ isChecked NOTIFY changed)
    /// Its tool tip, where it has one.
    Q_PROPERTY(QString help READ help NOTIFY changed)
    /// What a reader of the screen says in place of its text; may be empty.
    Q_PROPERTY(QString label READ label NOTIFY changed)

public:
    struct Rules {
        std::function<void()> action;
        /// Always, without it.
        std::function<bool()> isEnabled = {};
        /// Of something that is on or off.
        std::function<bool()> isChecked = {};
        std::function<QString()> help = {};
        std::function<QString()> label = {};
    };

    explicit CommandItem(Rules rules, QObject* parent = nullptr);

    bool isEnabled() const { return shown_.isEnabled; }
    bool isChecked() const { return shown_.isChecked; }
    const QString& help() const { return shown_.help; }
    const QString& label() const { return shown_.label; }

    /// Does it, if it can be done at this moment.
    Q_INVOKABLE void trigger();

    /// Asks the rules again.
    void refresh();

Q_SIGNALS:
    void changed();

private:
    struct Shown {
        bool isEnabled = true;
        bool isChecked = false;
        QString help;
        QString label;
        bool operator==(const Shown&) const = default;
    };

    bool mayBeDone() const;

    Rules rules_;
    Shown shown_;
};

} // namespace ostrella
