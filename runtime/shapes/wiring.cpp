#include "shapes/wiring.h"

#include "objects/definitions.h"
#include "pictures/picture_object.h"
#include "shapes/draw_object.h"
#include "shapes/shape_record.h"
#include "system/window_picture.h"

namespace kelp {

void WireShapes() {
    for (DefinitionAccessor accessor :
         {&Object2DDefinition, &RectShapeDefinition, &RoundRectShapeDefinition,
          &OvalShapeDefinition, &ArcShapeDefinition, &PixmapShapeDefinition, &StringShapeDefinition,
          &CurveShapeDefinition, &Group2DDefinition, &FigureShapeDefinition})
        AddIntrinsicClassAccessor(accessor);
    SetVectorPictureHooks({&NewGroup2D, &DrawVectorPicture});
    SetWindowPictureMaker(&MakeWindowPicture);
}

} // namespace kelp
