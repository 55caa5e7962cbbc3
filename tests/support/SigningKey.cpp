#include "support/SigningKey.h"

#include <QByteArray>

#include <gtest/gtest.h>
#include <sodium.h>

namespace ostrella::test {

namespace {

template <std::size_t size>
std::string base64(const std::array<unsigned char, size>& bytes) {
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), size).toBase64().toStdString();
}

} // namespace

SigningKey::SigningKey() {
    static_assert(crypto_sign_SECRETKEYBYTES == 64);
    std::array<unsigned char, crypto_sign_PUBLICKEYBYTES> publicKey{};
    EXPECT_GE(sodium_init(), 0);
    EXPECT_EQ(0, crypto_sign_keypair(publicKey.data(), secretKey_.data()));
    publicKey_ = base64(publicKey);
}

std::string SigningKey::sign(std::string_view bytes) const {
    std::array<unsigned char, crypto_sign_BYTES> signature{};
    EXPECT_EQ(0,
        crypto_sign_detached(signature.data(), nullptr,
            reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), secretKey_.data()));
    return base64(signature);
}

} // namespace ostrella::test
