#pragma once

#include "Update/UpdateSession.h"
#include "Views/Format/UpdateFormat.h"

#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <string>

namespace ostrella {

/// What the update window shows of a session and what its buttons answer. Main thread only.
class UpdateWindowModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(QString windowTitle READ windowTitle CONSTANT)
    /// There is something to tell.
    Q_PROPERTY(bool isShown READ isShown NOTIFY stageChanged)
    Q_PROPERTY(QString title READ title NOTIFY stageChanged)
    Q_PROPERTY(QString detail READ detail NOTIFY stageChanged)
    /// Of the sign before the title; may be empty.
    Q_PROPERTY(QString symbol READ symbol NOTIFY stageChanged)
    Q_PROPERTY(bool isFailure READ isFailure NOTIFY stageChanged)
    /// A bar stands in the place of title and detail.
    Q_PROPERTY(bool showsProgress READ showsProgress NOTIFY stageChanged)
    /// Something goes on of which it is not known how far it is.
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY progressChanged)
    /// From 0 to 1.
    Q_PROPERTY(qreal fraction READ fraction NOTIFY progressChanged)
    Q_PROPERTY(QString progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QString notesTitle READ notesTitle CONSTANT)
    /// Plain text; may be empty.
    Q_PROPERTY(QString notes READ notes NOTIFY stageChanged)
    /// Texts of links; empty where there is none.
    Q_PROPERTY(QString notesLink READ notesLink NOTIFY stageChanged)
    Q_PROPERTY(QString pageLink READ pageLink NOTIFY stageChanged)
    /// From the left: maps with `text`, `isPrimary` and `isApart`.
    Q_PROPERTY(QVariantList buttons READ buttons NOTIFY stageChanged)
    /// Which of them has the keyboard at first; -1 for none.
    Q_PROPERTY(int firstButton READ firstButton NOTIFY stageChanged)

public:
    using Answer = UpdateFormat::Answer;

    struct Surroundings {
        /// The running copy's version, as people read it.
        std::string ownVersion;
        std::function<void(Answer answer)> answer;
        /// Opens an address in the user's browser.
        std::function<void(const std::string& address)> openAddress;
    };

    explicit UpdateWindowModel(Surroundings surroundings, QObject* parent = nullptr);

    const UpdateSession& session() const { return session_; }
    /// At each change of the session.
    void setSession(const UpdateSession& session);

    QString windowTitle() const;
    bool isShown() const { return session_.stage != UpdateSession::Stage::idle; }
    QString title() const;
    QString detail() const;
    QString symbol() const;
    bool isFailure() const { return session_.stage == UpdateSession::Stage::failed; }
    bool showsProgress() const { return UpdateFormat::showsProgress(session_.stage); }
    bool isBusy() const { return UpdateFormat::isBusy(session_); }
    qreal fraction() const;
    QString progress() const;
    QString notesTitle() const;
    QString notes() const;
    QString notesLink() const;
    QString pageLink() const;
    QVariantList buttons() const;
    int firstButton() const;

    /// A button was pressed, counted from the left. One that is not there does nothing.
    Q_INVOKABLE void press(int index);
    /// The user closes the window.
    Q_INVOKABLE void close();
    Q_INVOKABLE void openNotes();
    Q_INVOKABLE void openPage();

Q_SIGNALS:
    /// The session has gone on to another stage; its bytes may have changed too.
    void stageChanged();
    void progressChanged();

private:
    Surroundings surroundings_;
    UpdateSession session_;
    /// Of the session's item.
    QString notes_;
};

} // namespace ostrella
