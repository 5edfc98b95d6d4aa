#pragma once
// The folders a program asks for by purpose, the registry of file types,
// and the items that live only for this run.
#include "folder_items/folder_item_imp.h"

#include <string>

namespace kelp {

enum class SpecialFolder {
    kDesktop,            // ~/Desktop, else ~/.gnome-desktop, else ~
    kDocuments,          // ~/Documents, else ~
    kTrash,              // ~/.Trash, or none
    kSystem,             // /usr/
    kTemporary,          // /tmp/
    kPreferences,        // ~
    kApplicationSupport, // ~
};
// Null when the folder has no meaning here, or there is no HOME.
std::unique_ptr<FolderItemImp> FindSpecialFolder(SpecialFolder which);

// The standard folders by number (1034 "/etc" to 1045 "/usr/lib"); null
// for any other number.  None is tested for existence.
std::unique_ptr<FolderItemImp> FindStandardFolder(int32_t selector);

// A name in /tmp that does not exist yet; the file is not made.
std::unique_ptr<FolderItemImp> NewTemporaryItemName();

// Removes the item at the run-down, a folder with all it holds (leaves
// first, the folder itself last).
void RemoveItemAtShutdown(const FolderItemImp &item);

// File types: a later registration of the same name adds a second record.
void RegisterFileType(const std::string &name, const std::string &macCreator,
                      const std::string &macType, const std::string &extensions);
void DeregisterFileType(const std::string &name);
// The name of the first registered type one of whose ";"-separated endings
// ends `fileName` (compared without regard to case); "" for none.
std::string FileTypeOfName(const std::string &fileName);
// The ";"-separated endings of every type registered under `name`, appended
// to `endings`; false when no type has that name.
bool FileTypeEndings(const std::string &name, std::string *endings);

} // namespace kelp
