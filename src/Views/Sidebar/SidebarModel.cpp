#include "Views/Sidebar/SidebarModel.h"

#include "Models/NotificationCenter.h"
#include "Models/ParameterTable.h"
#include "Models/PlatformWords.h"
#include "Models/RenderSettings.h"
#include "Models/SimulationInputs.h"
#include "Models/SimulationParameters.h"
#include "Solver/Run/SimulationController.h"
#include "Views/Format/NumberField.h"
#include "Views/Format/SettingsFormat.h"
#include "Views/Format/SidebarFormat.h"
#include "Views/Format/SidebarText.h"
#include "Views/Format/ViewportFormat.h"
#include "Views/Format/ViewportText.h"
#include "Views/QStringOf.h"

#include <glm/vec3.hpp>

#include <algorithm>
#include <array>

namespace ostrella {

namespace {

QVariantMap switchTexts(const SidebarText::Switch& texts) {
    return {{QStringLiteral("title"), qStringOf(texts.title)},
        {QStringLiteral("suffix"), qStringOf(texts.suffix)},
        {QStringLiteral("label"), qStringOf(texts.label)},
        {QStringLiteral("help"), qStringOf(texts.help)}};
}

QVariantMap sidebarTexts(const PlatformWords& words) {
    QVariantMap texts;
    const auto add = [&texts](const char* name, std::string_view text) {
        texts.insert(QString::fromLatin1(name), qStringOf(text));
    };
    add("geometry", SidebarText::geometrySection);
    add("orientation", SidebarText::orientationSection);
    add("freeStream", SidebarText::freeStreamSection);
    add("turbulence", SidebarText::turbulenceSection);
    add("file", SidebarText::file);
    add("facets", SidebarText::facets);
    add("boundingBox", SidebarText::boundingBox);
    add("load", SidebarText::load);
    add("loadHelp", SidebarText::loadHelp(words));
    add("angles", SidebarText::angles);
    add("anglesSuffix", SidebarText::anglesSuffix);
    add("orientHint", SidebarText::orientHint);
    add("reset", OrientText::reset);
    add("resetHelp", OrientText::resetHelp);
    add("resetName", OrientText::resetName);
    add("resetMenuItem", OrientText::resetMenuItem);
    add("regime", SidebarText::regime);
    add("model", SidebarText::model);
    add("modelHelp", SidebarText::modelHelp);
    texts.insert(
        QStringLiteral("rotationCorrection"), switchTexts(SidebarText::rotationCorrection));
    texts.insert(QStringLiteral("transition"), switchTexts(SidebarText::transition));
    return texts;
}

struct Digits {
    int fewest;
    int most;
};

/// Of the angles of the model's orientation, and of the free stream's values.
constexpr Digits rotationDigits{1, 2};
constexpr Digits freeStreamDigits{1, 4};

QVariantMap field(const ParameterInfo& info, Digits digits) {
    return {{QStringLiteral("label"), qStringOf(info.label)},
        {QStringLiteral("unit"), qStringOf(info.unit)}, {QStringLiteral("from"), info.minimum},
        {QStringLiteral("to"), info.maximum}, {QStringLiteral("fewestDigits"), digits.fewest},
        {QStringLiteral("mostDigits"), digits.most}};
}

double inRange(const ParameterInfo& info, double value) {
    return NumberField{info.minimum, info.maximum}.inRange(value);
}

template <class Options>
QStringList titles(const Options& options) {
    QStringList result;
    for (const auto option : options) {
        result.append(qStringOf(SidebarText::title(option)));
    }
    return result;
}

template <class Options, class Value>
int indexOf(const Options& options, Value value) {
    return static_cast<int>(std::find(options.begin(), options.end(), value) - options.begin());
}

/// The option of an index; null for one that is none.
template <class Options>
const typename Options::value_type* option(const Options& options, int index) {
    const bool isThere = index >= 0 && static_cast<std::size_t>(index) < options.size();
    return isThere ? &options[static_cast<std::size_t>(index)] : nullptr;
}

/// A value and how to set it.
struct HeldParameter {
    const ParameterInfo& info;
    double (SimulationParameters::*get)() const;
    void (SimulationParameters::*set)(double);
    void (SimulationParameters::*changed)();
};

constexpr std::array heldParameters{
    HeldParameter{ParameterTable::rotationX, &SimulationParameters::rotationX,
        &SimulationParameters::setRotationX, &SimulationParameters::rotationXChanged},
    HeldParameter{ParameterTable::rotationY, &SimulationParameters::rotationY,
        &SimulationParameters::setRotationY, &SimulationParameters::rotationYChanged},
    HeldParameter{ParameterTable::rotationZ, &SimulationParameters::rotationZ,
        &SimulationParameters::setRotationZ, &SimulationParameters::rotationZChanged},
    HeldParameter{ParameterTable::velocity, &SimulationParameters::velocity,
        &SimulationParameters::setVelocity, &SimulationParameters::velocityChanged},
    HeldParameter{ParameterTable::alpha, &SimulationParameters::alpha,
        &SimulationParameters::setAlpha, &SimulationParameters::alphaChanged},
    HeldParameter{ParameterTable::beta, &SimulationParameters::beta, &SimulationParameters::setBeta,
        &SimulationParameters::betaChanged},
    HeldParameter{ParameterTable::density, &SimulationParameters::density,
        &SimulationParameters::setDensity, &SimulationParameters::densityChanged},
};

} // namespace

SidebarModel::SidebarModel(const SharedObjects& shared, const PlatformWords& words, QObject* parent)
    : QObject(parent),
      shared_(shared),
      texts_(sidebarTexts(words)),
      boundingBox_([this] {
          // While the box is stale an update is on its way already, or going on.
          if (!isBoxStale_) {
              update_.schedule();
          }
      }),
      update_(this, [this] {
          if (isBoxStale_) {
              refreshBoundingBox();
              isBoxStale_ = false;
          }
          Q_EMIT changed();
      }) {
    SimulationParameters& parameters = shared_.parameters;
    const auto schedule = [this] { update_.schedule(); };

    // Whatever a value is set to, a field shows and keeps one of its range.
    for (const HeldParameter& held : heldParameters) {
        connect(&parameters, held.changed, this, [this, held] {
            SimulationParameters& values = shared_.parameters;
            const double value = (values.*held.get)();
            const double kept = inRange(held.info, value);
            if (!(kept == value)) {
                (values.*held.set)(kept);
            }
            update_.schedule();
        });
    }
    for (const auto signal :
        {&SimulationParameters::stlURLChanged, &SimulationParameters::loadingFileNameChanged,
            &SimulationParameters::regimeChanged, &SimulationParameters::turbulenceModelChanged,
            &SimulationParameters::saRotationCorrectionChanged,
            &SimulationParameters::saTransitionChanged}) {
        connect(&parameters, signal, this, schedule);
    }
    for (const auto signal :
        {&SimulationParameters::meshChanged, &SimulationParameters::rotationXChanged,
            &SimulationParameters::rotationYChanged, &SimulationParameters::rotationZChanged}) {
        connect(&parameters, signal, this, [this] {
            isBoxStale_ = true;
            update_.schedule();
        });
    }
    connect(&shared_.renderSettings, &RenderSettings::orientModeChanged, this, schedule);
    connect(&shared_.simulation, &SimulationController::phaseChanged, this, schedule);
    refreshBoundingBox();
}

void SidebarModel::refreshBoundingBox() {
    const SimulationParameters& parameters = shared_.parameters;
    boundingBox_.refresh(parameters.mesh(),
        {parameters.rotationX(), parameters.rotationY(), parameters.rotationZ()});
}

bool SidebarModel::isEnabled() const {
    return !shared_.simulation.phase().isActive();
}

bool SidebarModel::hasMesh() const {
    return shared_.parameters.mesh().has_value();
}

QString SidebarModel::geometryText() const {
    if (hasMesh()) {
        return {};
    }
    const auto& loading = shared_.parameters.loadingFileName();
    return loading ? qStringOf(SidebarFormat::loadingMessage(*loading))
                   : qStringOf(SidebarText::noModel);
}

QString SidebarModel::fileName() const {
    const auto& url = shared_.parameters.stlURL();
    return hasMesh() && url ? qStringOf(url->filename().string()) : QString();
}

QString SidebarModel::facets() const {
    const auto& mesh = shared_.parameters.mesh();
    return mesh ? qStringOf(SettingsFormat::count(static_cast<std::int64_t>(mesh->facetCount())))
                : QString();
}

QString SidebarModel::boundingBox() const {
    return qStringOf(boundingBox_.text().value_or(""));
}

bool SidebarModel::canLoad() const {
    return isEnabled() && !shared_.parameters.loadingFileName();
}

bool SidebarModel::canOrient() const {
    return ViewportFormat::canOrient(
        hasMesh(), shared_.simulation.phase(), shared_.parameters.loadingFileName().has_value());
}

bool SidebarModel::isRotated() const {
    return rotationX() != 0 || rotationY() != 0 || rotationZ() != 0;
}

QString SidebarModel::orientButtonText() const {
    return qStringOf(
        shared_.renderSettings.orientMode() ? SidebarText::orientDone : SidebarText::orient);
}

QVariantMap SidebarModel::rotationXField() const {
    return field(ParameterTable::rotationX, rotationDigits);
}
QVariantMap SidebarModel::rotationYField() const {
    return field(ParameterTable::rotationY, rotationDigits);
}
QVariantMap SidebarModel::rotationZField() const {
    return field(ParameterTable::rotationZ, rotationDigits);
}

double SidebarModel::rotationX() const {
    return shared_.parameters.rotationX();
}
double SidebarModel::rotationY() const {
    return shared_.parameters.rotationY();
}
double SidebarModel::rotationZ() const {
    return shared_.parameters.rotationZ();
}

void SidebarModel::setRotationX(double value) {
    shared_.parameters.setRotationX(inRange(ParameterTable::rotationX, value));
}
void SidebarModel::setRotationY(double value) {
    shared_.parameters.setRotationY(inRange(ParameterTable::rotationY, value));
}
void SidebarModel::setRotationZ(double value) {
    shared_.parameters.setRotationZ(inRange(ParameterTable::rotationZ, value));
}

QStringList SidebarModel::regimes() const {
    return titles(allFlowRegimes);
}

int SidebarModel::regime() const {
    return indexOf(allFlowRegimes, shared_.parameters.regime());
}

void SidebarModel::setRegime(int index) {
    if (const auto* regime = option(allFlowRegimes, index)) {
        shared_.parameters.setRegime(*regime);
    }
}

QVariantMap SidebarModel::velocityField() const {
    return field(ParameterTable::velocity, freeStreamDigits);
}
QVariantMap SidebarModel::alphaField() const {
    return field(ParameterTable::alpha, freeStreamDigits);
}
QVariantMap SidebarModel::betaField() const {
    return field(ParameterTable::beta, freeStreamDigits);
}
QVariantMap SidebarModel::densityField() const {
    return field(ParameterTable::density, freeStreamDigits);
}

double SidebarModel::velocity() const {
    return shared_.parameters.velocity();
}
double SidebarModel::alpha() const {
    return shared_.parameters.alpha();
}
double SidebarModel::beta() const {
    return shared_.parameters.beta();
}
double SidebarModel::density() const {
    return shared_.parameters.density();
}

void SidebarModel::setVelocity(double value) {
    shared_.parameters.setVelocity(inRange(ParameterTable::velocity, value));
}
void SidebarModel::setAlpha(double value) {
    shared_.parameters.setAlpha(inRange(ParameterTable::alpha, value));
}
void SidebarModel::setBeta(double value) {
    shared_.parameters.setBeta(inRange(ParameterTable::beta, value));
}
void SidebarModel::setDensity(double value) {
    shared_.parameters.setDensity(inRange(ParameterTable::density, value));
}

QStringList SidebarModel::turbulenceModels() const {
    return titles(allTurbulenceModels);
}

int SidebarModel::turbulenceModel() const {
    return indexOf(allTurbulenceModels, shared_.parameters.turbulenceModel());
}

void SidebarModel::setTurbulenceModel(int index) {
    if (const auto* model = option(allTurbulenceModels, index)) {
        shared_.parameters.setTurbulenceModel(*model);
    }
}

bool SidebarModel::showsSwitches() const {
    return shared_.parameters.turbulenceModel() == TurbulenceModel::spalartAllmaras;
}

bool SidebarModel::rotationCorrection() const {
    return shared_.parameters.saRotationCorrection();
}

void SidebarModel::setRotationCorrection(bool isOn) {
    shared_.parameters.setSARotationCorrection(isOn);
}

bool SidebarModel::transition() const {
    return shared_.parameters.saTransition();
}

void SidebarModel::setTransition(bool isOn) {
    shared_.parameters.setSATransition(isOn);
}

void SidebarModel::load() {
    shared_.notifications.post(Notifications::openSTLRequested);
}

void SidebarModel::resetOrientation() {
    shared_.parameters.setRotationX(0);
    shared_.parameters.setRotationY(0);
    shared_.parameters.setRotationZ(0);
}

void SidebarModel::toggleOrientMode() {
    shared_.renderSettings.setOrientMode(!shared_.renderSettings.orientMode());
}

} // namespace ostrella
