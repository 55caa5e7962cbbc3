#pragma once

#include "Models/LargeBuffer.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>

namespace ostrella {

/// The text of a legacy VTK file, made ready to be scanned: it is UTF-8, all white space in it is
/// ASCII, and behind its end there is a blank and then bytes that are neither blank nor part of a
/// number, so that a scanner need not ask for the end at each step. Move-only.
class VTKText {
public:
    /// Bytes behind end() that may be read: a blank, then NUL.
    static constexpr std::size_t guard = 32;

    /// Reads the whole file. Throws FileError, for bytes that are no UTF-8 and for lack of memory,
    /// too.
    static VTKText read(const std::filesystem::path& url);

    /// A copy of `bytes`; nothing if they are no UTF-8.
    static std::optional<VTKText> of(std::string_view bytes);

    const char* begin() const { return buffer_.begin(); }
    const char* end() const { return buffer_.begin() + size_; }

    /// Gives the memory back; the text must not be looked at afterwards.
    void release() { *this = VTKText(0); }

private:
    explicit VTKText(std::size_t size) : buffer_(size + guard), size_(size) {}

    /// Sets the guard and makes all white space ASCII; false if the bytes are no UTF-8.
    bool prepare();

    LargeBuffer<char> buffer_;
    std::size_t size_ = 0;
};

} // namespace ostrella
