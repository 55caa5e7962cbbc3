#include "Views/Viewport/WelcomeModel.h"

#include "Models/MainThread.h"
#include "Models/NotificationCenter.h"
#include "Solver/Run/SampleLoader.h"
#include "Solver/Run/SimulationController.h"
#include "Solver/Tools/Background.h"
#include "Views/Format/WelcomeText.h"
#include "Views/QStringOf.h"

#include <QPointer>

#include <utility>

namespace ostrella {

WelcomeModel::WelcomeModel(const SharedObjects& shared, const PlatformWords& words, QObject* parent)
    : QObject(parent), shared_(shared), words_(words) {}

QVariantMap WelcomeModel::texts() const {
    return {{QStringLiteral("title"), qStringOf(WelcomeText::title)},
        {QStringLiteral("tagLine"), qStringOf(WelcomeText::tagLine(words_))},
        {QStringLiteral("samples"), qStringOf(WelcomeText::samplesHeading)},
        {QStringLiteral("demo"), qStringOf(WelcomeText::demoLink)},
        {QStringLiteral("load"), qStringOf(WelcomeText::loadLink)}};
}

QVariantList WelcomeModel::samples() const {
    QVariantList samples;
    for (const SampleLoader::Sample& sample : SampleLoader::samples) {
        const auto count = counts_.find(sample.id);
        const auto facets = count == counts_.end() ? std::nullopt : std::optional(count->second);
        samples.append(QVariantMap{{QStringLiteral("id"), qStringOf(sample.id)},
            {QStringLiteral("name"), qStringOf(sample.displayName)},
            {QStringLiteral("symbol"), qStringOf(WelcomeText::sampleSymbol(sample.id))},
            {QStringLiteral("facets"), qStringOf(WelcomeText::facetsText(facets))},
            {QStringLiteral("help"), qStringOf(WelcomeText::sampleHelp(sample.displayName))},
            {QStringLiteral("label"), qStringOf(WelcomeText::sampleLabel(sample.displayName))}});
    }
    return samples;
}

void WelcomeModel::count() {
    if (std::exchange(isCounting_, true)) {
        return;
    }
    // The shared objects outlive every chore; this model may not.
    Background::run([self = QPointer<WelcomeModel>(this), loader = &shared_.samples] {
        std::map<std::string, std::int64_t, std::less<>> counts;
        for (const SampleLoader::Sample& sample : SampleLoader::samples) {
            if (const auto count = loader->facetCount(sample)) {
                counts.emplace(sample.id, *count);
            }
        }
        MainThread::post([self, counts = std::move(counts)] {
            if (self) {
                self->counts_ = counts;
                Q_EMIT self->changed();
            }
        });
    });
}

void WelcomeModel::loadSample(const QString& id) {
    shared_.notifications.post(Notifications::sampleLoadRequested, id.toStdString());
}

void WelcomeModel::runDemo() {
    shared_.simulation.runDemo();
}

void WelcomeModel::loadOwn() {
    shared_.notifications.post(Notifications::openSTLRequested);
}

} // namespace ostrella
