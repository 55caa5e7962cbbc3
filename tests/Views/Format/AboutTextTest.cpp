#include "Views/Format/AboutText.h"

#include <gmock/gmock.h>

namespace ostrella {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const PlatformWords& linux_ = PlatformWords::freedesktop();

TEST(AboutTextTest, theTagLineNamesTheSystem) {
    EXPECT_EQ(
        AboutText::tagLine(PlatformWords::mac()), "Native CFD for external aerodynamics on macOS");
    EXPECT_EQ(AboutText::tagLine(linux_), "Native CFD for external aerodynamics on Linux");
}

TEST(AcknowledgementsTest, tellVersionRightsLicenceSourceAndPlaceOfSU2) {
    const auto notice =
        AboutText::notices({.solverRelease = "8.3.0", .mesherVersion = "4.8.4"}, linux_)[0];
    EXPECT_EQ(notice.heading, "SU2");
    EXPECT_THAT(notice.text,
        StartsWith("Ostrella runs SU2 8.3.0 as a separate program, under the GNU Lesser General "
                   "Public License, version 2.1. "));
    EXPECT_THAT(notice.text, HasSubstr("rights in it are held by the SU2 contributors."));
    EXPECT_THAT(notice.text, HasSubstr("source code is at github.com/su2code/SU2."));
    EXPECT_THAT(notice.text, HasSubstr("The binary may be replaced. The licence text is in "
                                       "share/ostrella/licenses/SU2."));
}

TEST(AcknowledgementsTest, tellVersionRightsLicenceSourceAndPlaceOfGMSH) {
    const auto notice =
        AboutText::notices({.solverRelease = "8.5.0", .mesherVersion = "4.8.4"}, linux_)[1];
    EXPECT_EQ(notice.heading, "gmsh");
    EXPECT_THAT(notice.text,
        StartsWith("Ostrella runs gmsh 4.8.4 as a separate program, under the GNU General Public "
                   "License, version 2 or later. "));
    EXPECT_THAT(notice.text, HasSubstr("Christophe Geuzaine and Jean-François Remacle."));
    EXPECT_THAT(notice.text, HasSubstr("source code is at gmsh.info."));
    EXPECT_THAT(notice.text, HasSubstr("The binary may be replaced. The licence text is in "
                                       "share/ostrella/licenses/gmsh."));
}

TEST(AcknowledgementsTest, nameNoVersionThatNobodyKnows) {
    EXPECT_THAT(AboutText::notices({.solverRelease = "8.5.0"}, linux_)[1].text,
        StartsWith("Ostrella runs gmsh as a separate program,"));
}

TEST(AcknowledgementsTest, doNotClaimASolverThatIsNotThere) {
    const auto notice =
        AboutText::notices({.solverRelease = "8.5.0", .solverIsStandIn = true}, linux_)[0];
    EXPECT_THAT(notice.text, Not(HasSubstr("Ostrella runs SU2")));
    EXPECT_THAT(notice.text,
        StartsWith("This copy of Ostrella comes with a preview solver of its own in the place of "
                   "SU2. SU2 8.5.0 runs as a separate program where it is packaged, under the GNU "
                   "Lesser General Public License, version 2.1. "));
}

TEST(AcknowledgementsTest, nameTheMacsOwnPlaces) {
    const auto notices = AboutText::notices({.solverRelease = "8.5.0"}, PlatformWords::mac());
    EXPECT_THAT(notices[0].text, HasSubstr("is in Contents/Resources/licenses/SU2."));
    EXPECT_THAT(notices[1].text, HasSubstr("is in Contents/Resources/licenses/gmsh."));
    EXPECT_THAT(AboutText::librariesNote(PlatformWords::mac()),
        HasSubstr("are in Contents/Resources/licenses."));
}

} // namespace
} // namespace ostrella
