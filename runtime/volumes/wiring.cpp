#include "volumes/wiring.h"

#include "volumes/virtual_volume_object.h"

#include "objects/definitions.h"

namespace kelp {

void WireVolumes() {
    AddIntrinsicClassAccessor(&VirtualVolumeDefinition);
    AddVolumeRowsToFolderItem();
}

} // namespace kelp
