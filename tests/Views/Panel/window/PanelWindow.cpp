#include "PanelWindow.h"

#include <QAccessible>
#include <QQmlEngine>

#include <functional>

namespace ostrella {
void useControlsModule();
void usePanelModule();
} // namespace ostrella

namespace ostrella::test {

PanelWindow::PanelWindow() {
    useControlsModule();
    usePanelModule();
    view = std::make_unique<QQuickView>();
    view->engine()->addImportPath(QStringLiteral(":/qt/qml"));
    view->setResizeMode(QQuickView::SizeRootObjectToView);
    view->resize(680, 228);
    view->setInitialProperties({{QStringLiteral("model"), QVariant::fromValue<QObject*>(&panel)}});
    view->setSource(QUrl(QStringLiteral("qrc:/qt/qml/Ostrella/Panel/BottomPanel.qml")));
    if (!view->rootObject()) {
        throw std::runtime_error("the panel cannot be made");
    }
    // As a reader of the screen would: the controls take their names then.
    QAccessible::setActive(true);
    view->show();
    user = std::make_unique<RealInput>(*view);
    settle();
}

PanelWindow::~PanelWindow() = default;

void PanelWindow::settle() {
    panel.lines()->takeIn();
    user->settle();
    view->grabWindow();
}

QAccessibleInterface* PanelWindow::accessible(const QString& name) const {
    const std::function<QAccessibleInterface*(QAccessibleInterface*)> search =
        [&](QAccessibleInterface* parent) -> QAccessibleInterface* {
        if (parent->text(QAccessible::Name) == name) {
            return parent;
        }
        for (int i = 0; i < parent->childCount(); ++i) {
            if (QAccessibleInterface* found = search(parent->child(i))) {
                return found;
            }
        }
        return nullptr;
    };
    return search(QAccessible::queryAccessibleInterface(view.get()));
}

QPointF PanelWindow::middleOf(const QString& name) const {
    QAccessibleInterface* found = accessible(name);
    auto* item = found ? qobject_cast<QQuickItem*>(found->object()) : nullptr;
    if (!item) {
        throw std::runtime_error("nothing is called " + name.toStdString());
    }
    return item->mapToScene(item->boundingRect().center());
}

std::string PanelWindow::bottomText() const {
    const auto row = log().scroll().bottomRow();
    return row ? (*log().lines())[*row].text : std::string();
}

bool PanelWindow::isAtEnd() const {
    const LogScroll::Row last = log().scroll().visible().back();
    return last.row + 1 == log().lines()->size() &&
           std::abs(last.top + last.height + 8 - log().height()) < 0.01;
}

} // namespace ostrella::test
