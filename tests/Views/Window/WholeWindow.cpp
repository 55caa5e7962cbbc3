#include "WholeWindow.h"

#include "support/VisitAccessible.h"

#include <QQuickStyle>

#include <algorithm>
#include <stdexcept>

namespace ostrella {
void useControlsModule();
void useViewportModule();
void useSidebarModule();
void usePanelModule();
void useChromeModule();
} // namespace ostrella

namespace ostrella::test {

namespace {

bool isShown(const QAccessibleInterface* found) {
    const auto* item = qobject_cast<const QQuickItem*>(found->object());
    return item && item->isVisible() && !found->state().invisible;
}

} // namespace

WholeWindow::WholeWindow() {
    useControlsModule();
    useViewportModule();
    useSidebarModule();
    usePanelModule();
    useChromeModule();
    if (QQuickStyle::name().isEmpty()) {
        QQuickStyle::setStyle(QStringLiteral("Basic"));
    }
    Theme::shared().setReducedMotion(true);
    Theme::shared().setTextScale(1);
    QAccessible::setActive(true);
    const auto call = [this](
                          const char* name) { return [this, name] { calls.emplace_back(name); }; };
    model = std::make_unique<WindowModel>(
        shared(), WindowModel::Surroundings{.words = PlatformWords::freedesktop(),
                      .preferences = preferences,
                      .temporaryDirectory = directory(),
                      .openAddress = [this](const std::string&) { calls.emplace_back("help"); },
                      .quit = call("quit")});
    engine = std::make_unique<QQmlApplicationEngine>();
    engine->addImportPath(QStringLiteral(":/qt/qml"));
    engine->setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(model.get())}});
    engine->load(QUrl(QStringLiteral("qrc:/qt/qml/Ostrella/Chrome/MainWindow.qml")));
    if (engine->rootObjects().isEmpty()) {
        throw std::runtime_error("the main window cannot be made");
    }
    window = qobject_cast<QQuickWindow*>(engine->rootObjects().constFirst());
    window->resize(1200, 800);
    window->show();
    user = std::make_unique<RealInput>(*window);
    settle();
}

WholeWindow::~WholeWindow() {
    user.reset();
    engine.reset();
    Theme::shared().setReducedMotion(false);
    Theme::shared().setTextScale(1);
}

void WholeWindow::settle() {
    user->settle();
    // A frame may move what the next one shows.
    for (int i = 0; i < 3; ++i) {
        window->grabWindow();
        turn();
    }
}

void WholeWindow::showResult() {
    SimulationResult result;
    result.surfaceField = SurfaceField({Vec3(0), Vec3(1, 0, 0), Vec3(0, 1, 0)}, {-1.5F, 1.0F, 0.0F},
        "Pressure_Coefficient", {0U, 1U, 2U}, SurfaceField::Primitive::triangle);
    Streamlines lines;
    lines.interleavedVertices = std::vector<float>{0, 0, 0, 10, 1, 0, 0, 30};
    lines.indices = std::vector<std::uint32_t>{0, 1};
    lines.vertexCount = 2;
    lines.indexCount = 2;
    lines.magnitudeMin = 10;
    lines.magnitudeMax = 30;
    lines.boundingMax = Vec3(1, 0, 0);
    result.streamlines = lines;
    app.parameters.setLastRunResult(result);
    RunSummary summary;
    summary.elapsedSeconds = 123.4;
    summary.iterations = 50000;
    summary.cl = 0.4321;
    summary.cd = 0.0123;
    Probe::setMeshCells(app.simulation, 1234567);
    Probe::setSummary(app.simulation, summary);
    app.renderSettings.setColormapEnabled(true);
    app.renderSettings.setStreamlinesEnabled(true);
}

void WholeWindow::showAllCards() {
    placeModel();
    // A new model ends orient mode when the viewport takes it up.
    settle();
    showResult();
    app.renderSettings.setOrientMode(true);
    model->viewport()->handleDrop(ViewportFormat::DropOutcome({"/d/picture.png", "/d/notes.txt"}));
    settle();
}

QAccessibleInterface* WholeWindow::accessible(const QString& name) const {
    return accessible(name, QAccessible::NoRole);
}

QAccessibleInterface* WholeWindow::accessible(const QString& name, QAccessible::Role role) const {
    QAccessibleInterface* result = nullptr;
    visitAll(QAccessible::queryAccessibleInterface(window), [&](QAccessibleInterface* found) {
        if (!result && found->text(QAccessible::Name) == name && isShown(found) &&
            (role == QAccessible::NoRole || found->role() == role)) {
            result = found;
        }
    });
    return result;
}

std::vector<QQuickItem*> WholeWindow::focusable() const {
    std::vector<QQuickItem*> items;
    visitAll(QAccessible::queryAccessibleInterface(window), [&](QAccessibleInterface* found) {
        auto* item = qobject_cast<QQuickItem*>(found->object());
        const QAccessible::Role role = found->role();
        const bool isControl = role == QAccessible::Button || role == QAccessible::CheckBox ||
                               role == QAccessible::RadioButton || role == QAccessible::ComboBox ||
                               role == QAccessible::PageTab || role == QAccessible::EditableText;
        if (item && isShown(found) && item->isEnabled() && isControl &&
            std::find(items.begin(), items.end(), item) == items.end()) {
            items.push_back(item);
        }
    });
    return items;
}

std::string WholeWindow::spoken(const QObject* object) {
    QAccessibleInterface* found =
        QAccessible::queryAccessibleInterface(const_cast<QObject*>(object));
    return found ? found->text(QAccessible::Name).toStdString()
                 : std::string("unnamed ") + object->metaObject()->className();
}

QPointF WholeWindow::middleOf(const QString& name, QAccessible::Role role) const {
    QAccessibleInterface* found = accessible(name, role);
    if (!found) {
        throw std::runtime_error("nothing is called " + name.toStdString());
    }
    return frame(qobject_cast<QQuickItem*>(found->object())).center();
}

void WholeWindow::click(const QString& name, QAccessible::Role role) {
    user->click(middleOf(name, role));
    settle();
}

QQuickItem* WholeWindow::field(const char* label) const {
    QAccessibleInterface* found = accessible(q(label), QAccessible::EditableText);
    if (!found) {
        throw std::runtime_error(std::string("no field is called ") + label);
    }
    return qobject_cast<QQuickItem*>(found->object());
}

void WholeWindow::enter(const char* label) {
    user->click(frame(field(label)).center());
    user->type(Qt::Key_A, Qt::ControlModifier);
}

void WholeWindow::type(const std::string& text) {
    for (const char c : text) {
        user->type(static_cast<Qt::Key>(std::toupper(static_cast<unsigned char>(c))));
    }
}

std::string WholeWindow::textOf(const char* label) const {
    return field(label)->property("text").toString().toStdString();
}

std::vector<QQuickItem*> WholeWindow::shownItems() const {
    std::vector<QQuickItem*> items;
    const std::function<void(QQuickItem*)> gather = [&](QQuickItem* parent) {
        for (QQuickItem* child : parent->childItems()) {
            if (child->isVisible() && child->opacity() > 0) {
                items.push_back(child);
                gather(child);
            }
        }
    };
    gather(window->contentItem());
    return items;
}

bool WholeWindow::isA(const QObject* object, const char* type) {
    const QByteArray prefix = QByteArray(type) + "_QML";
    for (const QMetaObject* meta = object->metaObject(); meta; meta = meta->superClass()) {
        if (QByteArray(meta->className()).startsWith(prefix) ||
            QByteArray(meta->className()) == type) {
            return true;
        }
    }
    return false;
}

QRectF WholeWindow::frame(const QQuickItem* item) {
    return item->mapRectToScene(item->boundingRect());
}

} // namespace ostrella::test
