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

namespace {

/// What every file of the solver begins with.
std::string head(const std::string& file, const std::string& points) {
    return R"(
cat >)" + file +
           R"( <<END
# vtk DataFile Version 3.0
vtk output
ASCII
DATASET UNSTRUCTURED_GRID
POINTS )" + points +
           R"( double
)";
}

} // namespace

const std::string fields = head("surface_flow.vtk", "3") + R"(0 0 0
1 0 0
0.5 0 0
CELLS 1 4
3 0 1 2
CELL_TYPES 1
5
POINT_DATA 3
SCALARS Pressure_Coefficient double 1
LOOKUP_TABLE default
0.5
0.25
-0.5
END
)" + head("flow.vtk", "4") +
                           R"(0 0 0
1 0 0
0 1 0
0 0 1
CELLS 1 5
4 0 1 2 3
CELL_TYPES 1
10
POINT_DATA 4
VECTORS Velocity double
50 0 0
50 0 0
50 0 0
50 0 0
END
)";

const std::string vortexFields = head("surface_flow.vtk", "8") + R"(-0.5 -0.5 -0.5
0.5 -0.5 -0.5
0.5 0.5 -0.5
-0.5 0.5 -0.5
-0.5 -0.5 0.5
0.5 -0.5 0.5
0.5 0.5 0.5
-0.5 0.5 0.5
CELLS 12 48
3 0 2 1
3 0 3 2
3 4 5 6
3 4 6 7
3 0 1 5
3 0 5 4
3 1 2 6
3 1 6 5
3 2 3 7
3 2 7 6
3 3 0 4
3 3 4 7
CELL_TYPES 12
5 5 5 5 5 5 5 5 5 5 5 5
POINT_DATA 8
SCALARS Pressure_Coefficient double 1
LOOKUP_TABLE default
0.5 0.25 0.125 0 0 -0.125 -0.25 -0.5
SCALARS Y_Plus double 1
LOOKUP_TABLE default
0.5 1 1.5 2 2.5 3 3.5 4
END
)" + head("flow.vtk", "4225") + R"(END
LC_ALL=C awk 'BEGIN {
    for (i = 0; i < 25; ++i) for (j = 0; j < 13; ++j) for (k = 0; k < 13; ++k) {
        x = -2 + 0.25 * i; y = -1.5 + 0.25 * j; z = -1.5 + 0.25 * k
        print x, y, z
        turn = 40 * exp(-5 * (y * y + z * z)) / (1 + exp(-4 * x))
        velocities = velocities 50 " " (-turn * z) " " (turn * y) "\n"
    }
    print "CELLS 1 5\n4 0 1 2 3\nCELL_TYPES 1\n10\nPOINT_DATA 4225\nVECTORS Velocity double"
    printf "%s", velocities
}' >>flow.vtk
)";

const std::string goodSolver = writingHistory(3) + R"(
[ "$1" = run.cfg ] || { echo "no configuration"; exit 9; }
)" + fields + R"(
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
