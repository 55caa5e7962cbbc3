#include "Views/Controls/SpokenItem.h"

#include <QAccessible>
#include <QQuickItem>
#include <private/qaccessiblequickitem_p.h>
#include <private/qquickitem_p.h>

namespace ostrella::SpokenItem {

namespace {

void tellOf(QQuickItem* item) {
    QAccessible::State changed;
    changed.disabled = true;
    QAccessibleStateChangeEvent event(item, changed);
    QAccessible::updateAccessibility(&event);
}

class Spoken final : public QAccessibleQuickItem {
public:
    explicit Spoken(QQuickItem* item)
        : QAccessibleQuickItem(item),
          enabledChanged_(
              QObject::connect(item, &QQuickItem::enabledChanged, item, [item] { tellOf(item); })) {
    }
    ~Spoken() override { QObject::disconnect(enabledChanged_); }
    Spoken(const Spoken&) = delete;
    Spoken& operator=(const Spoken&) = delete;

    /// The toolkit calls an item of a menu bar a bar itself; so says the item's own, attached, role
    /// too once a reader starts after the window.
    QAccessible::Role role() const override {
        return item()->inherits("QQuickMenuBarItem") ? QAccessible::MenuItem
                                                     : QAccessibleQuickItem::role();
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleQuickItem::state();
        state.disabled = !item()->isEnabled();
        return state;
    }

    /// What cannot be clicked cannot be pressed by a reader either.
    void doAction(const QString& name) override {
        if (item()->isEnabled()) {
            QAccessibleQuickItem::doAction(name);
        }
    }

private:
    QMetaObject::Connection enabledChanged_;
};

/// Asked for an object once for each class that it derives from; the toolkit makes its own accounts
/// at the same class.
QAccessibleInterface* make(const QString& className, QObject* object) {
    if (className != QLatin1String("QQuickItem")) {
        return nullptr;
    }
    auto* item = static_cast<QQuickItem*>(object);
    return QQuickItemPrivate::get(item)->isAccessible ? new Spoken(item) : nullptr;
}

} // namespace

void install() {
    static const bool isInstalled = [] {
        QAccessible::installFactory(make);
        return true;
    }();
    static_cast<void>(isInstalled);
}

} // namespace ostrella::SpokenItem
