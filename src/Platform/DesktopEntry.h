#pragma once

namespace ostrella {

/// How desktops know the application.
namespace DesktopEntry {

/// Name of its desktop file without the extension, and of its icon.
inline constexpr const char* identifier = "org.ostrella.Ostrella";

} // namespace DesktopEntry

} // namespace ostrella
