#pragma once

#include "Views/Updates/UpdateWindow.h"
#include "Views/Updates/UpdateWindowModel.h"

#include <QObject>

#include <functional>
#include <string>

class QQmlEngine;
class QWindow;

namespace ostrella {

class AppcastUpdater;

/// Shows the sessions of an updater in a window beside the main one, and hands it the answers. It
/// goes before all that it is given. Main thread only.
class UpdateLink final : public QObject {
public:
    UpdateLink(AppcastUpdater& updater, QQmlEngine& engine, QWindow& mainWindow,
        std::string ownVersion, std::function<void(const std::string& address)> openAddress);

private:
    void answer(UpdateWindowModel::Answer answer);

    AppcastUpdater& updater_;
    UpdateWindowModel model_;
    UpdateWindow window_;
};

} // namespace ostrella
