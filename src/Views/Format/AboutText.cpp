#include "Views/Format/AboutText.h"

#include <fmt/format.h>

namespace ostrella::AboutText {

std::string tagLine(const PlatformWords& words) {
    return fmt::format("Native CFD for external aerodynamics on {}", words.systemName);
}

std::array<Notice, 2> notices(const Tools& tools, const PlatformWords& words) {
    const auto rest = [&words](std::string_view tool) {
        return fmt::format("The binary may be replaced. The licence text is in {}/{}.",
            words.licensesFolder, tool);
    };
    const std::string solverPart =
        tools.solverIsStandIn
            ? fmt::format("This copy of Ostrella comes with a preview solver of its own in the "
                          "place of SU2. SU2 {} runs as a separate program where it is packaged,",
                  tools.solverRelease)
            : fmt::format("Ostrella runs SU2 {} as a separate program,", tools.solverRelease);
    const std::string mesherName =
        tools.mesherVersion ? fmt::format("gmsh {}", *tools.mesherVersion) : "gmsh";
    return {Notice{"SU2",
                fmt::format("{} under the GNU Lesser General Public License, version 2.1. The "
                            "rights in it are held by the SU2 contributors. Its source code is at "
                            "github.com/su2code/SU2. {}",
                    solverPart, rest("SU2"))},
        Notice{"gmsh",
            fmt::format("Ostrella runs {} as a separate program, under the GNU General Public "
                        "License, version 2 or later. The rights in it are held by Christophe "
                        "Geuzaine and Jean-François Remacle. Its source code is at gmsh.info. {}",
                mesherName, rest("gmsh"))}};
}

std::string librariesNote(const PlatformWords& words) {
    return fmt::format("The libraries' notices are in {}.", words.licensesFolder);
}

} // namespace ostrella::AboutText
