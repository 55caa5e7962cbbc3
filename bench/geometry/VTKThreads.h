#pragma once

namespace ostrella::bench {

/// Keeps VTK's filters to one thread, as our own operations are.
void useOneVTKThread();

} // namespace ostrella::bench
