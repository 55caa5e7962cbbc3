#include "Views/Chrome/FilePanels.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace ostrella {

FilePanels::FilePanels(AskToReplace askToReplace, QObject* parent)
    : QObject(parent),
      askToReplace_(std::move(askToReplace)),
      folder_(QUrl::fromLocalFile(QDir::homePath())) {}

void FilePanels::askForModel(Answer answer) {
    ask(Kind::Model, std::move(answer));
}

void FilePanels::askForExportFolder(Answer answer) {
    ask(Kind::Folder, std::move(answer));
}

void FilePanels::askForPicture(const std::string& suggestedName, Answer answer) {
    ask(Kind::Picture, std::move(answer), suggestedName);
}

void FilePanels::ask(Kind kind, Answer answer, const std::string& suggestedName) {
    dismiss();
    kind_ = kind;
    ++question_;
    suggestedName_ = QString::fromStdString(suggestedName);
    answer_ = std::move(answer);
    Q_EMIT changed();
}

QString FilePanels::title() const {
    switch (kind_) {
    case Kind::None:
        return {};
    case Kind::Model:
        return QStringLiteral("Load STL");
    case Kind::Folder:
        return QStringLiteral("Export Results");
    case Kind::Picture:
        return QStringLiteral("Save Image");
    }
    return {};
}

QString FilePanels::message() const {
    return kind_ == Kind::Folder ? QStringLiteral("Choose a folder for the result files.")
                                 : QString();
}

QString FilePanels::prompt() const {
    return kind_ == Kind::Folder ? QStringLiteral("Export") : QString();
}

void FilePanels::accept(const QUrl& place, bool hasPanelAsked) {
    if (!place.isLocalFile()) {
        dismiss();
        return;
    }
    QString file = place.toLocalFile();
    if (kind_ == Kind::Picture && !file.endsWith(QLatin1String(".png"), Qt::CaseInsensitive)) {
        file += QLatin1String(".png");
    }
    folder_ = kind_ == Kind::Folder ? place : QUrl::fromLocalFile(QFileInfo(file).absolutePath());
    const std::filesystem::path path(file.toStdU16String());
    const auto question =
        kind_ == Kind::Picture ? ReplaceQuestion::make(path, hasPanelAsked) : std::nullopt;
    if (!question) {
        end(path);
        return;
    }
    askToReplace_(*question, [this, path, number = question_](
                                 bool mayReplace) { answerToReplace(number, path, mayReplace); });
}

void FilePanels::answerToReplace(int question, const std::filesystem::path& file, bool mayReplace) {
    // The one who waited may have been turned away meanwhile.
    if (kind_ == Kind::None || question != question_) {
        return;
    }
    if (mayReplace) {
        end(file);
        return;
    }
    suggestedName_ = QString::fromStdU16String(file.filename().u16string());
    Q_EMIT changed();
}

bool FilePanels::isDesktops(const QObject* dialog) {
    // The toolkit's own is a child of the dialog in the same window.
    const auto parts = dialog->findChildren<QObject*>();
    return std::none_of(parts.begin(), parts.end(),
        [](const QObject* part) { return part->inherits("QQuickPlatformFileDialog"); });
}

void FilePanels::dismiss() {
    end(std::nullopt);
}

void FilePanels::end(const std::optional<std::filesystem::path>& place) {
    // The answer may ask the next question.
    const Answer answer = std::exchange(answer_, {});
    if (std::exchange(kind_, Kind::None) != Kind::None) {
        suggestedName_.clear();
        Q_EMIT changed();
    }
    if (answer) {
        answer(place);
    }
}

} // namespace ostrella
