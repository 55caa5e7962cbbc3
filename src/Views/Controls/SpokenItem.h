#pragma once

namespace ostrella::SpokenItem {

/// From now on readers of the screen hear of an item that is disabled, at once when it becomes so
/// too, and cannot press it; and they hear of an item of a menu bar as such. The toolkit's own
/// account of its items leaves out the one and takes the other for a bar. Further calls do nothing.
void install();

} // namespace ostrella::SpokenItem
