#include "pictures/wiring.h"

#include "objects/definitions.h"
#include "pictures/picture_object.h"

namespace kelp {

void WirePictures() {
    AddIntrinsicClassAccessor(&PictureDefinition);
    AddIntrinsicClassAccessor(&RGBSurfaceDefinition);
}

} // namespace kelp
