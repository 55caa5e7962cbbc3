#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace ostrella {

/// The keys that are held down over the application's windows, for what is shown only as long as
/// they are.
class HeldKeys final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool alt READ alt NOTIFY altChanged)

public:
    explicit HeldKeys(QObject* parent = nullptr);

    bool alt() const { return alt_; }

Q_SIGNALS:
    void altChanged();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void setAlt(bool isHeld);

    bool alt_ = false;
};

} // namespace ostrella
