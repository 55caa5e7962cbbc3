#pragma once

#include "Platform/FileDescriptor.h"

#include <filesystem>

namespace ostrella {

/// As long as it lives, every process is told that the files of a package are in use, so that none
/// replaces them between two programs of one run. Where the root cannot be opened nobody is told,
/// and nobody can replace it either. For any thread.
class PackageUse {
public:
    explicit PackageUse(const std::filesystem::path& root);
    ~PackageUse();
    PackageUse(const PackageUse&) = delete;
    PackageUse& operator=(const PackageUse&) = delete;

    /// Ends all of this process, and those to come at once. For a process whose runs have lost
    /// their programs, and that waits for nobody.
    static void endAllForGood();

    /// None while somebody uses the package, this process or another; otherwise nobody begins to
    /// as long as the descriptor is open.
    static FileDescriptor claimAlone(const std::filesystem::path& root);

private:
    int descriptor_ = -1;
};

} // namespace ostrella
