#pragma once

#include "Models/TriangleMesh.h"

#include <vtkPolyData.h>
#include <vtkSmartPointer.h>

namespace ostrella::bench {

/// Three points a facet, shared with no other one; VTK keeps to one thread from then on.
vtkSmartPointer<vtkPolyData> vtkBodyOf(const TriangleMesh& mesh);

} // namespace ostrella::bench
