// The peer that draws with as many samples as it is told: an STL file to a picture with VTK, in the
// plainest way that its own viewers do it, and how long a frame takes after the first.

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkNew.h>
#include <vtkPNGWriter.h>
#include <vtkPolyDataMapper.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSTLReader.h>
#include <vtkWindowToImageFilter.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

int main(int argc, char** argv) {
    if (argc < 4) {
        std::fputs("usage: ostrella-vtk-picture MODEL.stl PICTURE.png SAMPLES [FRAMES]\n", stderr);
        return EXIT_FAILURE;
    }
    constexpr int width = 1200;
    constexpr int height = 800;
    vtkNew<vtkSTLReader> reader;
    reader->SetFileName(argv[1]);
    reader->MergingOff(); // as f3d has it: the corners of each facet for themselves
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputConnection(reader->GetOutputPort());
    mapper->ScalarVisibilityOff();
    vtkNew<vtkActor> actor;
    actor->SetMapper(mapper);
    vtkNew<vtkRenderer> renderer;
    renderer->AddActor(actor);
    vtkNew<vtkRenderWindow> window;
    window->SetMultiSamples(std::atoi(argv[3]));
    window->OffScreenRenderingOn();
    window->SetSize(width, height);
    window->AddRenderer(renderer);
    renderer->ResetCamera();
    window->Render();

    vtkNew<vtkWindowToImageFilter> shot;
    shot->SetInput(window);
    shot->ReadFrontBufferOff();
    shot->ShouldRerenderOff();
    vtkNew<vtkPNGWriter> writer;
    writer->SetFileName(argv[2]);
    writer->SetInputConnection(shot->GetOutputPort());
    writer->Write();

    const int frames = argc > 4 ? std::atoi(argv[4]) : 0;
    std::vector<double> times;
    for (int i = 0; i < frames; ++i) {
        const auto start = std::chrono::steady_clock::now();
        renderer->GetActiveCamera()->Azimuth(1);
        window->Render();
        window->WaitForCompletion();
        times.push_back(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    if (!times.empty()) {
        std::sort(times.begin(), times.end());
        std::printf("%.4f\n", times[times.size() / 2]);
    }
    return EXIT_SUCCESS;
}
