#include "run/support/ToolScripts.h"

namespace ostrella::test::ToolScripts {

const std::string goodMesher = R"(
if [ "$1" = --version ]; then echo 4.99.1; exit 0; fi
echo "Info    : Meshing 3D..."
cat >mesh.su2 <<END
NDIME= 3
NELEM= 1
10 0 1 2 3 0
NPOIN= 4
0 0 0 0
1 0 0 1
0 1 0 2
0 0 1 3
NMARK= 0
END
echo "Info    : Done meshing"
)";

std::string writingHistory(int rows) {
    return R"(
cat >history.csv <<END
"Time_Iter","Outer_Iter","Inner_Iter", "rms[P]"  , "rms[U]"  ,"RefForce","CD","CL","CSF","CMx","CMy","CMz","CFx","CFy","CFz","CEff"
END
i=0
while [ $i -lt )" +
           std::to_string(rows) + R"( ]; do
    echo "0, 0, $i, -1.$i, -2.$i, 1531.25, 0.5, 0.25, 0.125, 1, 2, 3, 4, 5, 6, 7" >>history.csv
    i=$((i + 1))
done
)";
}

const std::string goodSolver = writingHistory(3) + R"(
[ "$1" = run.cfg ] || { echo "no configuration"; exit 9; }
echo "# vtk DataFile Version 3.0" >flow.vtk
echo "# vtk DataFile Version 3.0" >surface_flow.vtk
echo "All convergence criteria satisfied."
)";

std::string notingIn(const std::filesystem::path& file) {
    // Written beside and renamed, so that whoever sees the file sees the number.
    const std::string name = "'" + file.string() + "'";
    return "echo $$ >" + name + ".part; mv " + name + ".part " + name + "\n";
}

const std::string waiting = "exec sleep 1000\n";

std::string deafNotingIn(const std::filesystem::path& file) {
    return "trap '' TERM INT\n" + notingIn(file) + "while :; do sleep 0.2; done\n";
}

std::string waitingFor(const std::filesystem::path& file) {
    return "while [ ! -e '" + file.string() + "' ]; do sleep 0.05; done\n";
}

} // namespace ostrella::test::ToolScripts
