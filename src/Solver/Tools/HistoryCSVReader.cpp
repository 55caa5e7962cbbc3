#include "Solver/Tools/HistoryCSVReader.h"

#include "Solver/Tools/TextTrimming.h"

#include <fast_float/fast_float.h>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <locale.h>
#ifdef __APPLE__
#include <xlocale.h>
#endif

namespace ostrella::HistoryCSVReader {

namespace {

constexpr std::string_view iterationName = "Inner_Iter";
constexpr std::array<std::string_view, 10> coefficientNames{
    "CL", "CD", "CSF", "CMx", "CMy", "CMz", "CFx", "CFy", "CFz", "CEff"};

/// What a column is for.
struct Column {
    enum class Role { ignored, iteration, residual, coefficient };

    Role role = Role::ignored;
    SeriesName label;
};

/// The columns of a file, and where its pitching moment comes from.
struct Header {
    std::vector<Column> columns;
    bool hasIteration = false;
    std::optional<std::size_t> pitchColumn;
    double pitchSign = 1;
    SeriesName pitchLabel = "Cm";

    std::size_t count(Column::Role role) const {
        return static_cast<std::size_t>(std::count_if(columns.begin(), columns.end(),
            [role](const Column& column) { return column.role == role; }));
    }
};

/// Lines between line feeds and carriage returns, without the empty ones.
class Lines {
public:
    explicit Lines(std::string_view text) : rest_(text) {}

    std::optional<std::string_view> next() {
        while (!segment_.empty() || !rest_.empty()) {
            if (segment_.empty()) {
                segment_ = taken(rest_, '\n');
            }
            if (const std::string_view line = taken(segment_, '\r'); !line.empty()) {
                return line;
            }
        }
        return std::nullopt;
    }

private:
    /// Cuts `text` behind the first `end`, and returns what stood before it.
    static std::string_view taken(std::string_view& text, char end) {
        const std::string_view front = text.substr(0, text.find(end));
        text.remove_prefix(std::min(front.size() + 1, text.size()));
        return front;
    }

    std::string_view rest_;
    std::string_view segment_;
};

/// A field without the white space and the one pair of quotes around it.
std::string_view cleaned(std::string_view field) {
    field = trimmedWhiteSpace(field);
    if (field.starts_with('"')) {
        field.remove_prefix(1);
    }
    if (field.ends_with('"')) {
        field.remove_suffix(1);
    }
    return trimmedWhiteSpace(field);
}

/// The number that a word spells as a whole, as strtod reads it with a point as decimal mark: the
/// slow road for what the fast parser refuses.
std::optional<double> parseDouble(std::string_view word) {
    if (word.empty()) {
        return std::nullopt;
    }
    static const locale_t plainLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    const std::string terminated(word);
    char* end = nullptr;
    const double value = strtod_l(terminated.c_str(), &end, plainLocale);
    return end == terminated.c_str() + terminated.size() ? std::optional(value) : std::nullopt;
}

/// An integer, or the whole part of a number in the integers' range.
std::optional<std::int64_t> parseInt(std::string_view word) {
    const bool hasPlus = word.size() > 1 && word[0] == '+' && word[1] != '-';
    const char* const start = word.data() + (hasPlus ? 1 : 0);
    const char* const end = word.data() + word.size();
    std::int64_t whole = 0;
    const auto [stop, error] = std::from_chars(start, end, whole);
    if (error == std::errc() && stop == end) {
        return whole;
    }
    constexpr double limit = 9223372036854775808.0; // 2^63
    const auto number = parseDouble(word);
    // True for a NaN too.
    if (!number || !(*number >= -limit && *number < limit)) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(*number);
}

Column columnNamed(std::string_view name) {
    constexpr std::string_view residualHead = "rms[";
    if (name == iterationName) {
        return {Column::Role::iteration, {}};
    }
    if (name.starts_with(residualHead) && name.ends_with(']')) {
        return {Column::Role::residual,
            name.substr(residualHead.size(), name.size() - residualHead.size() - 1)};
    }
    if (std::find(coefficientNames.begin(), coefficientNames.end(), name) !=
        coefficientNames.end()) {
        return {Column::Role::coefficient, name};
    }
    return {};
}

Header readHeader(std::string_view line, std::optional<int> dimensions) {
    Header header;
    const bool isPlane = dimensions == 2;
    const SeriesName pitchSource = isPlane ? "CMz" : "CMy";
    header.pitchSign = isPlane ? -1 : 1;
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = line.find(',');
        const Column column = columnNamed(cleaned(line.substr(0, end)));
        if (column.role == Column::Role::iteration) {
            // The last of several counts.
            for (Column& other : header.columns) {
                if (other.role == Column::Role::iteration) {
                    other.role = Column::Role::ignored;
                }
            }
            header.hasIteration = true;
        }
        if (column.role == Column::Role::coefficient && column.label == pitchSource &&
            !header.pitchColumn) {
            header.pitchColumn = header.columns.size();
        }
        header.columns.push_back(column);
        line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
    }
    return header;
}

/// Goes through the fields of one line. A plain number between blanks and commas, nearly every
/// field there is, is found and read in one step; anything else takes the slow road.
class Fields {
public:
    explicit Fields(std::string_view line) : at_(line.data()), end_(line.data() + line.size()) {}

    /// False once the line has no field left.
    bool available() const { return at_ != nullptr; }

    void skip() { take(); }

    /// Not a number where the field spells none.
    double number() {
        double value = 0;
        const char* const start = afterBlanks(at_);
        const auto [stop, error] = fast_float::from_chars(start, end_, value);
        if (error == std::errc() && passTo(afterBlanks(stop))) {
            return value;
        }
        return parseDouble(cleaned(take())).value_or(std::numeric_limits<double>::quiet_NaN());
    }

    std::optional<std::int64_t> integer() {
        std::int64_t value = 0;
        const char* const start = afterBlanks(at_);
        const auto [stop, error] = std::from_chars(start, end_, value);
        if (error == std::errc() && passTo(afterBlanks(stop))) {
            return value;
        }
        return parseInt(cleaned(take()));
    }

private:
    const char* afterBlanks(const char* place) const {
        // Eight characters at a time: how many blanks there are cannot be foreseen.
        constexpr std::uint64_t eightBlanks = 0x2020202020202020U;
        while (end_ - place >= 8) {
            std::uint64_t word = 0;
            std::memcpy(&word, place, sizeof word);
            if (const std::uint64_t others = word ^ eightBlanks; others != 0) {
                return place + std::countr_zero(others) / 8;
            }
            place += 8;
        }
        while (place != end_ && *place == ' ') {
            ++place;
        }
        return place;
    }

    /// Moves behind `place` if the field ends there.
    bool passTo(const char* place) {
        if (place == end_) {
            at_ = nullptr;
            return true;
        }
        if (*place != ',') {
            return false;
        }
        at_ = place + 1;
        return true;
    }

    /// The field as it stands; moves on to the next.
    std::string_view take() {
        const std::string_view rest(at_, static_cast<std::size_t>(end_ - at_));
        const std::string_view field = rest.substr(0, rest.find(','));
        passTo(at_ + field.size());
        return field;
    }

    /// Null behind the last field.
    const char* at_;
    const char* end_;
};

/// Appends the points of one line.
void readRow(std::string_view line, const Header& header, ParseResult& into) {
    const std::size_t residualsBefore = into.residuals.size();
    const std::size_t coefficientsBefore = into.coefficients.size();
    std::optional<std::int64_t> iteration;
    std::optional<double> pitch;

    Fields fields(line);
    for (std::size_t i = 0; i < header.columns.size() && fields.available(); ++i) {
        const Column& column = header.columns[i];
        if (column.role == Column::Role::ignored) {
            fields.skip();
        } else if (column.role == Column::Role::iteration) {
            iteration = fields.integer();
            if (!iteration) {
                break;
            }
        } else if (const double value = fields.number(); std::isfinite(value)) {
            const bool isResidual = column.role == Column::Role::residual;
            (isResidual ? into.residuals : into.coefficients).push_back({column.label, 0, value});
            if (i == header.pitchColumn) {
                pitch = value;
            }
        }
    }
    if (!iteration) {
        into.residuals.resize(residualsBefore);
        into.coefficients.resize(coefficientsBefore);
        return;
    }
    if (pitch) {
        into.coefficients.push_back({header.pitchLabel, 0, *pitch * header.pitchSign});
    }
    // The iteration may stand anywhere in the line.
    for (std::size_t i = residualsBefore; i < into.residuals.size(); ++i) {
        into.residuals[i].iter = *iteration;
    }
    for (std::size_t i = coefficientsBefore; i < into.coefficients.size(); ++i) {
        into.coefficients[i].iter = *iteration;
    }
}

} // namespace

ParseResult parse(std::string_view text, std::optional<int> dimensions) {
    std::size_t lineCount = 0;
    for (Lines lines(text); lines.next();) {
        ++lineCount;
    }
    if (lineCount < 2) {
        return {};
    }
    Lines lines(text);
    const Header header = readHeader(*lines.next(), dimensions);
    if (!header.hasIteration) {
        return {};
    }
    ParseResult result;
    for (const Column& column : header.columns) {
        if (column.role == Column::Role::residual) {
            result.residualLabels.push_back(column.label.string());
        } else if (column.role == Column::Role::coefficient) {
            result.coefficientLabels.push_back(column.label.string());
        }
    }
    if (header.pitchColumn) {
        result.coefficientLabels.push_back(header.pitchLabel.string());
    }
    // A point takes a character at least, so that no header can ask for more than the text can
    // hold.
    const auto capacity = [&](std::size_t series) {
        return std::min((lineCount - 1) * series, text.size());
    };
    result.residuals.reserve(capacity(result.residualLabels.size()));
    result.coefficients.reserve(capacity(result.coefficientLabels.size()));
    while (const auto line = lines.next()) {
        readRow(*line, header, result);
    }
    return result;
}

} // namespace ostrella::HistoryCSVReader
