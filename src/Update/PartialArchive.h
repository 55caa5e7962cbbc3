#pragma once

#include "Platform/FileDescriptor.h"
#include "Update/AppcastItem.h"
#include "Update/UpdateTransfer.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace ostrella {

/// An archive on its way, in a folder of ours: what has come of it outlives a cut connection and
/// the program. Beside it lies what the server called that state of its file (entity tag or date),
/// so that two states are never joined.
class PartialArchive final : public UpdateSink {
public:
    /// Makes the folder if need be, for the user alone, removes archives of other items from it and
    /// opens the one of this item, which is to come from `address`. Throws UpdateRefusal, also for
    /// a folder of somebody else's.
    PartialArchive(
        const std::filesystem::path& folder, const std::string& address, const AppcastItem& item);

    const std::filesystem::path& path() const { return path_; }
    /// Nothing is left to be fetched.
    bool isWhole() const { return received_ == expected_; }

    std::vector<Header> headers() const override;
    bool begin(const Answer& answer) override;
    void write(const char* bytes, std::size_t count) override;
    void end(const std::optional<std::string>& cut) override;
    std::int64_t received() const override { return received_; }
    std::int64_t expected() const override { return expected_; }

    /// Keeps a whole archive as it is for as long as the descriptor is open: no copy of Ostrella
    /// writes or removes it, and nobody but the user can. Throws UpdateRefusal. Any thread.
    static FileDescriptor hold(const std::filesystem::path& archive);

    /// Removes every archive from the folder that nobody holds, except that of this name.
    static void clear(const std::filesystem::path& folder, const std::string& except = {});

private:
    void open();
    void startAnew();
    void keepValidator(const Answer& answer);
    void remove();
    [[noreturn]] void discard(const std::string& reason);

    std::filesystem::path path_;
    std::filesystem::path validatorPath_;
    FileDescriptor file_;
    std::string validator_;
    std::int64_t received_ = 0;
    std::int64_t expected_;
};

} // namespace ostrella
