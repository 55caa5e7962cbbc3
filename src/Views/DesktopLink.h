#pragma once

#include "Platform/DesktopNotification.h"
#include "Platform/TaskBarProgress.h"
#include "Views/Chrome/RunAnnouncer.h"
#include "Views/DocumentEvents.h"
#include "Views/SharedObjects.h"

namespace ostrella {

class MainWindow;
class OstrellaApp;
class SingleInstance;

/// Ties the main window to the desktop around it: documents that come from outside, the note of a
/// run that has ended, and its progress. It goes before the window does. Main thread only.
class DesktopLink : public QObject {
public:
    DesktopLink(OstrellaApp& app, MainWindow& window, SingleInstance& instance);

private:
    DocumentEvents documents_;
    DesktopNotification note_;
    TaskBarProgress progress_;
    RunAnnouncer announcer_;
};

} // namespace ostrella
