#pragma once

#include <filesystem>

namespace ostrella::test {

/// As long as it lives, the process may do only what `owner` of a folder may, who is not the
/// machine's administrator, and gets the folder. For tests of rights by whomever they are run.
class OrdinaryUser {
public:
    explicit OrdinaryUser(const std::filesystem::path& folder);
    ~OrdinaryUser();
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    bool wasAdministrator_;
};

} // namespace ostrella::test
