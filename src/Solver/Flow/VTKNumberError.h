#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace ostrella {

/// A count or id in a legacy VTK file that no writer means: negative, or an id beyond 32 bits.
class VTKNumberError final : public std::exception {
public:
    /// "Malformed VTK: negative WHAT (-1) at token 7".
    static VTKNumberError negative(std::string_view what, std::int64_t number, std::size_t token);
    /// "Malformed VTK: point id beyond 32 bits (4294967296) at token 7".
    static VTKNumberError beyondBits(std::int64_t id, std::size_t token);

    const char* what() const noexcept override { return text_.c_str(); }

private:
    explicit VTKNumberError(std::string text);

    std::string text_;
};

} // namespace ostrella
