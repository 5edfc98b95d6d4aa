// The picture of a window's content that System._DrawWindow gives: made
// here, where pictures and the System object are both in reach.
#include "shapes/wiring.h"

#include "graphics/graphics_gtk.h"
#include "pictures/picture_object.h"
#include "system/window_picture.h"

#include "kelp/pictures.h"

#include <algorithm>

namespace kelp {

RuntimeObject *MakeWindowPicture(int32_t width, int32_t height, RuntimeObject *backDrop,
                                 bool stretch, uint32_t fill) {
    RuntimeObject *picture = newPicture(width, height, 32);
    DrawablePane *store = StoreOf(picture);
    if (!store)
        return picture;
    store->Fill(fill);
    DrawablePane *backStore = StoreOf(backDrop);
    if (!backStore || backStore == store)
        return picture;
    GraphicsGTK g(store->Target());
    store->Target()->PrepareForDrawing();
    const bool masked = reinterpret_cast<PictureRecord *>(backDrop)->transparent == 1;
    const int32_t bw = backStore->Width(), bh = backStore->Height();
    if (stretch) {
        backStore->CopyRect(g, RectFromXYWH(0, 0, bw, bh), RectFromXYWH(0, 0, width, height),
                            masked);
    } else {
        // From the top left corner, cut to the picture.
        const int32_t w = std::min(bw, width), h = std::min(bh, height);
        backStore->CopyRect(g, RectFromXYWH(0, 0, w, h), RectFromXYWH(0, 0, w, h), masked);
    }
    return picture;
}

} // namespace kelp
