#pragma once

#include <QSGRendererInterface>

#include <optional>
#include <string>

namespace ostrella {

struct PlatformWords;

/// Which of the system's graphics interfaces draws the windows.
namespace GraphicsChoice {

/// What windows need of the process before there is an application object: the version of the
/// interface, and the thread that they are drawn on.
void prepare();

/// Has windows drawn by the first interface that the viewport can be drawn with, unless the
/// environment already names one. False where there is none. After the application object and
/// before the first window.
bool settle();

/// The interface as the user reads it. Nothing for one of which the system tells more, as of
/// Metal.
std::optional<std::string> label(QSGRendererInterface::GraphicsApi api, const PlatformWords& words);
/// That of the interface that was settled on.
std::optional<std::string> label(const PlatformWords& words);

} // namespace GraphicsChoice

} // namespace ostrella
