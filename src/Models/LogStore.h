#pragma once

#include "Models/Clock.h"
#include "Models/Vector.h"

#include <QObject>
#include <QUuid>

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella {

struct PlatformWords;

/// The one running log of the application. Main thread only. It grows without limit and lives as
/// long as the process; lines are never edited.
class LogStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(qsizetype count READ count NOTIFY linesChanged)

public:
    struct Line {
        /// Severity, or origin for the output of the child programs.
        enum class Level { info, ok, warn, error, su2 };

        QUuid id;
        std::string text;
        Level level = Level::info;
        Date date;

        bool operator==(const Line&) const = default;

        static std::string_view rawValue(Level level);
        static std::optional<Level> levelFromRawValue(std::string_view raw);
    };
    using Level = Line::Level;

    /// What the first line tells of the machine.
    struct BootFacts {
        /// The application's version; absent reads as "dev".
        std::optional<std::string> version;
        int systemMajor = 0;
        int systemMinor = 0;
        /// "OpenGL", "Vulkan", "Metal 3" …, or the words for no device.
        std::string graphicsLabel;
    };

    explicit LogStore(const Clock& clock = Clock::system(), std::vector<Line> lines = {},
        QObject* parent = nullptr);

    const std::deque<Line>& lines() const { return lines_; }
    qsizetype count() const { return static_cast<qsizetype>(lines_.size()); }

    /// Adds a line with a fresh identity and the present date.
    void append(std::string text, Level level);

    /// The two lines that a log begins with.
    static std::vector<Line> bootLines(
        const BootFacts& facts, const PlatformWords& words, Date date);

    /// Digits in groups of three joined by an ordinary space; for the log's own standard lines.
    static std::string grouped(std::int64_t n);

    /// Reports a loaded model; the extent is in metres.
    static std::string loadedLine(std::string_view fileName, std::int64_t facets, Vec3 extent);

    /// Warns about an open surface.
    static std::string openEdgesLine(std::int64_t count);

Q_SIGNALS:
    /// After each append.
    void linesChanged();

private:
    const Clock& clock_;
    std::deque<Line> lines_;
};

} // namespace ostrella
