#include "Platform/PackageUse.h"

#include "support/Wait.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using namespace ostrella;
using namespace ostrella::test;

class PackageUseTest : public testing::Test {
protected:
    bool isFree() const { return PackageUse::claimAlone(directory_.path()).get() >= 0; }

    TemporaryDirectory directory_;
};

TEST_F(PackageUseTest, KeepsOthersOffUntilTheLastOneEnds) {
    EXPECT_TRUE(isFree());
    {
        const PackageUse one(directory_.path());
        EXPECT_FALSE(isFree());
        {
            const PackageUse another(directory_.path());
            EXPECT_FALSE(isFree());
        }
        EXPECT_FALSE(isFree());
    }
    EXPECT_TRUE(isFree());
}

TEST_F(PackageUseTest, OnlyOneClaimsAPackage) {
    const FileDescriptor claim = PackageUse::claimAlone(directory_.path());
    EXPECT_GE(claim.get(), 0);
    EXPECT_FALSE(isFree());
}

TEST_F(PackageUseTest, WhereThereIsNoPackageNobodyClaimsIt) {
    const auto nowhere = directory_.path() / "nowhere";
    const PackageUse use(nowhere);
    EXPECT_LT(PackageUse::claimAlone(nowhere).get(), 0);
}

TEST_F(PackageUseTest, AProcessThatIsAboutToEndGivesUpAllOfItsOwn) {
    EXPECT_EXIT(
        {
            const PackageUse before(directory_.path());
            PackageUse::endAllForGood();
            const PackageUse after(directory_.path());
            std::_Exit(isFree() ? EXIT_SUCCESS : EXIT_FAILURE);
        },
        testing::ExitedWithCode(EXIT_SUCCESS), "");
}

} // namespace
