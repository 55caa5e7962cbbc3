#pragma once

#include <stdexcept>
#include <string>

namespace ostrella {

/// Why bytes are no STL model; what() is the text that the user reads.
class STLParseError : public std::runtime_error {
public:
    enum class Reason { invalidASCII, invalidBinary, empty };

    static STLParseError invalidASCII(const std::string& detail) {
        return {Reason::invalidASCII, "Invalid ASCII STL: " + detail};
    }
    static STLParseError invalidBinary(const std::string& detail) {
        return {Reason::invalidBinary, "Invalid binary STL: " + detail};
    }
    static STLParseError empty() { return {Reason::empty, "STL file is empty."}; }

    Reason reason() const { return reason_; }

private:
    STLParseError(Reason reason, const std::string& text)
        : std::runtime_error(text), reason_(reason) {}

    Reason reason_;
};

} // namespace ostrella
