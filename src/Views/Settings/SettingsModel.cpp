#include "Views/Settings/SettingsModel.h"

#include "Models/AppSettings.h"
#include "Models/PreferenceStore.h"
#include "Models/UpdatePolicy.h"
#include "Update/UpdateController.h"
#include "Views/QStringOf.h"

#include <string>
#include <variant>

namespace ostrella {

namespace {

SettingsTab storedTab(const PreferenceStore& preferences) {
    const auto value = preferences.value(SettingsModel::tabKey);
    const auto* text = value ? std::get_if<std::string>(&*value) : nullptr;
    return (text ? SettingsText::tab(*text) : std::nullopt).value_or(SettingsTab::solver);
}

QVariantMap settingsTexts() {
    QVariantMap texts;
    const auto add = [&texts](const char* name, std::string_view text) {
        texts.insert(QString::fromLatin1(name), qStringOf(text));
    };
    add("windowTitle", SettingsText::windowTitle);
    add("restoreDefaults", SettingsText::restoreDefaults);
    add("iterations", SettingsText::iterations);
    add("iterationsCaption", SettingsText::iterationsCaption);
    add("updates", SettingsText::updates);
    add("currentVersion", SettingsText::currentVersion);
    add("checkAutomatically", SettingsText::checkAutomatically);
    add("checkNow", SettingsText::checkNow);
    add("updatesCaption", SettingsText::updatesCaption);
    add("window", SettingsText::window);
    add("windowCaption", SettingsText::windowCaption);
    add("density", SettingsText::density);
    add("densityCaption", SettingsText::densityCaption);
    return texts;
}

template <typename Range>
QVariantMap field(std::string_view label, const Range& range) {
    return {{QStringLiteral("label"), qStringOf(label)}, {QStringLiteral("from"), range.from},
        {QStringLiteral("to"), range.to}, {QStringLiteral("step"), range.step}};
}

} // namespace

SettingsModel::SettingsModel(AppSettings& settings, PreferenceStore& preferences,
    const std::optional<InformationDictionary>& info, UpdateController* updates, QObject* parent)
    : QObject(parent),
      settings_(settings),
      preferences_(preferences),
      updates_(updates),
      texts_(settingsTexts()),
      version_(QString::fromStdString(UpdatePolicy::versionText(info))),
      tab_(storedTab(preferences)) {
    connect(&settings, &AppSettings::defaultMaxIterationsChanged, this,
        &SettingsModel::maxIterationsChanged);
    connect(&settings, &AppSettings::streamlineUpstreamFactorChanged, this,
        &SettingsModel::inletOffsetChanged);
    connect(&settings, &AppSettings::streamlineDownstreamFactorChanged, this,
        &SettingsModel::wakeLengthChanged);
    connect(&settings, &AppSettings::streamlineSeedCountChanged, this,
        &SettingsModel::seedCountChanged);
    if (updates_ != nullptr) {
        connect(updates_, &UpdateController::automaticallyChecksForUpdatesChanged, this,
            &SettingsModel::checksAutomaticallyChanged);
        connect(updates_, &UpdateController::canCheckForUpdatesChanged, this,
            &SettingsModel::canCheckForUpdatesChanged);
    }
}

QVariantList SettingsModel::tabs() const {
    QVariantList list;
    for (const SettingsTab tab : SettingsText::allTabs) {
        list.append(QVariantMap{{QStringLiteral("value"), qStringOf(SettingsText::rawValue(tab))},
            {QStringLiteral("title"), qStringOf(SettingsText::title(tab))},
            {QStringLiteral("symbol"), qStringOf(SettingsText::symbol(tab))}});
    }
    return list;
}

QString SettingsModel::tab() const {
    return qStringOf(SettingsText::rawValue(tab_));
}

void SettingsModel::setTab(const QString& rawValue) {
    const auto tab = SettingsText::tab(rawValue.toStdString());
    if (tab && *tab != tab_) {
        tab_ = *tab;
        preferences_.set(tabKey, std::string(SettingsText::rawValue(tab_)));
        Q_EMIT tabChanged();
    }
}

QVariantMap SettingsModel::maxIterationsField() const {
    return field(SettingsText::maxIterations, SettingsText::maxIterationsRange);
}

QVariantMap SettingsModel::inletOffsetField() const {
    return field(SettingsText::inletOffset, SettingsText::inletOffsetRange);
}

QVariantMap SettingsModel::wakeLengthField() const {
    return field(SettingsText::wakeLength, SettingsText::wakeLengthRange);
}

QVariantMap SettingsModel::seedCountField() const {
    return field(SettingsText::seedCount, SettingsText::seedCountRange);
}

int SettingsModel::maxIterations() const {
    return settings_.defaultMaxIterations();
}

double SettingsModel::inletOffset() const {
    return settings_.streamlineUpstreamFactor();
}

double SettingsModel::wakeLength() const {
    return settings_.streamlineDownstreamFactor();
}

int SettingsModel::seedCount() const {
    return settings_.streamlineSeedCount();
}

void SettingsModel::setMaxIterations(int value) {
    settings_.setDefaultMaxIterations(value);
}

void SettingsModel::setInletOffset(double value) {
    settings_.setStreamlineUpstreamFactor(value);
}

void SettingsModel::setWakeLength(double value) {
    settings_.setStreamlineDownstreamFactor(value);
}

void SettingsModel::setSeedCount(int value) {
    settings_.setStreamlineSeedCount(value);
}

bool SettingsModel::checksAutomatically() const {
    return updates_ != nullptr && updates_->automaticallyChecksForUpdates();
}

void SettingsModel::setChecksAutomatically(bool automatically) {
    if (updates_ != nullptr) {
        updates_->setAutomaticallyChecksForUpdates(automatically);
    }
}

bool SettingsModel::canCheckForUpdates() const {
    return updates_ != nullptr && updates_->canCheckForUpdates();
}

void SettingsModel::checkForUpdates() {
    if (canCheckForUpdates()) {
        updates_->checkForUpdates();
    }
}

void SettingsModel::restoreDefaults() {
    if (tab_ == SettingsTab::solver) {
        settings_.restoreSolverDefaults();
    } else {
        settings_.restoreStreamlineDefaults();
    }
}

} // namespace ostrella
