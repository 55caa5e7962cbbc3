#pragma once

#include <filesystem>
#include <string_view>

namespace ostrella::UpdateSignature {

/// Returns only if the bytes of `file` bear this Ed25519 signature by the owner of the public key;
/// both are base64 (64 and 32 bytes). The file is mapped, not read into memory, and must not change
/// meanwhile. Throws UpdateRefusal otherwise, whatever it was that failed. Any thread.
void verify(const std::filesystem::path& file, std::string_view base64Signature,
    std::string_view base64PublicKey);

} // namespace ostrella::UpdateSignature
