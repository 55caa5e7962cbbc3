#include "Update/PartialArchive.h"

#include "Update/UpdateRefusal.h"

#include <QCryptographicHash>

#include <fmt/format.h>

#include <cerrno>
#include <fstream>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrella {

namespace {

constexpr auto archiveSuffix = ".archive";
constexpr auto validatorSuffix = ".state";
constexpr std::size_t longestValidator = 512;

UpdateRefusal unwritable(int error) {
    return UpdateRefusal(fmt::format("The update archive cannot be kept: {}.",
        std::error_code(error, std::generic_category()).message()));
}

/// The same for the same archive only: what is half here must not go on as another.
std::string nameOf(const std::string& address, const AppcastItem& item) {
    const auto text =
        fmt::format("{}\n{}\n{}\n{}", address, item.version, item.archiveLength, item.signature);
    const auto digest =
        QCryptographicHash::hash(QByteArray::fromStdString(text), QCryptographicHash::Sha256);
    return digest.toHex().left(32).toStdString();
}

/// "bytes 100-199/200" begins at 100 and knows of 200 bytes in all.
struct ContentRange {
    std::int64_t first = -1;
    std::int64_t total = -1;

    explicit ContentRange(const QByteArray& header) {
        if (!header.startsWith("bytes ")) {
            return;
        }
        const auto dash = header.indexOf('-');
        const auto slash = header.indexOf('/');
        if (dash < 0 || slash < dash) {
            return;
        }
        const auto number = [](const QByteArray& text) {
            bool isNumber = false;
            const qint64 value = text.toLongLong(&isNumber);
            return isNumber ? value : -1;
        };
        first = number(header.mid(6, dash - 6));
        total = number(header.mid(slash + 1));
    }
};

/// A name of the server's for the very bytes of its file; empty if it has none to rely on.
std::string validatorIn(const UpdateSink::Answer& answer) {
    const auto& tag = answer.entityTag;
    const bool isStrong = tag.startsWith('"') && tag.endsWith('"') && tag.size() > 2;
    const auto validator = (isStrong ? tag : answer.lastModified).toStdString();
    return validator.size() <= longestValidator ? validator : std::string();
}

/// Nobody else could have put it there or could change it: no second name, no other's write.
bool isPrivate(const struct stat& facts) {
    return S_ISREG(facts.st_mode) && facts.st_uid == geteuid() && facts.st_nlink == 1 &&
           (facts.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

/// Makes the folder the user's alone; what others may have put there before goes.
void keepToUser(const std::filesystem::path& folder) {
    const FileDescriptor opened(
        open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW));
    struct stat facts {};
    if (opened.get() < 0 || fstat(opened.get(), &facts) != 0) {
        throw unwritable(errno);
    }
    if (facts.st_uid != geteuid()) {
        throw UpdateRefusal("The folder of update archives belongs to another user.");
    }
    if ((facts.st_mode & (S_IRWXG | S_IRWXO)) != 0 && fchmod(opened.get(), S_IRWXU) != 0) {
        throw unwritable(errno);
    }
    if ((facts.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
        PartialArchive::clear(folder);
    }
}

} // namespace

PartialArchive::PartialArchive(
    const std::filesystem::path& folder, const std::string& address, const AppcastItem& item)
    : expected_(item.archiveLength) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        throw unwritable(error.value());
    }
    keepToUser(folder);
    const auto name = nameOf(address, item);
    clear(folder, name);
    path_ = folder / (name + archiveSuffix);
    validatorPath_ = folder / (name + validatorSuffix);
    open();
    std::ifstream state(validatorPath_, std::ios::binary);
    std::getline(state, validator_);
    if (received_ > expected_ || (!isWhole() && received_ > 0 && validator_.empty())) {
        startAnew();
    }
}

void PartialArchive::open() {
    struct stat facts {};
    const auto opened = [&](int flags) {
        file_ = FileDescriptor(::open(path_.c_str(),
            O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | flags, S_IRUSR | S_IWUSR));
        return file_.get() >= 0 && fstat(file_.get(), &facts) == 0;
    };
    if (!opened(0)) {
        throw unwritable(errno);
    }
    if (!isPrivate(facts) && (unlink(path_.c_str()) != 0 || !opened(O_EXCL))) {
        throw unwritable(errno);
    }
    const bool isLocked = flock(file_.get(), LOCK_EX | LOCK_NB) == 0;
    if (fstat(file_.get(), &facts) != 0) {
        throw unwritable(errno);
    }
    received_ = facts.st_size;
    // A whole one is only read, and may be held for that.
    if (!isLocked && !(isWhole() && flock(file_.get(), LOCK_SH | LOCK_NB) == 0)) {
        throw UpdateRefusal("Another copy of Ostrella is fetching this update.");
    }
}

FileDescriptor PartialArchive::hold(const std::filesystem::path& archive) {
    FileDescriptor file(::open(archive.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat facts {};
    if (file.get() < 0 || flock(file.get(), LOCK_SH | LOCK_NB) != 0 ||
        fstat(file.get(), &facts) != 0) {
        throw UpdateRefusal(fmt::format("The update archive cannot be read: {}.",
            std::error_code(errno, std::generic_category()).message()));
    }
    if (!isPrivate(facts)) {
        throw UpdateRefusal("The update archive could be changed by others: " + archive.string());
    }
    return file;
}

void PartialArchive::clear(const std::filesystem::path& folder, const std::string& except) {
    std::error_code error;
    for (auto entry = std::filesystem::directory_iterator(folder, error);
         !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const auto& path = entry->path();
        const bool isOurs =
            path.extension() == archiveSuffix || path.extension() == validatorSuffix;
        if (isOurs && path.stem() != except) {
            const FileDescriptor file(
                ::open((folder / (path.stem().string() + archiveSuffix)).c_str(),
                    O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
            if (file.get() >= 0 && flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
                continue; // somebody is at it
            }
            std::error_code ignored;
            std::filesystem::remove(path, ignored);
        }
    }
}

std::vector<UpdateSink::Header> PartialArchive::headers() const {
    if (received_ == 0) {
        return {};
    }
    return {{"Range", QByteArray::fromStdString(fmt::format("bytes={}-", received_))},
        {"If-Range", QByteArray::fromStdString(validator_)}};
}

bool PartialArchive::begin(const Answer& answer) {
    constexpr int ok = 200;
    constexpr int partialContent = 206;
    if (answer.status == partialContent) {
        const ContentRange range(answer.contentRange);
        const auto validator = validatorIn(answer);
        if (range.first == received_ && (range.total == expected_ || range.total < 0) &&
            (validator.empty() || validator == validator_)) {
            return true;
        }
    }
    startAnew();
    if (answer.status != ok) {
        return false;
    }
    if (answer.length >= 0 && answer.length != expected_) {
        discard(fmt::format("The update archive has {} bytes, where the feed states {}.",
            answer.length, expected_));
    }
    keepValidator(answer);
    return true;
}

void PartialArchive::write(const char* bytes, std::size_t count) {
    if (static_cast<std::int64_t>(count) > expected_ - received_) {
        discard(fmt::format(
            "The update archive has more than the {} bytes that the feed states.", expected_));
    }
    while (count > 0) {
        const auto written = pwrite(file_.get(), bytes, count, received_);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            // What has come may be what fills the disk.
            const auto refusal = unwritable(written < 0 ? errno : ENOSPC);
            remove();
            throw refusal;
        }
        bytes += written;
        count -= static_cast<std::size_t>(written);
        received_ += written;
    }
}

void PartialArchive::end(const std::optional<std::string>& cut) {
    if (!isWhole()) {
        throw UpdateRefusal(fmt::format("Only {} of {} bytes of the update archive came.{}",
            received_, expected_, cut ? " " + *cut : ""));
    }
}

void PartialArchive::startAnew() {
    received_ = 0;
    validator_.clear();
    std::error_code ignored;
    std::filesystem::remove(validatorPath_, ignored);
    if (ftruncate(file_.get(), 0) != 0) {
        throw unwritable(errno);
    }
}

void PartialArchive::keepValidator(const Answer& answer) {
    validator_ = validatorIn(answer);
    // Without it the archive merely cannot be continued.
    std::ofstream(validatorPath_, std::ios::binary | std::ios::trunc) << validator_ << '\n';
}

void PartialArchive::discard(const std::string& reason) {
    remove();
    throw UpdateRefusal(reason);
}

void PartialArchive::remove() {
    file_.close();
    clear(path_.parent_path());
}

} // namespace ostrella
