#include "Views/Format/UpdateFormat.h"

#include "Views/Format/NotesText.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <iterator>

namespace ostrella::UpdateFormat {

namespace {

using Stage = UpdateSession::Stage;

struct Unit {
    std::string_view name;
    double bytes;
    int decimals;
};

constexpr std::array units{
    Unit{"B", 1, 0},
    Unit{"kB", 1e3, 0},
    Unit{"MB", 1e6, 1},
    Unit{"GB", 1e9, 1},
};

/// The smallest unit in which fewer than a thousand are shown.
const Unit& unitOf(std::int64_t bytes) {
    const auto* fitting = std::find_if(units.begin(), units.end() - 1, [bytes](const Unit& unit) {
        const double step = unit.bytes * std::pow(10, -unit.decimals);
        return static_cast<double>(bytes) + step / 2 < 1000 * unit.bytes;
    });
    return *fitting;
}

std::string inUnit(std::int64_t bytes, const Unit& unit) {
    return fmt::format("{:.{}f} {}",
        static_cast<double>(std::max<std::int64_t>(bytes, 0)) / unit.bytes, unit.decimals,
        unit.name);
}

} // namespace

std::string version(const AppcastItem& item) {
    constexpr std::size_t most = 40;
    std::string text = NotesText::plain(
        item.displayVersionString.empty() ? item.version : item.displayVersionString, most);
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\t'; }, ' ');
    return text;
}

std::string title(const UpdateSession& session) {
    switch (session.stage) {
    case Stage::idle:
        return {};
    case Stage::checking:
        return "Checking for updates…";
    case Stage::upToDate:
        return "Ostrella is up to date";
    case Stage::found:
    case Stage::noticeOnly:
        return "There is a new version of Ostrella";
    case Stage::downloading:
        return fmt::format("Downloading Ostrella {}…", version(session.item));
    case Stage::preparing:
        return fmt::format("Preparing Ostrella {}…", version(session.item));
    case Stage::ready:
        return fmt::format("Ostrella {} is ready to install", version(session.item));
    case Stage::failed:
        return "Ostrella could not be updated";
    }
    return {};
}

std::string detail(const UpdateSession& session, std::string_view ownVersion) {
    std::string offer = fmt::format(
        "Ostrella {} is available. You have version {}.", version(session.item), ownVersion);
    switch (session.stage) {
    case Stage::idle:
    case Stage::checking:
    case Stage::downloading:
        return {};
    case Stage::upToDate:
        return fmt::format("Version {} is the newest there is.", ownVersion);
    case Stage::found:
        return offer;
    case Stage::noticeOnly:
        return offer + " " +
               (session.text.empty() ? "This copy is kept up to date by your system's packages."
                                     : session.text);
    case Stage::preparing:
        return "The download is checked and unpacked.";
    case Stage::ready:
        return "Ostrella restarts to install the update. Choose Later to keep working; the update "
               "installs when you quit.";
    case Stage::failed:
        return session.text.empty() ? "The log has the reason." : session.text;
    }
    return {};
}

std::string_view symbol(Stage stage) {
    switch (stage) {
    case Stage::upToDate:
        return "checkmark";
    case Stage::failed:
        return "exclamationmark.triangle";
    default:
        return {};
    }
}

bool isBusy(const UpdateSession& session) {
    switch (session.stage) {
    case Stage::checking:
    case Stage::preparing:
        return true;
    case Stage::downloading:
        return !fraction(session.received, session.expected);
    default:
        return false;
    }
}

bool showsProgress(Stage stage) {
    return stage == Stage::downloading || stage == Stage::preparing;
}

bool showsNotes(Stage stage) {
    return stage == Stage::found || stage == Stage::noticeOnly || stage == Stage::ready ||
           showsProgress(stage);
}

std::vector<Button> buttons(Stage stage) {
    switch (stage) {
    case Stage::idle:
        return {};
    case Stage::checking:
    case Stage::downloading:
    case Stage::preparing:
        return {{"Cancel", Answer::cancel}};
    case Stage::upToDate:
    case Stage::noticeOnly:
    case Stage::failed:
        return {{"OK", Answer::acknowledge, true}};
    case Stage::found:
        return {{"Skip This Version", Answer::skipVersion, false, true},
            {"Remind Me Later", Answer::remindLater}, {"Install Update", Answer::install, true}};
    case Stage::ready:
        return {{"Later", Answer::remindLater},
            {"Install and Restart", Answer::installAndRestart, true}};
    }
    return {};
}

std::optional<std::size_t> firstButton(const UpdateSession& session) {
    if (session.stage == Stage::checking || showsProgress(session.stage)) {
        return std::nullopt;
    }
    const bool asked = session.stage == Stage::found && session.userInitiated;
    const auto wanted = asked ? std::optional(Answer::install) : closing(session.stage);
    const auto all = buttons(session.stage);
    const auto found = std::find_if(
        all.begin(), all.end(), [wanted](const Button& button) { return button.answer == wanted; });
    return found == all.end()
               ? std::nullopt
               : std::optional(static_cast<std::size_t>(std::distance(all.begin(), found)));
}

std::optional<Answer> closing(Stage stage) {
    switch (stage) {
    case Stage::idle:
        return std::nullopt;
    case Stage::checking:
    case Stage::downloading:
    case Stage::preparing:
        return Answer::cancel;
    case Stage::found:
    case Stage::ready:
        return Answer::remindLater;
    case Stage::upToDate:
    case Stage::noticeOnly:
    case Stage::failed:
        return Answer::acknowledge;
    }
    return std::nullopt;
}

std::string size(std::int64_t bytes) {
    return inUnit(bytes, unitOf(bytes));
}

std::string progress(std::int64_t received, std::int64_t expected) {
    if (expected <= 0 || received > expected) {
        return size(received);
    }
    const Unit& unit = unitOf(expected);
    return fmt::format("{} of {}", inUnit(received, unit), inUnit(expected, unit));
}

std::optional<double> fraction(std::int64_t received, std::int64_t expected) {
    if (expected <= 0) {
        return std::nullopt;
    }
    return std::clamp(static_cast<double>(received) / static_cast<double>(expected), 0.0, 1.0);
}

std::string notes(std::string_view plainOrHTML) {
    return NotesText::plain(plainOrHTML, mostNotes);
}

bool mayOpen(std::string_view address) {
    constexpr std::string_view scheme = "https://";
    if (address.size() <= scheme.size()) {
        return false;
    }
    for (std::size_t i = 0; i < scheme.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(address[i])) != scheme[i]) {
            return false;
        }
    }
    return std::none_of(address.begin(), address.end(),
        [](char c) { return static_cast<unsigned char>(c) <= ' ' || c == '\x7f'; });
}

} // namespace ostrella::UpdateFormat
