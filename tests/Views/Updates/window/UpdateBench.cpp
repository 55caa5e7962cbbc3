#include "Views/Updates/window/UpdateBench.h"

#include "support/Wait.h"

#include <QCoreApplication>
#include <QScreen>

#include <algorithm>
#include <functional>
#include <utility>

namespace ostrella::test {

namespace {

void visit(QAccessibleInterface* parent,
    const std::function<void(QAccessibleInterface*, QQuickItem&)>& found) {
    for (int i = 0; i < parent->childCount(); ++i) {
        QAccessibleInterface* child = parent->child(i);
        if (child == nullptr) {
            continue;
        }
        auto* item = qobject_cast<QQuickItem*>(child->object());
        if (item && item->isVisible() && !child->state().invisible) {
            found(child, *item);
        }
        visit(child, found);
    }
}

} // namespace

UpdateBench::UpdateBench(const ToFront& toFront) {
    Theme::shared().setDark(true);
    Theme::shared().setReducedMotion(true);
    Theme::shared().setTextScale(1);
    QAccessible::setActive(true);
    session.item.version = "129";
    session.item.displayVersionString = "1.2.0";
    session.item.notes = "<p>Meshes are made faster.</p>";
    session.item.infoAddress = "https://ostrella.example/download";
    session.expected = 45'600'000;
    model = std::make_unique<UpdateWindowModel>(UpdateWindowModel::Surroundings{"1.1.0",
        [this](Answer answer) { answers.push_back(answer); },
        [this](const std::string& address) { opened.push_back(address); }});
    engine.addImportPath(QStringLiteral(":/qt/qml"));
    // To the right of the screen's middle, with room for the other.
    const QSize room = mainWindow.screen()->availableGeometry().size();
    mainWindow.setGeometry(room.width() - 560, 20, 540, room.height() - 60);
    mainWindow.setTitle(QStringLiteral("main"));
    mainWindow.show();
    EXPECT_TRUE(waitUntil([this] { return mainWindow.isExposed(); }));
    toFront(mainWindow);
    EXPECT_TRUE(waitUntil([this] { return mainWindow.isActive(); }));
    shown = std::make_unique<UpdateWindow>(*model, engine, mainWindow);
}

UpdateBench::~UpdateBench() {
    user.reset();
    shown.reset();
    Theme::shared().setDark(true);
    Theme::shared().setReducedMotion(false);
    Theme::shared().setTextScale(1);
}

void UpdateBench::tell(Stage stage) {
    session.stage = stage;
    model->setSession(session);
    if (stage != Stage::idle) {
        ASSERT_TRUE(waitUntil([this] { return isOpen() && window().isExposed(); }));
        if (!user) {
            user = std::make_unique<RealInput>(window());
        }
        settle();
    }
}

void UpdateBench::ask(Stage stage) {
    session.userInitiated = true;
    tell(stage);
}

void UpdateBench::settle() {
    user->settle();
    // A frame may move what the next one shows.
    for (int i = 0; i < 3; ++i) {
        window().grabWindow();
        QCoreApplication::processEvents();
    }
}

QQuickItem* UpdateBench::find(const std::string& name, QAccessible::Role role) const {
    QQuickItem* result = nullptr;
    visit(QAccessible::queryAccessibleInterface(&window()),
        [&](QAccessibleInterface* found, QQuickItem& item) {
            if (!result && found->text(QAccessible::Name).toStdString() == name &&
                (role == QAccessible::NoRole || found->role() == role)) {
                result = &item;
            }
        });
    return result;
}

QQuickItem& UpdateBench::item(const std::string& name, QAccessible::Role role) const {
    QQuickItem* found = find(name, role);
    if (!found) {
        throw std::runtime_error("nothing is called " + name);
    }
    return *found;
}

std::vector<std::string> UpdateBench::names(QAccessible::Role role) const {
    std::vector<std::pair<qreal, std::string>> places;
    visit(QAccessible::queryAccessibleInterface(&window()), [&](QAccessibleInterface* found,
                                                                QQuickItem& item) {
        if (found->role() == role) {
            places.emplace_back(frame(item).left(), found->text(QAccessible::Name).toStdString());
        }
    });
    std::stable_sort(
        places.begin(), places.end(), [](auto& a, auto& b) { return a.first < b.first; });
    std::vector<std::string> result;
    for (const auto& [left, name] : places) {
        result.push_back(name);
    }
    return result;
}

std::string UpdateBench::spoken(const QObject* object) {
    QAccessibleInterface* found =
        QAccessible::queryAccessibleInterface(const_cast<QObject*>(object));
    return found ? found->text(QAccessible::Name).toStdString() : "";
}

std::string UpdateBench::focus() const {
    QQuickItem* item = window().activeFocusItem();
    QAccessibleInterface* found = item ? QAccessible::queryAccessibleInterface(item) : nullptr;
    return found && found->role() == QAccessible::Button ? spoken(item) : "";
}

QRectF UpdateBench::frame(const QQuickItem& item) {
    return item.mapRectToScene(item.boundingRect());
}

void UpdateBench::click(const std::string& name) {
    user->click(frame(item(name)).center());
    settle();
}

void UpdateBench::closeBy(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    // The input is followed in a window that stays.
    user = std::make_unique<RealInput>(mainWindow);
    window().requestActivate();
    EXPECT_TRUE(waitUntil([this] { return window().isActive(); }));
    user->type(key, modifiers);
    EXPECT_TRUE(waitUntil([this] { return !window().isVisible(); }));
}

void UpdateBench::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    user->type(key, modifiers);
    settle();
}

} // namespace ostrella::test
