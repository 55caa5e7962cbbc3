#include "Views/SideBench.h"

#include "support/VisitAccessible.h"
#include "support/Wait.h"

#include <QImage>
#include <QQmlComponent>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <stdexcept>

namespace ostrella {
void useControlsModule();
} // namespace ostrella

namespace ostrella::test {

namespace {

bool isOf(const QObject* object, const char* type) {
    const QByteArray prefix = QByteArray(type) + "_QML";
    for (const QMetaObject* meta = object->metaObject(); meta; meta = meta->superClass()) {
        if (QByteArray(meta->className()).startsWith(prefix) ||
            QByteArray(meta->className()) == type) {
            return true;
        }
    }
    return false;
}

/// What can be scrolled into sight.
QQuickItem* scrolledContent(const QQuickItem* item) {
    for (QQuickItem* over = item->parentItem(); over; over = over->parentItem()) {
        if (over->inherits("QQuickFlickable") && over->property("interactive").toBool()) {
            return over->property("contentItem").value<QQuickItem*>();
        }
    }
    return nullptr;
}

} // namespace

SideBench::SideBench() {
    useControlsModule();
    theme.setDark(true);
    theme.setTextScale(1);
    theme.setReducedMotion(true);
    QAccessible::setActive(true);
    auto made = std::make_unique<ScriptedUpdater>();
    updater = made.get();
    updates = std::make_unique<UpdateController>(
        std::move(made), timers, [](const UpdateAlert&, const std::function<void(bool)>&) {});
    engine = std::make_unique<QQmlEngine>();
    engine->addImportPath(QStringLiteral(":/qt/qml"));
}

SideBench::~SideBench() {
    user.reset();
    window.reset();
    theme.setDark(true);
    theme.setTextScale(1);
    theme.setReducedMotion(false);
}

void SideBench::open(const char* description, QObject* model) {
    QQmlComponent component(
        engine.get(), QUrl(QStringLiteral("qrc:/qt/qml/Ostrella/") + QLatin1String(description)));
    window.reset(qobject_cast<QQuickWindow*>(component.createWithInitialProperties(
        {{QStringLiteral("model"), QVariant::fromValue(model)}})));
    if (!window) {
        throw std::runtime_error(component.errorString().toStdString());
    }
    QQmlEngine::setObjectOwnership(window.get(), QQmlEngine::CppOwnership);
    window->show();
    user = std::make_unique<RealInput>(*window);
    settle();
}

void SideBench::settle() {
    user->settle();
    // A frame may move what the next one shows.
    for (int i = 0; i < 3; ++i) {
        window->grabWindow();
        QCoreApplication::processEvents();
    }
}

QAccessibleInterface* SideBench::accessible(const char* name, QAccessible::Role role) const {
    QAccessibleInterface* result = nullptr;
    visitAll(QAccessible::queryAccessibleInterface(window.get()), [&](QAccessibleInterface* found) {
        const auto* item = qobject_cast<const QQuickItem*>(found->object());
        if (!result && item && item->isVisible() && found->role() == role &&
            found->text(QAccessible::Name) == QString::fromUtf8(name)) {
            result = found;
        }
    });
    return result;
}

QQuickItem* SideBench::item(const char* name, QAccessible::Role role) const {
    QAccessibleInterface* found = accessible(name, role);
    if (!found) {
        throw std::runtime_error(std::string("nothing is called ") + name);
    }
    return qobject_cast<QQuickItem*>(found->object());
}

QPointF SideBench::middleOf(const char* name, QAccessible::Role role) const {
    return frame(item(name, role)).center();
}

void SideBench::click(const char* name, QAccessible::Role role) {
    user->click(middleOf(name, role));
    settle();
}

void SideBench::keyToClose(QWindow& closing, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&closing, key, modifiers);
}

std::string SideBench::focus() const {
    QAccessibleInterface* found =
        window->activeFocusItem() ? QAccessible::queryAccessibleInterface(window->activeFocusItem())
                                  : nullptr;
    return found ? found->text(QAccessible::Name).toStdString() : std::string();
}

std::vector<std::string> SideBench::tabOrder() {
    std::vector<std::string> order;
    for (int i = 0; i < 30; ++i) {
        user->type(Qt::Key_Tab);
        const std::string name = focus();
        if (!order.empty() && name == order.front()) {
            break;
        }
        order.push_back(name);
    }
    return order;
}

std::vector<QQuickItem*> SideBench::items(const char* type) const {
    return itemsOf(*window, type);
}

std::vector<QQuickItem*> SideBench::itemsOf(const QQuickWindow& window, const char* type) {
    std::vector<QQuickItem*> found;
    const std::function<void(QQuickItem*)> gather = [&](QQuickItem* parent) {
        for (QQuickItem* child : parent->childItems()) {
            if (child->isVisible() && child->opacity() > 0) {
                if (isOf(child, type)) {
                    found.push_back(child);
                }
                gather(child);
            }
        }
    };
    gather(window.contentItem());
    return found;
}

QQuickItem* SideBench::shown(const char* text) const {
    for (QQuickItem* candidate : items("QQuickText")) {
        if (candidate->property("text").toString() == QString::fromUtf8(text)) {
            return candidate;
        }
    }
    return nullptr;
}

QRectF SideBench::frame(const QQuickItem* item) {
    return item->mapRectToScene(item->boundingRect());
}

std::vector<std::string> SideBench::cutTexts(const QQuickWindow& window) {
    std::vector<std::string> cut;
    for (const QQuickItem* text : itemsOf(window, "QQuickText")) {
        const QQuickItem* scrolled = scrolledContent(text);
        const QRectF room = scrolled
                                ? scrolled->mapRectToScene(QRectF(0, 0, window.width(),
                                      scrolled->parentItem()->property("contentHeight").toReal()))
                                : QRectF(QPointF(), window.size());
        if (text->property("truncated").toBool() ||
            text->property("contentWidth").toReal() > text->width() + 0.5 ||
            !room.contains(frame(text))) {
            cut.push_back(text->property("text").toString().toStdString());
        }
    }
    return cut;
}

QColor SideBench::colorAt(QPointF place) {
    const QImage picture = window->grabWindow();
    const QPointF at = place * window->effectiveDevicePixelRatio();
    return picture.pixelColor(static_cast<int>(at.x()), static_cast<int>(at.y()));
}

void expectNear(const QColor& drawn, const QColor& expected) {
    const auto near = [](int a, int b) { return std::abs(a - b) <= 2; };
    EXPECT_TRUE(near(drawn.red(), expected.red()) && near(drawn.green(), expected.green()) &&
                near(drawn.blue(), expected.blue()))
        << "drawn " << drawn.name().toStdString() << ", expected " << expected.name().toStdString();
}

} // namespace ostrella::test
