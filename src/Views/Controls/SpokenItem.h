#pragma once

namespace ostrella::SpokenItem {

/// From now on readers of the screen hear of an item that is disabled, at once when it becomes so
/// too: the toolkit's own account of its items leaves that out. Further calls do nothing.
void install();

} // namespace ostrella::SpokenItem
