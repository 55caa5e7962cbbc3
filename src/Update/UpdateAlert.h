#pragma once

#include <functional>
#include <string>

namespace ostrella {

/// A question with two answers.
struct UpdateAlert {
    std::string message;
    std::string text;
    std::string firstButton;
    std::string secondButton;

    bool operator==(const UpdateAlert&) const = default;
};

/// Shows a question over everything else and later hands over the answer, on the main thread: true
/// for the first button.
using AskUser =
    std::function<void(const UpdateAlert& alert, std::function<void(bool first)> reply)>;

} // namespace ostrella
