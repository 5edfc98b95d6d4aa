#pragma once

namespace kelp {
// The VirtualVolume class, and FolderItem's members that reach volumes.
void WireVolumes();
} // namespace kelp
