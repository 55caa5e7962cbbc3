#pragma once

namespace ostrella {

/// Where windows can be shown.
namespace DisplayProbe {

/// True if the environment names a display server that takes connections, or names the toolkit's
/// platform itself; always on a Mac. Without one the toolkit aborts the process.
bool canShowWindows();

} // namespace DisplayProbe

} // namespace ostrella
