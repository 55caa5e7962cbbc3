#include "Update/UpdateSignature.h"

#include "Platform/FileDescriptor.h"
#include "Update/UpdateRefusal.h"

#include <fmt/format.h>

#include <sodium.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <system_error>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

namespace ostrella::UpdateSignature {

namespace {

template <std::size_t size>
std::optional<std::array<unsigned char, size>> decoded(std::string_view base64) {
    std::array<unsigned char, size> bytes{};
    std::size_t length = 0;
    const int result = sodium_base642bin(bytes.data(), bytes.size(), base64.data(), base64.size(),
        " \t\r\n", &length, nullptr, sodium_base64_VARIANT_ORIGINAL);
    if (result != 0 || length != size) {
        return std::nullopt;
    }
    return bytes;
}

UpdateRefusal unreadable(int error) {
    return UpdateRefusal(fmt::format("The update archive cannot be read: {}.",
        std::error_code(error, std::generic_category()).message()));
}

/// The bytes of a file, in memory only where they are looked at.
class MappedFile {
public:
    explicit MappedFile(const std::filesystem::path& path)
        : file_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
        struct stat facts {};
        if (file_.get() < 0 || fstat(file_.get(), &facts) != 0) {
            throw unreadable(errno);
        }
        if (!S_ISREG(facts.st_mode)) {
            throw unreadable(S_ISDIR(facts.st_mode) ? EISDIR : ENOTSUP);
        }
        size_ = static_cast<std::size_t>(facts.st_size);
        if (size_ == 0) {
            return; // nothing can be mapped
        }
        void* const start = mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, file_.get(), 0);
        if (start == MAP_FAILED) {
            throw unreadable(errno);
        }
        start_ = start;
    }

    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    ~MappedFile() {
        if (start_) {
            munmap(start_, size_);
        }
    }

    const unsigned char* data() const {
        static constexpr unsigned char nothing = 0;
        return start_ ? static_cast<const unsigned char*>(start_) : &nothing;
    }
    std::size_t size() const { return size_; }

private:
    FileDescriptor file_;
    void* start_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace

void verify(const std::filesystem::path& file, std::string_view base64Signature,
    std::string_view base64PublicKey) {
    if (sodium_init() < 0) {
        throw UpdateRefusal("The library that checks signatures cannot be used.");
    }
    if (base64Signature.empty()) {
        throw UpdateRefusal("The update archive bears no signature.");
    }
    if (base64PublicKey.empty()) {
        throw UpdateRefusal("This copy of Ostrella has no key to check signatures with.");
    }
    const auto signature = decoded<crypto_sign_BYTES>(base64Signature);
    if (!signature) {
        throw UpdateRefusal("The signature of the update archive is not 64 bytes in base64.");
    }
    const auto key = decoded<crypto_sign_PUBLICKEYBYTES>(base64PublicKey);
    if (!key) {
        throw UpdateRefusal("The key to check signatures with is not 32 bytes in base64.");
    }
    const MappedFile archive(file);
    if (crypto_sign_verify_detached(
            signature->data(), archive.data(), archive.size(), key->data()) != 0) {
        throw UpdateRefusal("The signature of the update archive is wrong.");
    }
}

} // namespace ostrella::UpdateSignature
