#include "Views/Viewport/ViewportModel.h"

#include "Models/LogStore.h"
#include "Models/MainThread.h"
#include "Models/PlatformWords.h"
#include "Models/RenderSettings.h"
#include "Models/SimulationParameters.h"
#include "Solver/Run/STLImporter.h"
#include "Solver/Run/SimulationController.h"
#include "Views/Format/SidebarFormat.h"
#include "Views/Format/ViewportPlacement.h"
#include "Views/Format/ViewportText.h"
#include "Views/QStringOf.h"
#include "Views/Viewport/OverlayPlacing.h"
#include "Views/Viewport/ViewportItem.h"

#include <QPointer>
#include <QUuid>

#include <algorithm>
#include <any>
#include <chrono>
#include <utility>

namespace ostrella {

namespace {

QVariantMap toolMap(const ViewControlText::Tool& tool, std::string_view help) {
    return {{QStringLiteral("label"), qStringOf(tool.label)},
        {QStringLiteral("symbol"), qStringOf(tool.symbol)},
        {QStringLiteral("help"), qStringOf(help)}};
}

} // namespace

ViewportModel::ViewportModel(
    const SharedObjects& shared, const Surroundings& surroundings, QObject* parent)
    : QObject(parent),
      shared_(shared),
      surroundings_(surroundings),
      card_(shared, surroundings.preferences, surroundings.clock),
      legend_(shared),
      orientCard_(shared),
      welcome_(shared, surroundings.words),
      drop_([this](const ViewportFormat::DropOutcome& outcome) { handleDrop(outcome); }),
      update_(this,
          [this] {
              legend_.refresh();
              Q_EMIT changed();
              Q_EMIT orientCard_.changed();
          }),
      layoutUpdate_(this, [this] { refreshLayout(); }) {
    observe();
}

void ViewportModel::observe() {
    const auto later = [this] { update_.schedule(); };
    const auto* parameters = &shared_.parameters;
    connect(parameters, &SimulationParameters::meshChanged, this, later);
    connect(parameters, &SimulationParameters::lastRunResultChanged, this, later);
    connect(parameters, &SimulationParameters::loadingFileNameChanged, this, later);
    connect(parameters, &SimulationParameters::rotationXChanged, this, later);
    connect(parameters, &SimulationParameters::rotationYChanged, this, later);
    connect(parameters, &SimulationParameters::rotationZChanged, this, later);
    connect(&shared_.simulation, &SimulationController::phaseChanged, this, later);
    const auto* render = &shared_.renderSettings;
    connect(render, &RenderSettings::orientModeChanged, this, later);
    connect(render, &RenderSettings::colormapEnabledChanged, this, later);
    connect(render, &RenderSettings::streamlinesEnabledChanged, this, later);
    connect(render, &RenderSettings::flowAnimationChanged, this, later);
    connect(render, &RenderSettings::viewPresetChanged, this, later);
    connect(render, &RenderSettings::viewPresetIsCurrentChanged, this, later);

    observers_.push_back(shared_.notifications.observe(
        Notifications::viewPresetRequested, [this](const std::any& object) {
            const auto* raw = std::any_cast<std::string>(&object);
            const auto preset = raw != nullptr ? viewPresetFromRawValue(*raw) : std::nullopt;
            if (preset && showsViewControl()) {
                shared_.renderSettings.requestView(*preset);
            }
        }));
    observers_.push_back(shared_.notifications.observe(
        Notifications::fitToViewRequested, [this](const std::any&) { fit(); }));
}

void ViewportModel::attach(QObject* item) {
    if (auto* scene = qobject_cast<ViewportItem*>(item)) {
        scene->setModel(shared_.parameters, shared_.renderSettings);
    }
}

bool ViewportModel::showsWelcome() const {
    return ViewportFormat::showsWelcome(shared_.parameters.mesh().has_value(),
        shared_.parameters.lastRunResult().has_value(), shared_.simulation.phase(),
        shared_.parameters.loadingFileName().has_value());
}

bool ViewportModel::showsViewControl() const {
    // Where there is a scene, there is no welcome.
    return ViewportFormat::hasScene(
        shared_.parameters.mesh().has_value(), shared_.parameters.lastRunResult().has_value());
}

bool ViewportModel::canOrient() const {
    return ViewportFormat::canOrient(shared_.parameters.mesh().has_value(),
        shared_.simulation.phase(), shared_.parameters.loadingFileName().has_value());
}

bool ViewportModel::orients() const {
    return shared_.renderSettings.orientMode();
}

bool ViewportModel::showsOrientCard() const {
    return orients() && canOrient();
}

QString ViewportModel::loadingText() const {
    const auto& name = shared_.parameters.loadingFileName();
    return name ? qStringOf(SidebarFormat::loadingMessage(*name)) : QString();
}

QString ViewportModel::notice() const {
    return notice_.current() ? qStringOf(notice_.current()->text) : QString();
}

QString ViewportModel::noticeSymbol() const {
    return qStringOf(CardText::noticeSymbol);
}

QVariantList ViewportModel::views() const {
    QVariantList views;
    for (const ViewPreset preset : allViewPresets) {
        views.append(QVariantMap{{QStringLiteral("view"), static_cast<int>(preset)},
            {QStringLiteral("name"), qStringOf(ViewportFormat::viewName(preset))},
            {QStringLiteral("label"), qStringOf(ViewportFormat::viewLabel(preset))},
            {QStringLiteral("help"),
                qStringOf(ViewportFormat::viewHelp(preset, surroundings_.words))}});
    }
    return views;
}

int ViewportModel::currentView() const {
    return shared_.renderSettings.viewPresetIsCurrent()
               ? static_cast<int>(shared_.renderSettings.viewPreset())
               : -1;
}

QVariantMap ViewportModel::tools() const {
    return {{QStringLiteral("views"), qStringOf(ViewControlText::viewsGroup)},
        {QStringLiteral("fit"),
            toolMap(ViewControlText::fit, ViewportFormat::fitHelp(surroundings_.words))},
        {QStringLiteral("orient"), toolMap(ViewControlText::orient, ViewControlText::orient.help)},
        {QStringLiteral("animate"),
            toolMap(ViewControlText::animate,
                ViewportFormat::animateFlowHelp(hasStreamlines(), animates()))},
        {QStringLiteral("saveImage"),
            toolMap(ViewControlText::saveImage, ViewControlText::saveImage.help)}};
}

bool ViewportModel::hasStreamlines() const {
    const auto& result = shared_.parameters.lastRunResult();
    return result && result->streamlines && shared_.renderSettings.streamlinesEnabled();
}

bool ViewportModel::animates() const {
    return shared_.renderSettings.flowAnimation();
}

void ViewportModel::reportSize(const QSizeF& size) {
    layout_.size = {size.width(), size.height()};
    layoutUpdate_.schedule();
}

void ViewportModel::reportFrame(Overlay overlay, const QRectF& frame) {
    const auto key = static_cast<ViewportOverlay>(overlay);
    if (frame.isEmpty()) {
        layout_.frames.erase(key);
    } else {
        layout_.frames.insert_or_assign(
            key, LayoutRect{frame.x(), frame.y(), frame.width(), frame.height()});
    }
    layoutUpdate_.schedule();
}

void ViewportModel::refreshLayout() {
    const ViewportInsets insets = ViewportLayout::insets(layout_);
    if (insets != shared_.renderSettings.viewportInsets()) {
        shared_.renderSettings.setViewportInsets(insets);
    }
    const double bar = ViewportLayout::legendBarHeight(layout_);
    legend_.setBarHeight(std::min(bar, mostBarHeight_.value_or(bar)));
}

QVariantMap ViewportModel::place(const QVariantMap& wishes) const {
    return placeOverlays(wishes);
}

double ViewportModel::mostCardWidth(double viewWidth, double legendWidth) const {
    return ViewportLayout::mostCardWidth(viewWidth, legendWidth);
}

void ViewportModel::reportBarHeight(double most) {
    if (mostBarHeight_ != most) {
        mostBarHeight_ = most;
        layoutUpdate_.schedule();
    }
}

void ViewportModel::requestView(int view) {
    if (view >= 0 && view < static_cast<int>(allViewPresets.size())) {
        shared_.renderSettings.requestView(static_cast<ViewPreset>(view));
    }
}

void ViewportModel::fit() {
    shared_.renderSettings.setReframeRequestID(QUuid::createUuid());
}

void ViewportModel::toggleOrientMode() {
    if (canOrient()) {
        shared_.renderSettings.setOrientMode(!orients());
    }
}

void ViewportModel::toggleAnimation() {
    if (hasStreamlines()) {
        shared_.renderSettings.setFlowAnimation(!animates());
    }
}

void ViewportModel::saveImage() {
    surroundings_.saveImage();
}

void ViewportModel::exitOrientMode() {
    if (orients()) {
        shared_.renderSettings.setOrientMode(false);
    }
}

void ViewportModel::handleDrop(const ViewportFormat::DropOutcome& outcome) {
    if (outcome.stl) {
        shared_.importer.open(*outcome.stl, shared_.parameters);
    }
    constexpr std::size_t mostNames = 3;
    if (const auto line = ViewportFormat::ignoredLogLine(outcome, mostNames)) {
        shared_.log.append(*line, LogStore::Level::warn);
    }
    if (auto text = ViewportFormat::ignoredNotice(outcome)) {
        showNotice(std::move(*text));
    }
}

void ViewportModel::showNotice(std::string text) {
    const auto id = notice_.show(std::move(text));
    Q_EMIT noticeChanged();
    noticeTimer_ =
        surroundings_.timers.after(std::chrono::duration<double>(ViewportNotice::seconds),
            [self = QPointer<ViewportModel>(this), id] {
                MainThread::post([self, id] {
                    if (self && self->notice_.expire(id)) {
                        Q_EMIT self->noticeChanged();
                    }
                });
            });
}

} // namespace ostrella
