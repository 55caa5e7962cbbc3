#include "VTKThreads.h"

#include <vtkSMPTools.h>

namespace ostrella::bench {

void useOneVTKThread() {
    vtkSMPTools::Initialize(1);
}

} // namespace ostrella::bench
