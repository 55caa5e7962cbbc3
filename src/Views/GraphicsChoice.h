#pragma once

namespace ostrella {

/// Which of the system's graphics interfaces draws the windows.
namespace GraphicsChoice {

/// What windows need of the process before there is an application object: the version of the
/// interface, and the thread that they are drawn on.
void prepare();

/// Has windows drawn by the first interface that the viewport can be drawn with, unless the
/// environment already names one. False where there is none. After the application object and
/// before the first window.
bool settle();

} // namespace GraphicsChoice

} // namespace ostrella
