#include "Views/Format/ViewportDrop.h"

#include <QMimeDatabase>
#include <QMimeType>

#include <fmt/format.h>

#include <algorithm>

namespace ostrella::ViewportFormat {

namespace fs = std::filesystem;

namespace {

/// Extension of a name in small letters, without the point.
QString extensionOf(const std::string& name) {
    const std::string extension = fs::path(name).extension().string();
    return QString::fromStdString(extension).mid(1).toLower();
}

bool isSTL(const fs::path& file) {
    return extensionOf(file.filename().string()) == QLatin1String("stl");
}

/// The type of files with this extension; nothing for one that the system does not know.
std::optional<QMimeType> typeOf(const QMimeDatabase& types, const QString& extension) {
    const QMimeType type =
        types.mimeTypeForFile(QLatin1String("file.") + extension, QMimeDatabase::MatchExtension);
    if (!type.isValid() || type.isDefault()) {
        return std::nullopt;
    }
    return type;
}

std::string ignoredReason(const DropOutcome& outcome) {
    return std::any_of(outcome.ignored.begin(), outcome.ignored.end(), isSTL)
               ? "only one .stl file loads at a time"
               : "only .stl files can be loaded";
}

} // namespace

DropKind dropKind(const std::optional<std::string>& suggestedName,
    const std::vector<std::string>& typeIdentifiers) {
    const QMimeDatabase types;
    if (const auto model = typeOf(types, QStringLiteral("stl"))) {
        for (const std::string& identifier : typeIdentifiers) {
            if (types.mimeTypeForName(QString::fromStdString(identifier)).inherits(model->name())) {
                return DropKind::stl;
            }
        }
    }
    if (!suggestedName) {
        return DropKind::unknown;
    }
    const QString extension = extensionOf(*suggestedName);
    if (extension == QLatin1String("stl")) {
        return DropKind::stl;
    }
    if (extension.isEmpty()) {
        return DropKind::unknown;
    }
    return typeOf(types, extension) ? DropKind::other : DropKind::unknown;
}

DropPreview previewOf(const std::vector<DropKind>& kinds) {
    const bool isHopeless = std::all_of(
        kinds.begin(), kinds.end(), [](DropKind kind) { return kind == DropKind::other; });
    return isHopeless ? DropPreview::refuse() : DropPreview::pending();
}

DropOutcome::DropOutcome(const std::vector<fs::path>& urls) {
    for (const fs::path& url : urls) {
        if (!stl && isSTL(url)) {
            stl = url;
        } else {
            ignored.push_back(url);
        }
    }
}

DropPreview DropOutcome::preview() const {
    if (stl) {
        return DropPreview::accept(stl->filename().string());
    }
    return ignored.empty() ? DropPreview::pending() : DropPreview::refuse();
}

std::optional<std::string> ignoredNotice(const DropOutcome& outcome) {
    if (outcome.ignored.empty()) {
        return std::nullopt;
    }
    const std::string subject =
        outcome.ignored.size() == 1
            ? outcome.ignored.front().filename().string()
            : fmt::format("{} {}files", outcome.ignored.size(), outcome.stl ? "other " : "");
    return fmt::format("Ignored {} · {}", subject, ignoredReason(outcome));
}

std::optional<std::string> ignoredLogLine(const DropOutcome& outcome, std::size_t maxNames) {
    if (outcome.ignored.empty()) {
        return std::nullopt;
    }
    std::string names;
    const std::size_t named = std::min(maxNames, outcome.ignored.size());
    for (std::size_t i = 0; i < named; ++i) {
        names += (i > 0 ? ", " : "") + outcome.ignored[i].filename().string();
    }
    if (named < outcome.ignored.size()) {
        names += fmt::format(" and {} more", outcome.ignored.size() - named);
    }
    return fmt::format("Ignored {} · {}", names, ignoredReason(outcome));
}

std::string dropText(const DropPreview& preview) {
    if (preview.kind == DropPreview::Kind::refuse) {
        return "Only .stl files can be loaded";
    }
    if (preview.kind == DropPreview::Kind::accept && !preview.fileName.empty()) {
        return fmt::format("Drop to load {}", preview.fileName);
    }
    return "Drop an STL to load";
}

std::string_view dropSymbol(const DropPreview& preview) {
    return preview.kind == DropPreview::Kind::refuse ? "nosign" : "arrow.down.doc";
}

} // namespace ostrella::ViewportFormat
