#include "Platform/AppBundle.h"

#include <QCoreApplication>
#ifdef __APPLE__
#include <QSettings>
#else
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#endif

#include <fstream>
#include <utility>

namespace ostrella {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view previewSolverName = "ostrella-preview-solver";

#ifdef __APPLE__
constexpr std::string_view toolsPlace = "Contents/MacOS";
constexpr std::string_view resourcesPlace = "Contents/Resources";
constexpr int levelsAboveProgram = 3;
#else
constexpr std::string_view toolsPlace = "libexec/ostrella";
constexpr std::string_view resourcesPlace = "share/ostrella";
constexpr int levelsAboveProgram = 2;
/// Bytes; what a package says of itself takes a few hundred.
constexpr qint64 largestInformation = 1 << 16;
#endif

} // namespace

AppBundle::AppBundle(fs::path root) : root_(std::move(root)) {}

AppBundle AppBundle::main() {
    fs::path place(QCoreApplication::applicationFilePath().toStdString());
    for (int i = 0; i < levelsAboveProgram; ++i) {
        place = place.parent_path();
    }
    return AppBundle(std::move(place));
}

fs::path AppBundle::toolsDirectory() const {
    return root_ / toolsPlace;
}

fs::path AppBundle::resourcesDirectory() const {
    return root_ / resourcesPlace;
}

std::optional<fs::path> AppBundle::resource(
    std::string_view name, std::string_view extension, std::string_view subdirectory) const {
    fs::path place = resourcesDirectory() / subdirectory / name;
    place += ".";
    place += extension;
    std::error_code error;
    if (!fs::is_regular_file(place, error)) {
        return std::nullopt;
    }
    return place;
}

bool AppBundle::solverIsStandIn() const {
    std::error_code error;
    const fs::path solver = fs::canonical(toolsDirectory() / "SU2_CFD", error);
    return !error && solver.filename() == previewSolverName;
}

std::optional<std::string> AppBundle::solverRelease() const {
    std::ifstream file(resourcesDirectory() / "su2" / "release.txt");
    std::string release;
    if (!(file >> release)) {
        return std::nullopt;
    }
    return release;
}

#ifdef __APPLE__
std::optional<InformationDictionary> AppBundle::information() const {
    const fs::path file = root_ / "Contents" / "Info.plist";
    std::error_code error;
    if (!fs::is_regular_file(file, error)) {
        return std::nullopt;
    }
    const QSettings list(QString::fromStdString(file.string()), QSettings::NativeFormat);
    InformationDictionary info;
    for (const QString& key : list.allKeys()) {
        if (const QVariant value = list.value(key); value.typeId() == QMetaType::QString) {
            info.emplace(key.toStdString(), value.toString().toStdString());
        }
    }
    return list.status() == QSettings::NoError ? std::optional(info) : std::nullopt;
}
#else
std::optional<InformationDictionary> AppBundle::information() const {
    const fs::path place = resourcesDirectory() / "Info.json";
    QFile file(QString::fromStdString(place.string()));
    std::error_code error;
    if (!fs::is_regular_file(place, error) || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray text = file.read(largestInformation + 1);
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (text.size() > largestInformation || !document.isObject()) {
        return std::nullopt;
    }
    InformationDictionary info;
    const QJsonObject object = document.object();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        const QJsonValue value = *entry;
        const std::string key = entry.key().toStdString();
        if (value.isString()) {
            info.emplace(key, value.toString().toStdString());
        } else if (value.isBool()) {
            info.emplace(key, value.toBool());
        } else if (value.isDouble()) {
            info.emplace(key, value.toDouble());
        }
    }
    return info;
}
#endif

std::string AppBundle::version() {
    return OSTRELLA_VERSION;
}

} // namespace ostrella
