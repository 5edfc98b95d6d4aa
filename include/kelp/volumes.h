/*
 * Virtual volumes: a tree of files and folders kept in one file, reached
 * through the same FolderItem calls as files on disk.
 *
 * Failure channel: nil or nothing, never an exception, for a volume that
 * can't be made or read; a nil FolderItem or VirtualVolume raises
 * NilObjectException.  A returned object is the caller's reference.
 */
#ifndef KELP_VOLUMES_H
#define KELP_VOLUMES_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A new volume in the item's file (made or emptied); nil when the item is
 * locked or the file can't be written. */
RuntimeObject *FolderItemCreateVirtualVolume(RuntimeObject *self);
/* The volume in the item's file, read-write if the file allows, else
 * read-only; nil when the file holds no volume. */
RuntimeObject *FolderItemOpenAsVirtualVolume(RuntimeObject *self);
/* The volume that holds an item inside one; nil for any other item. */
RuntimeObject *folderVirtVolGetter(RuntimeObject *self, int32_t unused);
/* Saves the volume's map, waits for the disk, closes the file. */
void VirtVolDestructor(RuntimeObject *self);
/* The root folder of the volume as a new FolderItem. */
RuntimeObject *VirtVolRootGetter(RuntimeObject *self, int32_t unused);

#ifdef __cplusplus
}
#endif

#endif
