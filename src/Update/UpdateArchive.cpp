#include "Update/UpdateArchive.h"

#include "Platform/FileDescriptor.h"
#include "Update/UpdateRefusal.h"

#include <archive.h>
#include <archive_entry.h>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrella::UpdateArchive {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t blockBytes = std::size_t{1} << 18;
constexpr mode_t ofFolders = 0755;
constexpr mode_t ofFiles = 0644;
constexpr mode_t anyoneExecutes = 0111;

struct Close {
    void operator()(archive* reader) const { archive_read_free(reader); }
};
using Reader = std::unique_ptr<archive, Close>;

[[noreturn]] void refuse(const std::string& reason) {
    throw UpdateRefusal(reason + ".");
}

[[noreturn]] void refuseUnreadable(archive* reader) {
    const char* const words = archive_error_string(reader);
    refuse(fmt::format("The archive cannot be read: {}", words ? words : "it is damaged"));
}

[[noreturn]] void refuseToWrite(const fs::path& name) {
    const std::error_code reason(errno, std::generic_category());
    refuse(fmt::format("Cannot unpack {}: {}", name.string(), reason.message()));
}

[[noreturn]] void refuseLink(const fs::path& place) {
    refuse(fmt::format("The archive holds a link that leads out, {}", place.string()));
}

/// A name of the archive as a path within the folder; empty for the folder itself. What leads, or
/// could be taken to lead, elsewhere is refused.
fs::path placeOf(const char* name) {
    if (!name || *name == '\0') {
        refuse("The archive holds something without a name");
    }
    const fs::path whole(name);
    if (whole.is_absolute()) {
        refuse(fmt::format("The archive holds an absolute path, {}", name));
    }
    fs::path place;
    for (const fs::path& part : whole) {
        if (part == "..") {
            refuse(fmt::format("The archive leads out of its folder by {}", name));
        }
        if (part != "." && !part.empty()) {
            place /= part;
        }
    }
    return place;
}

/// True where a link at `place` stays inside. Steps upwards come first only: there they are those
/// of real folders, since nothing is ever put behind a link, and every link met further down keeps
/// to the same rule.
bool staysInside(const fs::path& place, const fs::path& target) {
    if (target.empty() || target.is_absolute()) {
        return false;
    }
    auto depth = std::distance(place.begin(), place.end()) - 1;
    bool descends = false;
    for (const fs::path& part : target) {
        if (part == "..") {
            if (descends || --depth < 0) {
                return false;
            }
        } else if (part != "." && !part.empty()) {
            descends = true;
        }
    }
    return true;
}

class Unpacking {
public:
    Unpacking(const fs::path& folder, const Limits& limits, const CancellationToken& token)
        : folder_(folder), limits_(limits), token_(token), block_(blockBytes) {}

    void take(archive* reader, archive_entry* entry) {
        token_.throwIfCancelled();
        if (++entries_ > limits_.mostEntries) {
            refuse(fmt::format("The archive holds more than {} files", limits_.mostEntries));
        }
        const char* const name = archive_entry_pathname(entry);
        const fs::path place = placeOf(name ? name : archive_entry_pathname_utf8(entry));
        if (const char* const original = archive_entry_hardlink(entry)) {
            addName(place, placeOf(original));
        } else if (archive_entry_filetype(entry) == AE_IFDIR) {
            makeFolders(place);
        } else if (archive_entry_filetype(entry) == AE_IFLNK) {
            const char* const target = archive_entry_symlink(entry);
            if (place.empty() || !target || !staysInside(place, target)) {
                refuseLink(place);
            }
            links_.push_back({place, target});
        } else if (archive_entry_filetype(entry) == AE_IFREG) {
            writeFile(reader, place, archive_entry_perm(entry));
        } else {
            refuse(fmt::format("The archive holds what is no file or folder, {}", place.string()));
        }
    }

    /// Last, so that nothing can be unpacked through one of them.
    void makeLinks() const {
        for (const Link& link : links_) {
            makeFolders(link.place.parent_path());
            if (::symlink(link.target.c_str(), (folder_ / link.place).c_str()) != 0) {
                refuseToWrite(link.place);
            }
        }
    }

private:
    struct Link {
        fs::path place;
        std::string target;
    };

    void makeFolders(const fs::path& place) const {
        fs::path way = folder_;
        for (const fs::path& part : place) {
            way /= part;
            struct stat facts {};
            if (::mkdir(way.c_str(), ofFolders) == 0) {
                continue;
            }
            if (errno != EEXIST) {
                refuseToWrite(place);
            }
            if (::lstat(way.c_str(), &facts) != 0 || !S_ISDIR(facts.st_mode)) {
                refuse(fmt::format("The archive holds two things named {}", place.string()));
            }
        }
    }

    /// A second name of a file that has been unpacked.
    void addName(const fs::path& place, const fs::path& original) const {
        if (place.empty() || original.empty()) {
            refuse("The archive holds a link without a name");
        }
        makeFolders(place.parent_path());
        struct stat facts {};
        const fs::path from = folder_ / original;
        if (::lstat(from.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)) {
            refuse(fmt::format(
                "The archive holds a link to what it does not hold, {}", place.string()));
        }
        if (::link(from.c_str(), (folder_ / place).c_str()) != 0) {
            refuseToWrite(place);
        }
    }

    void writeFile(archive* reader, const fs::path& place, mode_t rights) {
        if (place.empty()) {
            refuse("The archive holds a file without a name");
        }
        makeFolders(place.parent_path());
        const bool isProgram = (rights & anyoneExecutes) != 0;
        FileDescriptor file(::open((folder_ / place).c_str(),
            O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, isProgram ? ofFolders : ofFiles));
        if (file.get() < 0) {
            refuseToWrite(place);
        }
        while (true) {
            token_.throwIfCancelled();
            const auto count = archive_read_data(reader, block_.data(), block_.size());
            if (count < 0) {
                refuseUnreadable(reader);
            }
            if (count == 0) {
                break;
            }
            bytes_ += static_cast<std::uint64_t>(count);
            if (bytes_ > limits_.mostBytes) {
                refuse(fmt::format("The archive unpacks to more than {} bytes", limits_.mostBytes));
            }
            write(file, place, static_cast<std::size_t>(count));
        }
    }

    void write(const FileDescriptor& file, const fs::path& place, std::size_t count) const {
        std::size_t written = 0;
        while (written < count) {
            const auto more = ::write(file.get(), block_.data() + written, count - written);
            if (more < 0 && errno != EINTR) {
                refuseToWrite(place);
            }
            written += static_cast<std::size_t>(std::max<ssize_t>(more, 0));
        }
    }

    const fs::path& folder_;
    const Limits& limits_;
    const CancellationToken& token_;
    std::vector<char> block_;
    std::vector<Link> links_;
    std::uint64_t bytes_ = 0;
    std::uint64_t entries_ = 0;
};

Reader open(const fs::path& file) {
    Reader reader(archive_read_new());
    if (!reader) {
        throw std::bad_alloc();
    }
    archive_read_support_filter_gzip(reader.get());
    archive_read_support_filter_xz(reader.get());
    archive_read_support_filter_zstd(reader.get());
    archive_read_support_format_tar(reader.get());
    archive_read_support_format_gnutar(reader.get());
    // By its table at the end, without which it is a part of an archive only.
    archive_read_support_format_zip_seekable(reader.get());
    if (archive_read_open_filename(reader.get(), file.c_str(), blockBytes) != ARCHIVE_OK) {
        refuseUnreadable(reader.get());
    }
    return reader;
}

/// A bare tar has nothing by which one could tell that its end is missing.
bool isBareTar(archive* reader) {
    return archive_filter_count(reader) == 1 &&
           (archive_format(reader) & ARCHIVE_FORMAT_BASE_MASK) == ARCHIVE_FORMAT_TAR;
}

} // namespace

void unpack(const fs::path& file, const fs::path& folder, const Limits& limits,
    const CancellationToken& token) {
    const Reader reader = open(file);
    Unpacking unpacking(folder, limits, token);
    while (true) {
        archive_entry* entry = nullptr;
        const int state = archive_read_next_header(reader.get(), &entry);
        if (state == ARCHIVE_EOF) {
            break;
        }
        // A warning is about a name in letters that this system cannot show.
        if (state != ARCHIVE_OK && state != ARCHIVE_WARN) {
            refuseUnreadable(reader.get());
        }
        if (isBareTar(reader.get())) {
            refuse("The archive is of no kind that is known");
        }
        unpacking.take(reader.get(), entry);
    }
    unpacking.makeLinks();
}

void requireLinksInside(const fs::path& tree) {
    for (const auto& entry : fs::recursive_directory_iterator(tree)) {
        const fs::path place = entry.path().lexically_relative(tree);
        if (entry.is_symlink() && !staysInside(place, fs::read_symlink(entry.path()))) {
            refuseLink(place);
        }
    }
}

} // namespace ostrella::UpdateArchive
