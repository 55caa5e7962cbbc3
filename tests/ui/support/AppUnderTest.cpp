#include "ui/support/AppUnderTest.h"

#include "Models/MainThread.h"
#include "Models/PlatformWords.h"
#include "Platform/SystemFacts.h"
#include "Update/QuietUpdater.h"
#include "Update/UpdateController.h"
#include "Views/Viewport/ViewportItem.h"

#include <QRegularExpression>
#include <QVariant>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <stdexcept>

namespace ostrella::test {

namespace fs = std::filesystem;

namespace {

/// Longer than anything here takes on a machine with other work to do.
constexpr std::chrono::seconds patience(60);

/// The first that `fits` of an item and all that lies in it, of what can be seen.
QQuickItem* search(QQuickItem* item, const std::function<bool(QQuickItem*)>& fits) {
    if (!item->isVisible() || item->opacity() == 0) {
        return nullptr;
    }
    if (fits(item)) {
        return item;
    }
    for (QQuickItem* child : item->childItems()) {
        if (QQuickItem* found = search(child, fits)) {
            return found;
        }
    }
    return nullptr;
}

std::string textOf(const QQuickItem& item, const char* property) {
    return item.property(property).toString().toStdString();
}

} // namespace

AppUnderTest::AppUnderTest(const fs::path& package, std::unique_ptr<Updater> given) {
    qputenv("OSTRELLA_REDUCED_MOTION", "1");
    // As for a reader of the screen: the controls take their names then.
    QAccessible::setActive(true);
    appearance_ = std::make_unique<DesktopAppearance>();
    const PlatformWords& words = PlatformWords::freedesktop();
    app = std::make_unique<OstrellaApp>(RunEnvironment{AppBundle(package), directory(), &words},
        preferences, SystemFacts::bootFacts(),
        [this](const std::string& message, const std::string& text) {
            window->model().showAlert(message, text);
        });
    if (!given) {
        given = std::make_unique<QuietUpdater>(
            preferences, [this](const std::string& text, LogStore::Level level) {
                app->logStore.append(text, level);
            });
    }
    updater = given.get();
    app->updates = std::make_unique<UpdateController>(std::move(given), TimerService::system(),
        [this](const UpdateAlert& alert, std::function<void(bool)> reply) {
            window->ask(alert, std::move(reply));
        });
    window = std::make_unique<MainWindow>(*app,
        WindowModel::Surroundings{.words = words,
            .preferences = preferences,
            .temporaryDirectory = directory(),
            .openAddress = [this](
                               const std::string& address) { openedAddresses.push_back(address); },
            .quit = [this] { ++quits; }},
        *appearance_,
        PackageFacts{.bundle = AppBundle(package),
            .renderer = "OpenGL on paper",
            .updates = app->updates.get()});
    window->window().setGeometry(0, 0, 1400, 880);
    window->show();
    app->start();
    app->appSettings.setDefaultMaxIterations(fewIterations);
    user = std::make_unique<RealInput>(window->window());
}

AppUnderTest::~AppUnderTest() {
    user.reset();
    if (app->simulation.phase().isActive()) {
        app->simulation.cancel();
        waitFor([this] { return !app->simulation.phase().isActive(); });
    }
    window.reset();
    app.reset();
}

QQuickItem* AppUnderTest::find(const std::string& name, QAccessible::Role role) const {
    const QString wanted = QString::fromStdString(name);
    return search(window->window().contentItem(), [&](QQuickItem* item) {
        QAccessibleInterface* said = QAccessible::queryAccessibleInterface(item);
        if (!said) {
            // The buttons of the toolkit's own panels.
            return item->property("down").isValid() && item->property("text") == wanted;
        }
        return said->text(QAccessible::Name) == wanted &&
               (role == QAccessible::NoRole || said->role() == role);
    });
}

QQuickItem& AppUnderTest::item(const std::string& name, QAccessible::Role role) const {
    QQuickItem* found = nullptr;
    if (!waitFor([&] { return (found = find(name, role)) != nullptr; })) {
        throw std::runtime_error("nothing is called " + name);
    }
    return *found;
}

bool AppUnderTest::shows(const std::string& text) const {
    return search(window->window().contentItem(),
               [&](QQuickItem* item) { return textOf(*item, "text") == text; }) != nullptr;
}

bool AppUnderTest::showsLike(const std::string& pattern) const {
    const QRegularExpression expression(
        QRegularExpression::anchoredPattern(QString::fromStdString(pattern)));
    return search(window->window().contentItem(), [&](QQuickItem* item) {
        // The longest of several forms.
        const QString text = item->property("text").toString().section(QChar(0x9C), 0, 0);
        return expression.match(text).hasMatch();
    }) != nullptr;
}

std::optional<std::string> AppUnderTest::row(const std::string& label) const {
    const QQuickItem* found = search(window->window().contentItem(), [&](QQuickItem* item) {
        return textOf(*item, "label") == label && item->property("tone").isValid();
    });
    return found ? std::optional(textOf(*found, "value")) : std::nullopt;
}

QPointF AppUnderTest::middleOf(const QQuickItem& item) {
    return item.mapToScene(item.boundingRect().center());
}

bool AppUnderTest::isChecked(const std::string& name) const {
    return QAccessible::queryAccessibleInterface(&item(name))->state().checked;
}

QPointF AppUnderTest::inViewport(QPointF point) const {
    return window->viewport().mapToScene(point);
}

void AppUnderTest::drawFrame() {
    bool isDrawn = false;
    const auto connection = QObject::connect(
        &window->window(), &QQuickWindow::frameSwapped, window.get(), [&] { isDrawn = true; });
    window->window().update();
    const bool came = waitFor([&] { return isDrawn; });
    QObject::disconnect(connection);
    if (!came) {
        throw std::runtime_error("the window is not drawn");
    }
}

void AppUnderTest::click(const std::string& name, QAccessible::Role role) {
    if (!waitFor([&] { return item(name, role).isEnabled(); })) {
        throw std::runtime_error(name + " is not enabled");
    }
    // What has just come up may still find its place.
    QPointF place;
    do {
        place = middleOf(item(name, role));
        drawFrame();
        user->settle();
    } while (middleOf(item(name, role)) != place);
    if (!QRectF(QPointF(), window->window().size()).contains(place)) {
        throw std::runtime_error(name + " is out of sight");
    }
    user->click(place);
}

void AppUnderTest::choose(const std::string& menu, const std::string& entry) {
    click(menu, QAccessible::MenuItem);
    click(entry, QAccessible::MenuItem);
}

void AppUnderTest::fill(const std::string& name, const std::string& text) {
    click(name, QAccessible::EditableText);
    user->type(Qt::Key_A, Qt::ControlModifier);
    type(text);
    user->type(Qt::Key_Tab);
}

void AppUnderTest::type(const std::string& text) {
    for (const char c : text) {
        const auto letter = static_cast<unsigned char>(c);
        if (c == '_') {
            user->type(Qt::Key_Minus, Qt::ShiftModifier);
        } else if (c == ':') {
            user->type(Qt::Key_Semicolon, Qt::ShiftModifier);
        } else {
            user->type(static_cast<Qt::Key>(std::toupper(letter)),
                std::isupper(letter) ? Qt::ShiftModifier : Qt::NoModifier);
        }
    }
}

bool AppUnderTest::waitFor(const std::function<bool()>& condition) const {
    return waitUntil(condition, patience);
}

bool AppUnderTest::waitForPhase(RunPhase::Kind kind) const {
    return waitFor([&] { return phase() == kind; });
}

std::vector<std::string> AppUnderTest::log(std::optional<LogStore::Level> level) const {
    std::vector<std::string> texts;
    for (const LogStore::Line& line : app->logStore.lines()) {
        if (!level || line.level == *level) {
            texts.push_back(line.text);
        }
    }
    return texts;
}

bool AppUnderTest::logs(const std::string& text, LogStore::Level level) const {
    const auto lines = log(level);
    return std::find(lines.begin(), lines.end(), text) != lines.end();
}

void AppUnderTest::waitForModel(const std::string& fileName) {
    ASSERT_TRUE(waitFor([&] {
        const auto& file = app->parameters.stlURL();
        return file && file->filename() == fileName && app->parameters.mesh() &&
               !app->parameters.loadingFileName() &&
               window->viewport().coordinator()->renderer().hasModel();
    })) << fileName;
    user->settle();
}

std::vector<std::string> AppUnderTest::runDirectories() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(directory())) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

} // namespace ostrella::test
