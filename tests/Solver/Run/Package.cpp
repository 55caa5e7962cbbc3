#include "Package.h"

#include "support/Wait.h"

#include <cerrno>
#include <csignal>
#include <fstream>
#include <stdexcept>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrella::test {

namespace fs = std::filesystem;

namespace Script {

const std::string mesh = "printf 'NDIME= 3\\nNELEM= 1234\\n' > mesh.su2\n";

const std::string history = R"(cat > history.csv <<'END'
"Inner_Iter","rms[P]","CL","CD"
0, -1.0, 0.1, 0.2
1, -2.0, 0.3, 0.4
END
)";

const std::string fields = R"(cat > surface_flow.vtk <<'END'
# vtk DataFile Version 3.0
surface
ASCII
DATASET UNSTRUCTURED_GRID
POINTS 3 double
0 0 0
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
cat > flow.vtk <<'END'
# vtk DataFile Version 3.0
field
ASCII
DATASET UNSTRUCTURED_GRID
POINTS 4 double
0 0 0
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

const std::string openTriangle = "sed -i 's/^0.5 0 0$/0 1 0/' surface_flow.vtk\n";

const std::string capMessage = "echo 'Maximum number of iterations reached (ITER = 200).'\n";
const std::string convergedMessage = "echo 'All convergence criteria satisfied.'\n";

const std::string hang = "echo ready\nexec tail -f /dev/null\n";
const std::string deaf = "trap '' TERM\n" + hang;

const std::string goodMesher = "echo 'Info    : Meshing 3D...'\n" + mesh;
const std::string goodSolver = history + fields + capMessage;

} // namespace Script

namespace {

/// What the templates are filled with shows in the file that comes out.
constexpr const char* incompressible = R"(SOLVER= {{SOLVER}}
KIND_TURB_MODEL= {{KIND_TURB_MODEL}}
INC_VELOCITY_INIT= ({{VX}}, {{VY}}, {{VZ}})
ITER= {{ITER}}
REF_AREA= {{REF_AREA}}
MESH_FILENAME= {{MESH_FILENAME}}
)";
constexpr const char* compressible = R"(SOLVER= {{SOLVER}}
MACH_NUMBER= {{MACH}}
REF_AREA= {{REF_AREA}}
)";

} // namespace

Package::Package(const fs::path& root) : root_(root), gate_(root / "gate") {
    setMesher(Script::goodMesher);
    setSolver(Script::goodSolver);
    writeFile(resource("su2/templates/stl_external_aero.geo"), "Merge \"{{STL_FILENAME}}\";\n");
    writeFile(resource("su2/templates/incompressible_rans_sa_3d.cfg"), incompressible);
    writeFile(resource("su2/templates/compressible_rans_sa_3d.cfg"), compressible);
    writeFile(resource("su2/templates/incompressible_rans_sa_2d.cfg"), incompressible);
    writeFile(resource("su2/fixtures/n0012_897-257.su2"), "NDIME= 2\nNELEM= 57344\n");
    if (mkfifo(gate_.c_str(), 0600) != 0) {
        throw std::runtime_error("no gate for the child programs");
    }
    // Held open at both ends, so that neither side waits for the other to come.
    gateDescriptor_ = open(gate_.c_str(), O_RDWR | O_CLOEXEC);
}

Package::~Package() {
    close(gateDescriptor_);
}

fs::path Package::tool(const std::string& name) const {
    return bundle().toolsDirectory() / name;
}

fs::path Package::resource(const std::string& path) const {
    return bundle().resourcesDirectory() / path;
}

void Package::setTool(const std::string& name, const std::string& script) const {
    writeFile(tool(name), "#!/bin/sh\necho $$ >> '" + startsFile(name).string() + "'\n" + script);
    fs::permissions(tool(name), fs::perms::owner_all);
}

void Package::useStandIn() const {
    fs::rename(tool("SU2_CFD"), tool("ostrella-preview-solver"));
    fs::create_symlink("ostrella-preview-solver", tool("SU2_CFD"));
}

fs::path Package::startsFile(const std::string& name) const {
    return root_ / (name + ".starts");
}

std::vector<pid_t> Package::starts(const std::string& name) const {
    std::vector<pid_t> pids;
    std::ifstream file(startsFile(name));
    for (pid_t pid = 0; file >> pid;) {
        pids.push_back(pid);
    }
    return pids;
}

std::string Package::waitAtGate() const {
    return "read -r line < '" + gate_.string() + "'\n";
}

void Package::openGate() const {
    if (write(gateDescriptor_, "open\n", 5) != 5) {
        throw std::runtime_error("the gate does not open");
    }
}

bool processExists(pid_t pid) {
    return ::kill(pid, 0) == 0 || errno != ESRCH;
}

} // namespace ostrella::test
