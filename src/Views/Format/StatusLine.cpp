#include "Views/Format/StatusLine.h"

#include "Models/NumberFormatting.h"
#include "Views/Format/Blanks.h"
#include "Views/Format/Ratio.h"

#include <QTextBoundaryFinder>

#include <fmt/format.h>

namespace ostrella {

namespace {

using NumberFormatting::fixed;
using NumberFormatting::grouped;

constexpr std::size_t failureLimit = 60;

bool isNewline(QChar character) {
    const char16_t unit = character.unicode();
    return (unit >= 0x0A && unit <= 0x0D) || unit == 0x85 || unit == 0x2028 || unit == 0x2029;
}

/// The first line that is not empty.
QStringView firstLine(QStringView text) {
    qsizetype begin = 0;
    while (begin < text.size() && isNewline(text[begin])) {
        ++begin;
    }
    qsizetype end = begin;
    while (end < text.size() && !isNewline(text[end])) {
        ++end;
    }
    return text.sliced(begin, end - begin);
}

/// The first `limit` grapheme clusters; all of `text` if it has no more.
QStringView firstCharacters(QStringView text, std::size_t limit) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    for (std::size_t i = 0; i < limit; ++i) {
        if (finder.toNextBoundary() < 0) {
            return text;
        }
    }
    return text.first(finder.position());
}

std::vector<StatusCounter> baseCounters(const StatusLine::Inputs& inputs) {
    if (inputs.cells) {
        return {{fmt::format("{} cells", grouped(*inputs.cells))}};
    }
    if (inputs.facets) {
        return {{fmt::format("{} facets", grouped(*inputs.facets))}};
    }
    return {};
}

std::string runningText(const StatusLine::Inputs& inputs) {
    switch (inputs.phase.kind) {
    case RunPhase::Kind::meshing:
        return "Meshing…";
    case RunPhase::Kind::solving:
        return inputs.iteration ? fmt::format("Solving · iter {} / {}", grouped(*inputs.iteration),
                                      grouped(inputs.maxIterations))
                                : "Solving…";
    default:
        return "Processing results…";
    }
}

std::string failedText(const std::string& message) {
    const std::string brief = StatusLine::shortMessage(message, failureLimit);
    return brief.empty() ? "Failed" : fmt::format("Failed · {}", brief);
}

StatusLine finishedLine(const StatusLine::Inputs& inputs) {
    const bool converged = inputs.phase.converged;
    StatusLine line{converged ? "Converged" : "Not converged",
        converged ? ChromeTone::ok : ChromeTone::warn, baseCounters(inputs)};
    if (!inputs.summary) {
        return line;
    }
    const RunSummary& summary = *inputs.summary;
    if (summary.iterations) {
        line.text += fmt::format(" · {} iter", grouped(*summary.iterations));
    }
    line.text += fmt::format(" · {} s", fixed(summary.elapsedSeconds, 1));
    if (summary.cl) {
        line.counters.push_back({fmt::format("CL {}", fixed(*summary.cl, 4)), true});
    }
    if (summary.cd) {
        line.counters.push_back({fmt::format("CD {}", fixed(*summary.cd, 4)), true});
    }
    if (const auto ratio = liftToDragText(summary)) {
        line.counters.push_back({fmt::format("CL/CD {}", *ratio), true});
    }
    return line;
}

} // namespace

std::string_view rawValue(ChromeTone tone) {
    switch (tone) {
    case ChromeTone::idle:
        return "idle";
    case ChromeTone::ok:
        return "ok";
    case ChromeTone::run:
        return "run";
    case ChromeTone::warn:
        return "warn";
    case ChromeTone::err:
        return "err";
    }
    return {};
}

StatusLine StatusLine::make(const Inputs& inputs) {
    switch (inputs.phase.kind) {
    case RunPhase::Kind::idle:
        // The count of facets is in the text, not among the counters.
        if (inputs.facets) {
            return {fmt::format("Ready · {} facets", grouped(*inputs.facets)), ChromeTone::ok, {}};
        }
        return {"Idle", ChromeTone::idle, {}};
    case RunPhase::Kind::meshing:
    case RunPhase::Kind::solving:
    case RunPhase::Kind::postProcessing:
        return {runningText(inputs), ChromeTone::run, baseCounters(inputs)};
    case RunPhase::Kind::cancelled:
        return {"Cancelled", ChromeTone::idle, baseCounters(inputs)};
    case RunPhase::Kind::failed:
        return {failedText(inputs.phase.message), ChromeTone::err, baseCounters(inputs)};
    case RunPhase::Kind::finished:
        return finishedLine(inputs);
    }
    return {};
}

std::string StatusLine::shortMessage(std::string_view message, std::size_t limit) {
    const QString whole = QString::fromUtf8(message.data(), static_cast<qsizetype>(message.size()));
    QStringView text = trimmed(firstLine(whole), isBlank);
    if (const qsizetype end = text.indexOf(QLatin1String(". ")); end >= 0) {
        text = text.first(end);
    }
    while (text.endsWith(QLatin1Char('.'))) {
        text.chop(1);
    }
    QStringView head = firstCharacters(text, limit);
    if (head.size() == text.size()) {
        return text.toString().toStdString();
    }
    if (const qsizetype blank = head.lastIndexOf(QLatin1Char(' ')); blank >= 0) {
        head = head.first(blank);
    }
    head = trimmed(
        head, [](QChar character) { return QStringView(u" ,;:\u00B7").contains(character); });
    return head.toString().toStdString() + "…";
}

} // namespace ostrella
