#include "folder_items/wiring.h"

#include "folder_items/folder_item_object.h"
#include "objects/definitions.h"

#include "kelp/files.h"

namespace kelp {

void WireFolderItems() {
    AddIntrinsicClassAccessor(&FolderItemDefinition);
    AddIntrinsicClassAccessor(&PermissionsDefinition);
    AddIntrinsicClassAccessor(&SpecialFolderDefinition);
    static const TypeRecord specialFolder{kTypeObjectOf, nullptr, nullptr, 0,
                                          &SpecialFolderDefinition};
    static const MethodRow rows[] = {
        {"SpecialFolder", &specialFolder, nullptr, 0, KELP_ENTRY(systemGetSpecialFoldersClass)},
    };
    AddIntrinsicFunctions(rows);
    AddIntrinsicFunctions(FolderItemFunctions());
}

} // namespace kelp
