#include "Platform/PackageUse.h"

#include <cerrno>
#include <mutex>
#include <set>

#include <fcntl.h>
#include <sys/file.h>

namespace ostrella {

namespace fs = std::filesystem;

namespace {

struct All {
    std::mutex mutex;
    std::set<int> descriptors;
    bool hasEnded = false;
};

/// Never destroyed: runs may outlive the end of main().
All& all() {
    static All& only = *new All;
    return only;
}

FileDescriptor folder(const fs::path& root) {
    return FileDescriptor(::open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

} // namespace

PackageUse::PackageUse(const fs::path& root) {
    FileDescriptor opened = folder(root);
    if (opened.get() < 0) {
        return;
    }
    // Waits only while two versions change places.
    while (::flock(opened.get(), LOCK_SH) != 0 && errno == EINTR) {
    }
    const std::lock_guard lock(all().mutex);
    if (!all().hasEnded) {
        descriptor_ = opened.release();
        all().descriptors.insert(descriptor_);
    }
}

PackageUse::~PackageUse() {
    const std::lock_guard lock(all().mutex);
    if (all().descriptors.erase(descriptor_) > 0) {
        FileDescriptor(descriptor_).close();
    }
}

void PackageUse::endAllForGood() {
    const std::lock_guard lock(all().mutex);
    all().hasEnded = true;
    for (const int descriptor : all().descriptors) {
        FileDescriptor(descriptor).close();
    }
    all().descriptors.clear();
}

FileDescriptor PackageUse::claimAlone(const fs::path& root) {
    FileDescriptor opened = folder(root);
    // Other errors are those of file systems without such locks, where nobody can be told.
    if (opened.get() >= 0 && ::flock(opened.get(), LOCK_EX | LOCK_NB) != 0 &&
        errno == EWOULDBLOCK) {
        opened.close();
    }
    return opened;
}

} // namespace ostrella
