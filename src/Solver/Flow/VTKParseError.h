#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace ostrella {

/// What is wrong with a legacy VTK file; what() is the text that the log shows.
class VTKParseError final : public std::exception {
public:
    enum class Kind { malformed, missingScalar, missingVector, notVTKLegacy };

    static VTKParseError malformed(std::string_view payload);
    static VTKParseError missingScalar(std::string_view name);
    static VTKParseError missingVector(std::string_view name);
    static VTKParseError notVTKLegacy();

    Kind kind() const noexcept { return kind_; }
    /// What is malformed, or the name of the missing field.
    const std::string& payload() const noexcept { return payload_; }
    const char* what() const noexcept override { return text_.c_str(); }

private:
    VTKParseError(Kind kind, std::string_view payload, std::string text);

    Kind kind_;
    std::string payload_;
    std::string text_;
};

} // namespace ostrella
