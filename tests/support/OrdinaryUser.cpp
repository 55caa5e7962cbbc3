#include "support/OrdinaryUser.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include <unistd.h>

namespace ostrella::test {

namespace fs = std::filesystem;

OrdinaryUser::OrdinaryUser(const fs::path& folder) : wasAdministrator_(::geteuid() == 0) {
    if (!wasAdministrator_) {
        return;
    }
    constexpr uid_t nobody = 65534;
    bool isGiven = ::lchown(folder.c_str(), nobody, nobody) == 0;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        isGiven = isGiven && ::lchown(entry.path().c_str(), nobody, nobody) == 0;
    }
    if (!isGiven || ::seteuid(nobody) != 0) {
        throw std::runtime_error("the test cannot become an ordinary user");
    }
}

OrdinaryUser::~OrdinaryUser() {
    if (wasAdministrator_) {
        EXPECT_EQ(::seteuid(0), 0);
    }
}

} // namespace ostrella::test
