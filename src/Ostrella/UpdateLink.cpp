#include "Ostrella/UpdateLink.h"

#include "Update/AppcastUpdater.h"

#include <utility>

namespace ostrella {

UpdateLink::UpdateLink(AppcastUpdater& updater, QQmlEngine& engine, QWindow& mainWindow,
    std::string ownVersion, std::function<void(const std::string& address)> openAddress)
    : updater_(updater),
      model_({.ownVersion = std::move(ownVersion),
          .answer = [this](UpdateWindowModel::Answer given) { answer(given); },
          .openAddress = std::move(openAddress)}),
      window_(model_, engine, mainWindow) {
    connect(&updater_, &AppcastUpdater::sessionChanged, &model_,
        [this] { model_.setSession(updater_.session()); });
    connect(&updater_, &AppcastUpdater::attentionRequested, &window_, &UpdateWindow::bringToFront);
    model_.setSession(updater_.session());
}

void UpdateLink::answer(UpdateWindowModel::Answer answer) {
    using Answer = UpdateWindowModel::Answer;
    switch (answer) {
    case Answer::install:
        updater_.install();
        return;
    case Answer::remindLater:
        updater_.remindLater();
        return;
    case Answer::skipVersion:
        updater_.skipVersion();
        return;
    case Answer::cancel:
        updater_.cancel();
        return;
    case Answer::acknowledge:
        updater_.acknowledge();
        return;
    case Answer::installAndRestart:
        updater_.installAndRestart();
        return;
    }
}

} // namespace ostrella
