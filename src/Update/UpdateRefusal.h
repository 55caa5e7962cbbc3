#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace ostrella {

/// Why an update was not taken. what() is the line for the log: "Update refused · " and the reason.
class UpdateRefusal : public std::runtime_error {
public:
    static constexpr std::string_view prefix = "Update refused · ";

    /// `reason` is a whole sentence, such as "The update archive bears no signature."
    explicit UpdateRefusal(const std::string& reason)
        : std::runtime_error(std::string(prefix) + reason) {}
};

} // namespace ostrella
