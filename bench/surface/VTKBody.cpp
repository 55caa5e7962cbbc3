#include "VTKBody.h"

#include "VTKThreads.h"

#include <vtkCellArray.h>
#include <vtkNew.h>
#include <vtkPoints.h>

namespace ostrella::bench {

vtkSmartPointer<vtkPolyData> vtkBodyOf(const TriangleMesh& mesh) {
    useOneVTKThread();
    vtkNew<vtkPoints> points;
    vtkNew<vtkCellArray> cells;
    for (const Vec3& corner : mesh.positions())
        points->InsertNextPoint(corner.x, corner.y, corner.z);
    for (vtkIdType i = 0; i < points->GetNumberOfPoints(); i += 3)
        cells->InsertNextCell({i, i + 1, i + 2});
    auto data = vtkSmartPointer<vtkPolyData>::New();
    data->SetPoints(points);
    data->SetPolys(cells);
    return data;
}

} // namespace ostrella::bench
