#pragma once

#include "Update/UpdateSession.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella {

/// What the update window says and offers at each stage of a session.
namespace UpdateFormat {

/// What the user may answer.
enum class Answer { install, remindLater, skipVersion, cancel, acknowledge, installAndRestart };

struct Button {
    std::string text;
    Answer answer = Answer::acknowledge;
    /// The one that the return key presses.
    bool isPrimary = false;
    /// Stands apart from the others, at the left.
    bool isApart = false;

    bool operator==(const Button&) const = default;
};

inline constexpr std::string_view windowTitle = "Software Update";
inline constexpr std::string_view notesTitle = "What is new";
/// Of the link to notes that lie elsewhere.
inline constexpr std::string_view notesLink = "Read the release notes";
/// Of the link to a page about the release.
inline constexpr std::string_view pageLink = "Open the download page";

/// The version of a release as people read it: on one line, and cut where it is none that anybody
/// would read.
std::string version(const AppcastItem& item);

/// The headline; empty where there is nothing to tell.
std::string title(const UpdateSession& session);

/// The sentence under the headline; may be empty. `ownVersion` is the running copy's.
std::string detail(const UpdateSession& session, std::string_view ownVersion);

/// Name of the sign before the headline; may be empty.
std::string_view symbol(UpdateSession::Stage stage);

/// Something goes on of which it is not known how far it is.
bool isBusy(const UpdateSession& session);

/// A bar with headline and sizes stands in the place of headline and sentence.
bool showsProgress(UpdateSession::Stage stage);

/// What is new can be read, also while it is fetched.
bool showsNotes(UpdateSession::Stage stage);

/// From the left to the right.
std::vector<Button> buttons(UpdateSession::Stage stage);

/// Which of the buttons has the keyboard at first. None while something goes on, so that a key
/// pressed twice does not end what it began; nothing that installs unless the user asked for it,
/// and nothing that restarts.
std::optional<std::size_t> firstButton(const UpdateSession& session);

/// What closing the window means; nothing where there is none.
std::optional<Answer> closing(UpdateSession::Stage stage);

/// "12.3 MB", in units of a thousand, with one decimal from MB on.
std::string size(std::int64_t bytes);

/// "12.3 MB of 45.6 MB", both in the unit of the whole; the first alone where the whole is unknown
/// (0 or less) or smaller than what has come.
std::string progress(std::int64_t received, std::int64_t expected);

/// From 0 to 1; nothing where the whole is unknown.
std::optional<double> fraction(std::int64_t received, std::int64_t expected);

/// Notes as plain text in paragraphs: of HTML the text alone, lists by "•", nothing that would be
/// fetched or run. Cut after `mostNotes` bytes, with an ellipsis.
std::string notes(std::string_view plainOrHTML);

inline constexpr std::size_t mostNotes = 65536;

/// Whether an address of a feed may be opened in the user's browser: one of HTTPS, and nothing that
/// would start something else.
bool mayOpen(std::string_view address);

} // namespace UpdateFormat

} // namespace ostrella
