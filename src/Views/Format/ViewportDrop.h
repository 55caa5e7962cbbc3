#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ostrella::ViewportFormat {

/// What a dragged item seems to be, before its file is known.
enum class DropKind { stl, other, unknown };

/// By what a drag offers: the item's name, and its MIME types. A file type that this system does
/// not know says nothing.
DropKind dropKind(const std::optional<std::string>& suggestedName,
    const std::vector<std::string>& typeIdentifiers);

/// What the overlay shows while a drag is over the viewport.
struct DropPreview {
    enum class Kind { accept, pending, refuse };

    Kind kind = Kind::pending;
    /// Of `accept`: the file that the drop will load; may be empty.
    std::string fileName;

    static DropPreview accept(std::string fileName) { return {Kind::accept, std::move(fileName)}; }
    static DropPreview pending() { return {}; }
    static DropPreview refuse() { return {Kind::refuse, {}}; }

    bool operator==(const DropPreview&) const = default;
};

/// What is shown as a drag comes in, by the kinds of its items: a refusal if it can hold no model.
DropPreview previewOf(const std::vector<DropKind>& kinds);

/// What a drop loads and what it leaves out.
struct DropOutcome {
    /// The first of the files that is an STL.
    std::optional<std::filesystem::path> stl;
    /// All the others, in their order.
    std::vector<std::filesystem::path> ignored;

    DropOutcome() = default;
    explicit DropOutcome(const std::vector<std::filesystem::path>& urls);

    DropPreview preview() const;

    bool operator==(const DropOutcome&) const = default;
};

/// Tells in the viewport what was left out; nothing if nothing was.
std::optional<std::string> ignoredNotice(const DropOutcome& outcome);

/// The same for the log, with the first `maxNames` names.
std::optional<std::string> ignoredLogLine(const DropOutcome& outcome, std::size_t maxNames);

/// The overlay's text and symbol.
std::string dropText(const DropPreview& preview);
std::string_view dropSymbol(const DropPreview& preview);

} // namespace ostrella::ViewportFormat
