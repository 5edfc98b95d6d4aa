/*
 * FolderItem and Permissions, as compiled code calls them, and the global
 * functions that find files and folders.
 *
 * Failure channels: file-system failures give false, nil, 0 or "" and leave
 * errno in LastErrorCode; a nil FolderItem raises NilObjectException; an
 * item without an implementation is the fatal assertion "entry->mImp".  Only
 * path texts raise UnsupportedFormatException.  Strings are borrowed; a
 * returned string or object is the caller's reference.
 */
#ifndef KELP_FILES_H
#define KELP_FILES_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* --------------------------------------------------------- construction */
void FolderItemPathCtorNoParams(RuntimeObject *self);
/* "The path passed into new FolderItem was invalid" for a path that names
 * nothing reachable. */
void FolderItemPathCtor(RuntimeObject *self, KelpString path, int32_t pathMode);
void FolderItemCopyCtor(RuntimeObject *self, RuntimeObject *source);
void FolderItemDestructor(RuntimeObject *self);
RuntimeObject *FolderItemFromPath(KelpString path);
void *FolderItemGetImp(RuntimeObject *self);
KelpString KELPpathFromFolderItem(RuntimeObject *item);

/* ------------------------------------------------------------ properties */
KelpString fileAbsolutePathGetter(RuntimeObject *self, int32_t unused);
KelpString FileShellPathGetter(RuntimeObject *self, int32_t unused);
KelpString FileURLGetter(RuntimeObject *self, int32_t unused);
KelpString FileDisplayNameGetter(RuntimeObject *self, int32_t unused);
KelpString fileNameGetter(RuntimeObject *self, int32_t unused);
void fileNameSetter(RuntimeObject *self, int32_t unused, KelpString name);
uint8_t fileAliasGetter(RuntimeObject *self, int32_t unused);
uint8_t fileDirectoryGetter(RuntimeObject *self, int32_t unused);
uint8_t fileExistsGetter(RuntimeObject *self, int32_t unused);
int32_t fileCountGetter(RuntimeObject *self, int32_t unused);
int32_t fileSizeGetter(RuntimeObject *self, int32_t unused);
int32_t fileRFSizeGetter(RuntimeObject *self, int32_t unused);
uint8_t fileLockedGetter(RuntimeObject *self, int32_t unused);
void fileLockedSetter(RuntimeObject *self, int32_t unused, uint8_t value);
uint8_t fileVisibleGetter(RuntimeObject *self, int32_t unused);
void fileVisibleSetter(RuntimeObject *self, int32_t unused, uint8_t value);
uint8_t FileExtensionVisibleGetter(RuntimeObject *self, int32_t unused);
void FileExtensionVisibleSetter(RuntimeObject *self, int32_t unused, uint8_t value);
KelpString fileTypeGetter(RuntimeObject *self, int32_t unused);
KelpString fileMacTypeGetter(RuntimeObject *self, int32_t unused);
void fileMacTypeSetter(RuntimeObject *self, int32_t unused, KelpString value);
KelpString fileMacCreatorGetter(RuntimeObject *self, int32_t unused);
void fileMacCreatorSetter(RuntimeObject *self, int32_t unused, KelpString value);
int32_t fileVRefNumGetter(RuntimeObject *self, int32_t unused);
int32_t fileDirIDGetter(RuntimeObject *self, int32_t unused);
RuntimeObject *folderParentGetter(RuntimeObject *self, int32_t unused);
KelpString FolderItemOwnerGetter(RuntimeObject *self, int32_t unused);
void FolderItemOwnerSetter(RuntimeObject *self, int32_t unused, KelpString value);
KelpString FolderItemGroupGetter(RuntimeObject *self, int32_t unused);
void FolderItemGroupSetter(RuntimeObject *self, int32_t unused, KelpString value);
int32_t FolderItemGetLastError(RuntimeObject *self, int32_t unused);
/* CreationDate and ModificationDate: new Dates of the file's real times, or
 * nil (LastErrorCode set) when the file can't be asked.  Setting the
 * creation date is refused; setting the modification date sets the file's
 * modification time, and a nil date raises NilObjectException. */
RuntimeObject *folderGetCreation(RuntimeObject *self, int32_t unused);
RuntimeObject *folderGetModified(RuntimeObject *self, int32_t unused);
void folderSetCreation(RuntimeObject *self, int32_t unused, RuntimeObject *date);
void folderSetModified(RuntimeObject *self, int32_t unused, RuntimeObject *date);
void FolderItemSetLastError(RuntimeObject *self, int32_t unused, int32_t value);
int32_t FolderItemGetPermissions(RuntimeObject *self, int32_t unused);
void FolderItemSetPermissionsInteger(RuntimeObject *self, int32_t unused, int32_t mode);
void FolderItemSetPermissionsClass(RuntimeObject *self, int32_t unused, RuntimeObject *perms);
uint8_t FolderItemIsCurrentlyReadable(RuntimeObject *self, int32_t unused);
uint8_t FolderItemIsCurrentlyWriteable(RuntimeObject *self, int32_t unused);

/* ----------------------------------------------------------------- tree */
/* One-based; nil past the count. */
RuntimeObject *FolderItemItem(RuntimeObject *self, int32_t index);
RuntimeObject *FolderItemTrueItem(RuntimeObject *self, int32_t index);
RuntimeObject *FolderChild(RuntimeObject *self, KelpString name);
RuntimeObject *FolderTrueChild(RuntimeObject *self, KelpString name);

/* -------------------------------------------------------------- streams */
RuntimeObject *FolderItemOpenTextFile(RuntimeObject *self);
RuntimeObject *FolderItemAppendTextFile(RuntimeObject *self);
RuntimeObject *FolderItemCreateTextFile(RuntimeObject *self);
RuntimeObject *FolderItemOpenBinaryFile(RuntimeObject *self, uint8_t readWrite);
RuntimeObject *FolderItemCreateBinaryFile(RuntimeObject *self, KelpString type);
/* Never a resource fork on this system: nil. */
RuntimeObject *folderOpenResourceFork(RuntimeObject *self);
RuntimeObject *folderCreateResourceFork(RuntimeObject *self, KelpString type);

/* -------------------------------------------------------------- changes */
void FolderItemDelete(RuntimeObject *self);
void FolderItemCreateAsFolder(RuntimeObject *self);
void FolderItemCopyFileTo(RuntimeObject *self, RuntimeObject *destination);
void FolderItemMoveFileTo(RuntimeObject *self, RuntimeObject *destination);
void FolderItemLaunch(RuntimeObject *self, uint8_t activate);
void FolderItemLaunchWithParameters(RuntimeObject *self, KelpString parameters, uint8_t activate);
void FolderItemImpMakeFileExecutable(RuntimeObject *self);

/* ------------------------------------------------------------- SaveInfo */
/* Mode 0 both paths, 1 relative, 2 absolute.  The text has no encoding. */
KelpString FolderItemGetSaveInfo(RuntimeObject *self, RuntimeObject *relativeTo, int32_t mode);
RuntimeObject *FolderItemGetRelative(RuntimeObject *self, KelpString saveInfo);

/* ------------------------------------------------------ finding folders */
RuntimeObject *RuntimeGetFolderItem(KelpString path, int32_t pathMode);
RuntimeObject *RuntimeGetTrueFolderItem(KelpString path, int32_t pathMode);
RuntimeObject *folderFindFolder(int32_t selector);
RuntimeObject *getVolume(int32_t index);
int32_t getVolumeCount(void);
RuntimeObject *getDesktopFolder(void);
RuntimeObject *getTrashFolder(void);
RuntimeObject *getSystemFolder(void);
RuntimeObject *getTemporaryItemsFolder(void);
RuntimeObject *getTemporaryFolderItem(void);
RuntimeObject *GetDocumentsFolder(void);
RuntimeObject *getPreferencesFolder(void);
RuntimeObject *getFontsFolder(void);
/* Folders of other platforms: always nil here. */
RuntimeObject *getControlPanelsFolder(void);
RuntimeObject *getExtensionsFolder(void);
RuntimeObject *getStartupItemsFolder(void);
RuntimeObject *getShutdownItemsFolder(void);
RuntimeObject *getApplicationSupportFolder(void);
void RuntimeRegisterFileType(KelpString name, KelpString macCreator, KelpString macType,
                             KelpString extensions);
void RuntimeDeregisterFileType(KelpString name);

/* ---------------------------------------------------------- Permissions */
void PermissionsInitializer(RuntimeObject *self);
void PermissionsCtor(RuntimeObject *self, int32_t perms);
/* `bit` is the property's mask (OwnerRead 256 and so on). */
uint8_t PermissionsGetter(RuntimeObject *self, int32_t bit);
void PermissionsSetter(RuntimeObject *self, int32_t bit, uint8_t value);

/* The SpecialFolder object: a new FolderItem for each named folder (the
 * property's selector), or by code (the same numbers, and 1034 to 1045 for
 * the system's folders); nil for an unknown code or without a HOME.  The
 * user's folders follow the desktop's user-dirs settings. */
RuntimeObject *GetSpecialFolder(RuntimeObject *self, int32_t selector);
RuntimeObject *GetSpecialFolderFromCode(int32_t code);
/* The one SpecialFolder object, as a new reference. */
RuntimeObject *systemGetSpecialFoldersClass(void);

#ifdef __cplusplus
}
#endif

#endif
