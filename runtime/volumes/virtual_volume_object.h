#pragma once
// VirtualVolume of the language: owns one VHFSVolume, shows its root.
#include "volumes/vhfs_volume.h"

#include "kelp/records.h"

#include <memory>

namespace kelp {

struct ObjectDefinition;

struct VirtualVolumeRecord {
    RuntimeObject object;
    volume::VHFSVolume *volume; // owned; null once destroyed
};

ObjectDefinition *VirtualVolumeDefinition();
// The volume of a VirtualVolume object; null for nil or a closed one.
volume::VHFSVolume *VolumeOf(RuntimeObject *volumeObject);
// Both kinds of host file reach the disk on Flush: a file waits for it.
bool SyncHostFile(RandomAccessMechanism &disk);
// FolderItem's rows that reach volumes, added from WireVolumes.
void AddVolumeRowsToFolderItem();

} // namespace kelp
