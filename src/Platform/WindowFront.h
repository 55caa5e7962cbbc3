#pragma once

class QWindow;

namespace ostrella {

/// Brings a window to the front on the user's word, such as a click on a note of the application's
/// that the desktop shows. Main thread only.
namespace WindowFront {

/// Asks the window manager, as the user and not as a program: one that keeps programs from coming
/// to the front by themselves lets it. False where there is none to be asked so; then the toolkit's
/// request is what remains.
bool ask(QWindow& window);

} // namespace WindowFront

} // namespace ostrella
