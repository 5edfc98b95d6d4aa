#include "pictures/picture_object.h"

#include "bitmaps/bmp_codec.h"
#include "bitmaps/pixel_ops.h"
#include "exceptions/raise.h"
#include "graphics/graphics_gtk.h"
#include "graphics/graphics_object.h"
#include "graphics/picture_cut.h"
#include "objects/definitions.h"
#include "strings/kstring.h"

#include "kelp/arrays.h"
#include "kelp/objects.h"
#include "kelp/pictures.h"

#include <cstring>
#include <string>

namespace kelp {
namespace {

PictureRecord *Record(RuntimeObject *self) { return reinterpret_cast<PictureRecord *>(self); }
RGBSurfaceRecord *Surface(RuntimeObject *self) {
    return reinterpret_cast<RGBSurfaceRecord *>(self);
}

const TypeRecord kPictureType{kTypeObjectOf, nullptr, nullptr, 0, &PictureDefinition};
const TypeRecord kSurfaceType{kTypeObjectOf, nullptr, nullptr, 0, &RGBSurfaceDefinition};
const TypeRecord kGraphicsType{kTypeObjectOf, nullptr, nullptr, 0, &GraphicsDefinition};
const TypeRecord kIntegerArray{kTypeArray, nullptr, &kTypeInteger, 1};

// One more reference, handed to the caller.
RuntimeObject *Locked(RuntimeObject *object) {
    RuntimeLockObject(object);
    return object;
}

// The language's one-map Transform and the Pixel property as methods.
void TransformOne(RuntimeObject *self, RuntimeArray *map) { rgbSurfaceTransform(self, map); }

// A map's UBound and its 256 values; false (and the error raised) otherwise.
bool ReadMap(RuntimeArray *map, uint8_t out[256]) {
    int32_t bound = -1;
    if (map)
        bound = reinterpret_cast<kelp_array_ubound>(map->operations[kArraySlotUBoundOf])(map, 1);
    if (bound != 255) {
        std::string message = "Transform map UBound must be 255, not " + std::to_string(bound);
        RaiseWithMessage("RuntimeException", message.c_str());
        return false;
    }
    auto get = reinterpret_cast<kelp_array1_get_i32>(map->operations[kArraySlotGet]);
    for (int32_t i = 0; i < 256; ++i)
        out[i] = static_cast<uint8_t>(get(map, i));
    return true;
}

VectorPictureHooks gVectorHooks;

} // namespace

void SetVectorPictureHooks(const VectorPictureHooks &hooks) { gVectorHooks = hooks; }

DrawablePane *StoreOf(RuntimeObject *picture) { return picture ? Record(picture)->store : nullptr; }

RuntimeObject *NewPictureOfSize(int32_t width, int32_t height) {
    return newPicture(width, height, 32);
}

RuntimeObject *PictureFromBmp(const uint8_t *data, size_t size) {
    RGBImage image;
    if (!DecodeBmp(data, size, image))
        return nullptr;
    RuntimeObject *picture = newPicture(image.width, image.height, 24);
    if (DrawablePane *store = StoreOf(picture))
        store->WriteRGB(image);
    return picture;
}

ObjectDefinition *PictureDefinition() {
    static const PropertyRow properties[] = {
        {0, "Width", &kTypeInteger, KELP_ENTRY(pictureWidthGetter), {}},
        {0, "Height", &kTypeInteger, KELP_ENTRY(pictureHeightGetter), {}},
        {0, "Depth", &kTypeInteger, KELP_ENTRY(PictureDepthGetter), {}},
        {0, "HorizontalResolution", &kTypeInteger, KELP_ENTRY(PictureHResGetter),
         KELP_ENTRY(PictureHResSetter)},
        {0, "VerticalResolution", &kTypeInteger, KELP_ENTRY(PictureVResGetter),
         KELP_ENTRY(PictureVResSetter)},
        {0, "Transparent", &kTypeInteger, KELP_ENTRY(pictureTransparentGetter),
         KELP_ENTRY(pictureTransparentSetter)},
        {0, "Graphics", &kGraphicsType, KELP_ENTRY(pictureGraphicsGetter), {}},
        {0, "Mask", &kPictureType, KELP_ENTRY(pictureMaskGetter), {}},
        {0, "ImageCount", &kTypeInteger, KELP_ENTRY(pictureImageCountGetter), {}},
        {0, "RGBSurface", &kSurfaceType, KELP_ENTRY(pictureRGBSurfaceGetter), {}},
    };
    static const ParameterRow ctorParams[] = {
        {"width", &kTypeInteger}, {"height", &kTypeInteger}, {"depth", &kTypeInteger}};
    static const ParameterRow indexParams[] = {{"index", &kTypeInteger}};
    static const MethodRow methods[] = {
        {"Constructor", nullptr, ctorParams, 3, KELP_ENTRY(PictureConstructor)},
        {"IndexedImage", &kPictureType, indexParams, 1, KELP_ENTRY(pictureIndexedImage)},
    };
    static const ClassDescription description = {
        .name = "Picture",
        .instanceSize = sizeof(PictureRecord),
        .finalizer = KELP_ENTRY(RuntimePictureDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *RGBSurfaceDefinition() {
    static const ParameterRow pixelParams[] = {{"x", &kTypeInteger}, {"y", &kTypeInteger}};
    static const ParameterRow fillParams[] = {
        {"x", &kTypeInteger}, {"y", &kTypeInteger}, {"color", &kTypeColor}};
    static const ParameterRow mapParams[] = {{"map", &kIntegerArray}};
    static const ParameterRow rgbParams[] = {
        {"redMap", &kIntegerArray}, {"greenMap", &kIntegerArray}, {"blueMap", &kIntegerArray}};
    static const MethodRow methods[] = {
        {"Pixel", &kTypeColor, pixelParams, 2, KELP_ENTRY(rgbSurfaceGetPixel),
         KELP_ENTRY(rgbSurfaceSetPixel)},
        {"FloodFill", nullptr, fillParams, 3, KELP_ENTRY(rgbSurfaceSeedFill)},
        {"Transform", nullptr, mapParams, 1, KELP_ENTRY(TransformOne)},
        {"Transform", nullptr, rgbParams, 3, KELP_ENTRY(rgbSurfaceTransformRGB)},
    };
    static const ClassDescription description = {
        .name = "RGBSurface",
        .instanceSize = sizeof(RGBSurfaceRecord),
        .finalizer = KELP_ENTRY(RGBSurfaceDestructor),
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

// ------------------------------------------------------------------- Picture

extern "C" RuntimeObject *newPicture(int32_t width, int32_t height, int32_t depth) {
    RuntimeObject *picture = NewObjectOfDefinition(PictureDefinition());
    PictureConstructor(picture, width, height, depth);
    return picture;
}

extern "C" void PictureConstructor(RuntimeObject *self, int32_t width, int32_t height,
                                   int32_t depth) {
    if (!self)
        return;
    PictureRecord *p = Record(self);
    if (p->store)
        p->store->Release();
    p->store = nullptr;
    p->width = width;
    p->height = height;
    if (depth >= 1)
        p->store = new DrawablePane(width, height, depth);
    else if (gVectorHooks.makeGroup && !p->objects)
        p->objects = gVectorHooks.makeGroup();
}

extern "C" void RuntimePictureDestructor(RuntimeObject *self) {
    if (!self)
        return;
    PictureRecord *p = Record(self);
    if (p->graphicsObject) {
        DetachGraphicsObject(p->graphicsObject); // it must not touch the store
        RuntimeUnlockObject(p->graphicsObject);
        p->graphicsObject = nullptr;
    }
    RuntimeUnlockObject(p->maskPicture);
    p->maskPicture = nullptr;
    if (p->store)
        p->store->Release();
    p->store = nullptr;
    RuntimeUnlockObject(p->objects);
    p->objects = nullptr;
}

extern "C" int32_t pictureWidthGetter(RuntimeObject *self, int32_t) {
    if (!self)
        return 0;
    return Record(self)->store     ? Record(self)->store->Width()
           : Record(self)->objects ? Record(self)->width
                                   : 0;
}

extern "C" int32_t pictureHeightGetter(RuntimeObject *self, int32_t) {
    if (!self)
        return 0;
    return Record(self)->store     ? Record(self)->store->Height()
           : Record(self)->objects ? Record(self)->height
                                   : 0;
}

extern "C" int32_t PictureDepthGetter(RuntimeObject *self, int32_t) {
    DrawablePane *store = StoreOf(self);
    return store ? store->mDepth : 0;
}

extern "C" int32_t PictureHResGetter(RuntimeObject *self, int32_t) {
    DrawablePane *store = StoreOf(self);
    return store ? store->mHorizontalResolution : 72;
}

extern "C" void PictureHResSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (DrawablePane *store = StoreOf(self))
        store->mHorizontalResolution = value;
}

extern "C" int32_t PictureVResGetter(RuntimeObject *self, int32_t) {
    DrawablePane *store = StoreOf(self);
    return store ? store->mVerticalResolution : 72;
}

extern "C" void PictureVResSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (DrawablePane *store = StoreOf(self))
        store->mVerticalResolution = value;
}

extern "C" int32_t pictureTransparentGetter(RuntimeObject *self, int32_t) {
    return self ? Record(self)->transparent : 0;
}

extern "C" void pictureTransparentSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (self)
        Record(self)->transparent = value;
}

extern "C" RuntimeObject *pictureGraphicsGetter(RuntimeObject *self, int32_t) {
    DrawablePane *store = StoreOf(self);
    if (!store)
        return nullptr;
    PictureRecord *p = Record(self);
    if (!p->graphicsObject)
        p->graphicsObject = NewGraphicsObject(new GraphicsGTK(store->Target()), true);
    return Locked(p->graphicsObject);
}

extern "C" RuntimeObject *pictureMaskGetter(RuntimeObject *self, int32_t) {
    DrawablePane *store = StoreOf(self);
    if (!store)
        return nullptr;
    PictureRecord *p = Record(self);
    if (!p->maskPicture) {
        // A new mask is black: the whole picture shows until drawn on.
        auto *mask = new DrawablePane(store->Width(), store->Height(), 32);
        mask->Fill(0x000000);
        if (store->mMask)
            store->mMask->Release();
        store->mMask = mask;
        store->ContentChanged();
        RuntimeObject *maskPicture = NewObjectOfDefinition(PictureDefinition());
        mask->AddRef();
        Record(maskPicture)->store = mask;
        p->maskPicture = maskPicture;
    }
    return Locked(p->maskPicture);
}

extern "C" int32_t pictureImageCountGetter(RuntimeObject *self, int32_t) { return self ? 1 : 0; }

extern "C" RuntimeObject *pictureIndexedImage(RuntimeObject *self, int32_t) {
    return Locked(self); // a picture of one image is its only image
}

extern "C" RuntimeObject *pictureGroup2DGetter(RuntimeObject *self, int32_t) {
    return self ? Locked(Record(self)->objects) : nullptr;
}

extern "C" void pictureGroup2DSetter(RuntimeObject *self, int32_t, RuntimeObject *group) {
    if (!self)
        return;
    RuntimeLockObject(group);
    RuntimeUnlockObject(Record(self)->objects);
    Record(self)->objects = group;
}

extern "C" RuntimeObject *pictureRGBSurfaceGetter(RuntimeObject *self, int32_t) {
    DrawablePane *store = StoreOf(self);
    if (!store || !store->Pixmap())
        return nullptr;
    RuntimeObject *surface = NewObjectOfDefinition(RGBSurfaceDefinition());
    if (!surface)
        return nullptr;
    RGBSurfaceRecord *s = Surface(surface);
    s->picture = Locked(self);
    s->width = store->Width();
    s->height = store->Height();
    s->depth = 32;
    return surface;
}

extern "C" KelpString PicturePacker(RuntimeObject *picture) {
    DrawablePane *store = StoreOf(picture);
    if (!picture)
        return nullptr;
    int32_t w = pictureWidthGetter(picture, 0), h = pictureHeightGetter(picture, 0);
    if (w < 0 || h < 0)
        w = h = 0;
    std::string bytes(8 + static_cast<size_t>(w) * static_cast<size_t>(h) * 4, '\0');
    std::memcpy(&bytes[0], &w, 4);
    std::memcpy(&bytes[4], &h, 4);
    std::vector<uint32_t> pixels = store ? store->ReadPixels() : std::vector<uint32_t>();
    if (!pixels.empty())
        std::memcpy(&bytes[8], pixels.data(), pixels.size() * 4);
    return string::FromBytes(bytes.data(), static_cast<long>(bytes.size()), kEncodingUnknown)
        .ExtractStringStorage();
}

// ---------------------------------------------------------------- RGBSurface

extern "C" void RGBSurfaceDestructor(RuntimeObject *self) {
    if (!self)
        return;
    RuntimeUnlockObject(Surface(self)->picture);
    Surface(self)->picture = nullptr;
}

extern "C" uint32_t rgbSurfaceGetPixel(RuntimeObject *self, int32_t x, int32_t y) {
    DrawablePane *store = self ? StoreOf(Surface(self)->picture) : nullptr;
    return store ? store->GetPixel(x, y) : 0;
}

extern "C" void rgbSurfaceSetPixel(RuntimeObject *self, int32_t x, int32_t y, uint32_t color) {
    if (DrawablePane *store = self ? StoreOf(Surface(self)->picture) : nullptr)
        store->SetPixel(x, y, color & 0xFFFFFF);
}

extern "C" void rgbSurfaceSeedFill(RuntimeObject *self, int32_t x, int32_t y, uint32_t color) {
    DrawablePane *store = self ? StoreOf(Surface(self)->picture) : nullptr;
    if (!store)
        return;
    if (x < 0 || y < 0 || x >= store->Width() || y >= store->Height()) {
        RaiseOutOfBounds();
        return;
    }
    std::vector<uint32_t> pixels = store->ReadPixels();
    if (pixels.empty())
        return;
    PixelBuffer buffer{pixels.data(), store->Width(), store->Height()};
    SeedFill(buffer, x, y, color & 0xFFFFFF);
    store->WritePixels(pixels);
}

extern "C" void rgbSurfaceTransformRGB(RuntimeObject *self, RuntimeArray *red, RuntimeArray *green,
                                       RuntimeArray *blue) {
    DrawablePane *store = self ? StoreOf(Surface(self)->picture) : nullptr;
    if (!store)
        return;
    uint8_t maps[3][256];
    if (!ReadMap(red, maps[0]) || !ReadMap(green, maps[1]) || !ReadMap(blue, maps[2]))
        return;
    if (Surface(self)->depth != 24 && Surface(self)->depth != 32) {
        std::string message =
            "Transform depth must be 24 or 32, not " + std::to_string(Surface(self)->depth);
        RaiseWithMessage("RuntimeException", message.c_str());
        return;
    }
    std::vector<uint32_t> pixels = store->ReadPixels();
    for (uint32_t &p : pixels)
        p = static_cast<uint32_t>(maps[0][p >> 16 & 255]) << 16 |
            static_cast<uint32_t>(maps[1][p >> 8 & 255]) << 8 | maps[2][p & 255];
    store->WritePixels(pixels);
}

extern "C" void rgbSurfaceTransform(RuntimeObject *self, RuntimeArray *map) {
    rgbSurfaceTransformRGB(self, map, map, map);
}

// ------------------------------------------------------------------ Graphics

extern "C" void RuntimeGraphicsDrawPicture(RuntimeObject *g, RuntimeObject *picture, int32_t x,
                                           int32_t y, int32_t destWidth, int32_t destHeight,
                                           int32_t sourceX, int32_t sourceY, int32_t sourceWidth,
                                           int32_t sourceHeight) {
    Graphics *graphics = GraphicsOfObject(g);
    if (!graphics || !picture)
        return;
    PictureCut cut{x, y, destWidth, destHeight, sourceX, sourceY, sourceWidth, sourceHeight};
    DrawablePane *store = StoreOf(picture);
    if (store && CutPictureToStore(cut, store->Width(), store->Height())) {
        Rect bounds{};
        if (GraphicsTarget *target = graphics->Target()) {
            target->PrepareForDrawing();
            bounds = target->Bounds();
        }
        Rect source = RectFromXYWH(cut.sourceX, cut.sourceY, cut.sourceWidth, cut.sourceHeight);
        Rect dest =
            RectFromXYWH(cut.x + bounds.left, cut.y + bounds.top, cut.destWidth, cut.destHeight);
        // White is transparent only for a picture without a mask.
        store->CopyRect(*graphics, source, dest, Record(picture)->transparent == 1);
    }
    if (Record(picture)->objects && gVectorHooks.draw)
        gVectorHooks.draw(
            *graphics, Record(picture)->objects,
            PictureCut{x, y, destWidth, destHeight, sourceX, sourceY, sourceWidth, sourceHeight},
            pictureWidthGetter(picture, 0), pictureHeightGetter(picture, 0));
}
