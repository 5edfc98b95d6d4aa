#pragma once
namespace kelp {
// The FolderItem and Permissions classes.
void WireFolderItems();
} // namespace kelp
