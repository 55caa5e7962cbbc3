#pragma once

#include "Views/Format/ReplaceQuestion.h"

#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace ostrella {

/// Asks the user for files and folders. It knows what is to be asked and who waits for the answer;
/// the window shows the desktop's panel. One panel at a time: a new question ends the one before
/// without an answer. Main thread only.
class FilePanels : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the window")
    /// The panel on show, or none.
    Q_PROPERTY(Kind kind READ kind NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    /// What the panel says above its list; may be empty.
    Q_PROPERTY(QString message READ message NOTIFY changed)
    /// Of its accepting button; may be empty, for the desktop's own word.
    Q_PROPERTY(QString prompt READ prompt NOTIFY changed)
    /// Where the panel begins: the folder of the last choice, at first the user's own.
    Q_PROPERTY(QUrl folder READ folder NOTIFY changed)
    Q_PROPERTY(QString suggestedName READ suggestedName NOTIFY changed)

public:
    // QML wants the names of enumerators with a capital.
    enum class Kind { None, Model, Folder, Picture };
    Q_ENUM(Kind)

    /// Nothing if the user thought better of it.
    using Answer = std::function<void(const std::optional<std::filesystem::path>&)>;

    /// Puts a question to the user, and is told then whether the file may be replaced.
    using AskToReplace =
        std::function<void(const ReplaceQuestion&, std::function<void(bool mayReplace)>)>;

    explicit FilePanels(AskToReplace askToReplace, QObject* parent = nullptr);

    void askForModel(Answer answer);
    void askForExportFolder(Answer answer);
    /// A chosen name that does not end in ".png" gets that ending.
    void askForPicture(const std::string& suggestedName, Answer answer);

    Kind kind() const { return kind_; }
    QString title() const;
    QString message() const;
    QString prompt() const;
    const QUrl& folder() const { return folder_; }
    QString suggestedName() const { return suggestedName_; }

    /// The user has chosen. What is no file of this machine is no choice. A file to be written that
    /// exists already is asked about unless the panel has done so; if it is to stay, the panel
    /// comes again with its name.
    Q_INVOKABLE void accept(const QUrl& place, bool hasPanelAsked = true);
    /// Whether it is the desktop's own panel that a file dialog has shown, which asks before it
    /// lets a file be replaced; the one that the toolkit draws itself does not.
    Q_INVOKABLE static bool isDesktops(const QObject* dialog);
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void changed();

private:
    void ask(Kind kind, Answer answer, const std::string& suggestedName = {});
    void end(const std::optional<std::filesystem::path>& place);
    void answerToReplace(int question, const std::filesystem::path& file, bool mayReplace);

    AskToReplace askToReplace_;
    Kind kind_ = Kind::None;
    QUrl folder_;
    QString suggestedName_;
    Answer answer_;
    int question_ = 0; ///< counts what has been asked
};

} // namespace ostrella
