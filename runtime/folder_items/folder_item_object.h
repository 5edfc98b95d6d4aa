#pragma once
// FolderItem and Permissions of the language.  A FolderItem holds one
// FolderItemImp; every decision is the implementation's.
#include "folder_items/folder_item_imp.h"

#include "kelp/records.h"

#include <memory>
#include <span>

namespace kelp {

struct ObjectDefinition;

struct FolderItemRecord {
    RuntimeObject object;
    FolderItemImp *imp; // owned; null only before construction
};

struct PermissionsRecord {
    RuntimeObject object;
    int32_t mode; // the twelve bits of a file mode
};

ObjectDefinition *FolderItemDefinition();
ObjectDefinition *PermissionsDefinition();
ObjectDefinition *SpecialFolderDefinition();
// The language's functions that find items: GetFolderItem, DesktopFolder, ...
std::span<const struct MethodRow> FolderItemFunctions();

// A new FolderItem (the caller's reference) on `imp`; nil for a null imp.
RuntimeObject *NewFolderItem(std::unique_ptr<FolderItemImp> imp);

// The implementation of a language item.  A nil item raises
// NilObjectException, an item without one is the assertion "entry->mImp";
// both answer null.
FolderItemImp *ImpOf(RuntimeObject *item);

} // namespace kelp
