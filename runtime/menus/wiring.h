#pragma once

namespace kelp {

// The menu classes; the window's key offer, contextual menu and bar.
void WireMenus();

} // namespace kelp
