#pragma once

#include "Models/Clock.h"
#include "Models/NotificationCenter.h"
#include "Models/Timers.h"
#include "Views/Chrome/FilePanels.h"
#include "Views/Chrome/StatusBarModel.h"
#include "Views/Chrome/WindowCommands.h"
#include "Views/Panel/BottomPanelModel.h"
#include "Views/SharedObjects.h"
#include "Views/Sidebar/RunFooterModel.h"
#include "Views/Sidebar/SidebarModel.h"
#include "Views/Viewport/ViewportModel.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace ostrella {

class PreferenceStore;
struct PlatformWords;

/// Everything that the main window shows and does, apart from how it looks: it owns the models of
/// the window's parts and answers the application's notifications. Main thread only.
class WindowModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(QString title READ title NOTIFY titleChanged)
    Q_PROPERTY(ostrella::WindowCommands* commands READ commands CONSTANT)
    Q_PROPERTY(ostrella::SidebarModel* sidebar READ sidebar CONSTANT)
    Q_PROPERTY(ostrella::RunFooterModel* footer READ footer CONSTANT)
    Q_PROPERTY(ostrella::ViewportModel* viewport READ viewport CONSTANT)
    Q_PROPERTY(ostrella::BottomPanelModel* panel READ panel CONSTANT)
    Q_PROPERTY(ostrella::StatusBarModel* statusBar READ statusBar CONSTANT)
    Q_PROPERTY(ostrella::FilePanels* files READ files CONSTANT)
    /// The warning or question on show; no title, neither.
    Q_PROPERTY(QString alertTitle READ alertTitle NOTIFY alertChanged)
    Q_PROPERTY(QString alertText READ alertText NOTIFY alertChanged)
    Q_PROPERTY(QString alertButton READ alertButton NOTIFY alertChanged)
    /// Of a question alone.
    Q_PROPERTY(QString alertSecondButton READ alertSecondButton NOTIFY alertChanged)

public:
    struct Surroundings {
        const PlatformWords& words;
        PreferenceStore& preferences;
        /// Parent of this process's run directories.
        std::filesystem::path temporaryDirectory;
        /// Opens an address in the user's browser.
        std::function<void(const std::string& address)> openAddress;
        std::function<void()> quit;
        /// Windows beside this one; the commands of those that are not there stay disabled.
        std::function<void()> showSettings = {};
        std::function<void()> showAbout = {};
        /// Without them there is no check for updates.
        std::function<void()> checkForUpdates = {};
        std::function<bool()> canCheckForUpdates = {};
        const Clock& clock = Clock::system();
        TimerService& timers = TimerService::system();
        StatusBarModel::MachineQueries machine = StatusBarModel::MachineQueries::system();
    };

    WindowModel(
        const SharedObjects& shared, const Surroundings& surroundings, QObject* parent = nullptr);
    ~WindowModel() override;

    QString title() const { return title_; }
    WindowCommands* commands() { return &commands_; }
    SidebarModel* sidebar() { return &sidebar_; }
    RunFooterModel* footer() { return &footer_; }
    ViewportModel* viewport() { return &viewport_; }
    BottomPanelModel* panel() { return &panel_; }
    StatusBarModel* statusBar() { return &statusBar_; }
    FilePanels* files() { return &files_; }
    QString alertTitle() const;
    QString alertText() const;
    QString alertButton() const;
    QString alertSecondButton() const;

    /// Shows a warning, after those that are still to be read.
    void showAlert(const std::string& title, const std::string& text);
    /// Asks a question, after what is still to be read. `answer` is told whether it was the first
    /// button that was pressed; the second one and Escape mean the same.
    void ask(const std::string& title, const std::string& text, const std::string& button,
        const std::string& secondButton, std::function<void(bool isFirst)> answer);
    /// The user has read the warning on show, or answered the question.
    Q_INVOKABLE void dismissAlert(bool isFirst = false);

Q_SIGNALS:
    void titleChanged();
    void alertChanged();

private:
    struct Alert {
        QString title;
        QString text;
        QString button;
        QString secondButton;
        std::function<void(bool isFirst)> answer;
    };

    void observe();
    void presentOpenPanel();
    void exportResults();
    void saveImage();
    void refreshTitle();

    SharedObjects shared_;
    Surroundings surroundings_;
    QString title_;
    FilePanels files_;
    BottomPanelModel panel_;
    WindowCommands commands_;
    SidebarModel sidebar_;
    RunFooterModel footer_;
    ViewportModel viewport_;
    StatusBarModel statusBar_;
    std::vector<Alert> alerts_;
    std::vector<NotificationCenter::Token> observers_;
};

} // namespace ostrella
