#include "run/support/Package.h"

#include "run/support/ToolScripts.h"

namespace ostrella::test {

namespace fs = std::filesystem;

Package::Package(const std::string& name) : root_(directory_.path() / name) {
    const fs::path stage = OSTRELLA_STAGE_DIR;
    constexpr auto readableByAll = fs::perms(0755);
    fs::permissions(directory_.path(), readableByAll);
    fs::create_directories(root_ / "bin");
    fs::create_directories(root_ / "libexec" / "ostrella");
    fs::create_directories(resources() / "su2");
    fs::copy_file(stage / "bin" / "ostrella-batch", program());
    fs::create_symlink(
        stage / "libexec" / "ostrella" / "ostrella-picture", tool("ostrella-picture"));
    const fs::path staged = stage / "share" / "ostrella";
    fs::copy(staged / "samples", resources() / "samples", fs::copy_options::recursive);
    fs::copy(staged / "su2" / "templates", resources() / "su2" / "templates",
        fs::copy_options::recursive);
    // Some tens of megabytes, which nothing here changes.
    fs::create_directory_symlink(staged / "su2" / "fixtures", resources() / "su2" / "fixtures");
}

fs::path Package::tool(const std::string& name) const {
    return root_ / "libexec" / "ostrella" / name;
}

fs::path Package::sample(const std::string& name) const {
    return resources() / "samples" / (name + ".stl");
}

void Package::script(const std::string& toolName, const std::string& text) const {
    writeFile(tool(toolName), "#!/bin/sh\n" + text);
    fs::permissions(tool(toolName), fs::perms(0755));
}

void Package::scriptGoodTools() const {
    script("gmsh", ToolScripts::goodMesher);
    script("SU2_CFD", ToolScripts::goodSolver);
}

fs::path stagedProgram() {
    return fs::path(OSTRELLA_STAGE_DIR) / "bin" / "ostrella-batch";
}

} // namespace ostrella::test
