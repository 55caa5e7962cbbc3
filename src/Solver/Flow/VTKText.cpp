#include "Solver/Flow/VTKText.h"

#include "Models/FileError.h"
#include "Models/OrdinaryFile.h"
#include "Models/UTF8.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <span>
#include <system_error>

namespace ostrella {

namespace {

/// Writes ASCII blanks over all other white space of valid `text`, byte for byte.
void blankOut(std::span<char> text) {
    for (std::size_t at = 0; at < text.size();) {
        if (static_cast<unsigned char>(text[at]) < 0x80) {
            ++at;
            continue;
        }
        const std::size_t size = UTF8::whiteSpace({text.data() + at, text.size() - at});
        std::memset(text.data() + at, ' ', size);
        at += std::max<std::size_t>(size, 1);
    }
}

[[noreturn]] void fail(const std::filesystem::path& url, std::errc reason) {
    throw FileError("Cannot read " + url.string(), url, std::make_error_code(reason));
}

} // namespace

VTKText VTKText::read(const std::filesystem::path& url) {
    const OrdinaryFile file(url);
    try {
        VTKText text(static_cast<std::size_t>(file.size()));
        text.size_ = file.read(std::as_writable_bytes(std::span(text.buffer_.data(), text.size_)));
        if (!text.prepare())
            fail(url, std::errc::illegal_byte_sequence);
        return text;
    } catch (const std::bad_alloc&) {
        fail(url, std::errc::not_enough_memory);
    }
}

std::optional<VTKText> VTKText::of(std::string_view bytes) {
    VTKText text(bytes.size());
    std::copy(bytes.begin(), bytes.end(), text.buffer_.begin());
    if (!text.prepare())
        return std::nullopt;
    return text;
}

bool VTKText::prepare() {
    char* const end = buffer_.data() + size_;
    std::memset(end, '\0', guard);
    *end = ' ';
    const std::string_view text(buffer_.data(), size_);
    if (UTF8::isASCII(text))
        return true;
    if (!UTF8::isValid(text))
        return false;
    blankOut({buffer_.data(), size_});
    return true;
}

} // namespace ostrella
