#include "folder_items/wiring.h"

#include "folder_items/folder_item_object.h"
#include "objects/definitions.h"

namespace kelp {

void WireFolderItems() {
    AddIntrinsicClassAccessor(&FolderItemDefinition);
    AddIntrinsicClassAccessor(&PermissionsDefinition);
    AddIntrinsicFunctions(FolderItemFunctions());
}

} // namespace kelp
