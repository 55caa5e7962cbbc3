#include "Views/About/AboutModel.h"

#include "Models/MainThread.h"
#include "Models/PlatformWords.h"
#include "Solver/Tools/AboutInfo.h"
#include "Solver/Tools/Background.h"
#include "Update/UpdateController.h"
#include "Views/Format/AboutText.h"
#include "Views/Format/AppLinks.h"
#include "Views/QStringOf.h"

#include <QPointer>

#include <utility>

namespace ostrella {

namespace {

QVariantMap aboutTexts(const AboutModel::Surroundings& surroundings) {
    QVariantMap texts;
    const auto add = [&texts](const char* name, std::string_view text) {
        texts.insert(QString::fromLatin1(name), qStringOf(text));
    };
    add("windowTitle", AboutText::windowTitle);
    add("title", AboutText::title);
    add("tagLine", AboutText::tagLine(surroundings.words));
    add("version", AboutInfo::versionLine(surroundings.bundle.information()));
    add("solver", AboutText::solver);
    add("mesher", AboutText::mesher);
    add("renderer", AboutText::renderer);
    add("website", AboutText::website);
    add("websiteHelp", AppLinks::shownAddress(AppLinks::site));
    add("checkForUpdates", AboutText::checkForUpdates);
    add("acknowledgements", AboutText::acknowledgements);
    add("done", AboutText::done);
    add("libraries", AboutText::librariesNote(surroundings.words));
    add("rights", AppLinks::rights);
    return texts;
}

} // namespace

AboutModel::AboutModel(Surroundings surroundings, QObject* parent)
    : QObject(parent),
      surroundings_(std::move(surroundings)),
      texts_(aboutTexts(surroundings_)),
      solver_(qStringOf(AboutText::unknown)),
      mesher_(solver_),
      renderer_(solver_) {
    if (surroundings_.updates != nullptr) {
        connect(surroundings_.updates, &UpdateController::canCheckForUpdatesChanged, this,
            &AboutModel::canCheckForUpdatesChanged);
    }
}

void AboutModel::appear() {
    solver_ =
        QString::fromStdString(AboutInfo::probeSU2(surroundings_.bundle, surroundings_.words));
    Q_EMIT solverChanged();
    // Known already: it need not wait for gmsh.
    renderer_ = QString::fromStdString(surroundings_.renderer);
    Q_EMIT rendererChanged();
    probeMesher();
}

void AboutModel::probeMesher() {
    if (std::exchange(isProbing_, true)) {
        return;
    }
    Background::run([self = QPointer<AboutModel>(this), bundle = surroundings_.bundle,
                        timers = &surroundings_.timers] {
        const std::string mesher = AboutInfo::probeGMSH(bundle, *timers);
        MainThread::post([self, mesher] {
            if (self) {
                self->isProbing_ = false;
                self->mesher_ = QString::fromStdString(mesher);
                Q_EMIT self->mesherChanged();
            }
        });
    });
}

QVariantList AboutModel::notices() const {
    const std::string release =
        surroundings_.bundle.solverRelease().value_or(std::string(AboutInfo::packagedRelease));
    const AboutText::Tools tools{.solverRelease = release,
        .solverIsStandIn = surroundings_.bundle.solverIsStandIn(),
        .mesherVersion = AboutInfo::parseGMSHVersion(mesher_.toStdString())};
    QVariantList list;
    for (const auto& notice : AboutText::notices(tools, surroundings_.words)) {
        list.append(QVariantMap{{QStringLiteral("heading"), QString::fromStdString(notice.heading)},
            {QStringLiteral("text"), QString::fromStdString(notice.text)}});
    }
    return list;
}

bool AboutModel::canCheckForUpdates() const {
    return surroundings_.updates != nullptr && surroundings_.updates->canCheckForUpdates();
}

void AboutModel::setShowAcknowledgements(bool show) {
    if (show != showAcknowledgements_) {
        showAcknowledgements_ = show;
        Q_EMIT showAcknowledgementsChanged();
    }
}

void AboutModel::openSite() {
    surroundings_.openAddress(std::string(AppLinks::site));
}

void AboutModel::checkForUpdates() {
    if (canCheckForUpdates()) {
        surroundings_.updates->checkForUpdates();
    }
}

} // namespace ostrella
