#pragma once

#include <array>
#include <string>
#include <string_view>

namespace ostrella::test {

/// An Ed25519 key of the maker of updates, fresh for each object.
class SigningKey {
public:
    SigningKey();

    /// 32 bytes in base64.
    const std::string& publicKey() const { return publicKey_; }
    /// The signature of these bytes, 64 bytes in base64.
    std::string sign(std::string_view bytes) const;

private:
    std::array<unsigned char, 64> secretKey_{};
    std::string publicKey_;
};

} // namespace ostrella::test
