#include "pictures/wiring.h"

#include "objects/definitions.h"
#include "pictures/picture_object.h"
#include "pictures/resource_fork.h"

#include "kelp/pictures.h"

namespace kelp {

void WirePictures() {
    AddIntrinsicClassAccessor(&PictureDefinition);
    AddIntrinsicClassAccessor(&RGBSurfaceDefinition);
    AddIntrinsicClassAccessor(&ResourceForkDefinition);
    static const TypeRecord pictureType{kTypeObjectOf, nullptr, nullptr, 0, &PictureDefinition};
    static const ParameterRow params[] = {
        {"width", &kTypeInteger}, {"height", &kTypeInteger}, {"depth", &kTypeInteger}};
    static const MethodRow functions[] = {
        {"NewPicture", &pictureType, params, 3, KELP_ENTRY(newPicture)},
    };
    AddIntrinsicFunctions(functions);
}

} // namespace kelp
