#pragma once

namespace kelp {

// The ListBox, OldListbox and ListColumn classes.
void WireListbox();

} // namespace kelp
