#pragma once

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

    explicit FilePanels(QObject* parent = nullptr);

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

    /// The user has chosen. What is no file of this machine is no choice.
    Q_INVOKABLE void accept(const QUrl& place);
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void changed();

private:
    void ask(Kind kind, Answer answer, const std::string& suggestedName = {});
    void end(const std::optional<std::filesystem::path>& place);

    Kind kind_ = Kind::None;
    QUrl folder_;
    QString suggestedName_;
    Answer answer_;
};

} // namespace ostrella
