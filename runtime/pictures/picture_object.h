#pragma once
// Picture and RGBSurface of the language.  A Picture owns one reference of
// its store (null for a vector picture); its Graphics and Mask objects are
// made on first use and kept.
#include "pictures/drawable.h"

#include "kelp/records.h"

namespace kelp {

struct ObjectDefinition;
class Graphics;

struct PictureRecord {
    RuntimeObject object;
    int32_t transparent;           // 1: white is transparent when drawn
    DrawablePane *store;           // owned reference; null for a vector picture
    RuntimeObject *graphicsObject; // counted, made on first use
    RuntimeObject *maskPicture;    // counted, made on first use
    int32_t width, height;         // used when there is no store
    RuntimeObject *objects;        // the vector part, counted, or nil
};

struct RGBSurfaceRecord {
    RuntimeObject object;
    RuntimeObject *picture; // counted
    int32_t width, height;
    int32_t depth; // 32: a pixel is 0xRRGGBB
};

ObjectDefinition *PictureDefinition();
ObjectDefinition *RGBSurfaceDefinition();

// A new Picture (the caller's reference) of the size, depth 32, white.
RuntimeObject *NewPictureOfSize(int32_t width, int32_t height);
// The store of a picture object; null for nil or a vector picture.
DrawablePane *StoreOf(RuntimeObject *picture);
// A picture from the bytes of a BMP file; nil for anything it refuses.
RuntimeObject *PictureFromBmp(const uint8_t *data, size_t size);

// The vector part of a picture belongs to the shapes, which stand above
// the pictures: they make a vector picture's empty group and draw a
// picture's group where the picture is drawn (the placement as the caller
// gave it, and the picture's own size).
struct PictureCut;
struct VectorPictureHooks {
    RuntimeObject *(*makeGroup)() = nullptr;
    void (*draw)(Graphics &g, RuntimeObject *group, const PictureCut &cut, int32_t width,
                 int32_t height) = nullptr;
};
void SetVectorPictureHooks(const VectorPictureHooks &hooks);

} // namespace kelp
