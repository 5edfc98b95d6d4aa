/*
 * Pictures and RGB surfaces, as compiled code calls them, and the picture
 * side of FolderItem and of Graphics.
 *
 * Failure channels: a nil picture gives 0 or nil; a seed outside the
 * picture raises OutOfBoundsException; a bad Transform map raises
 * RuntimeException with its message; unsupported file formats raise
 * UnsupportedFormatException.  Without a display, pixels read as 0 and
 * writes do nothing.  A returned object or string is the caller's reference.
 */
#ifndef KELP_PICTURES_H
#define KELP_PICTURES_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Depth 1 or more: a white pixel store; below 1: a vector picture. */
RuntimeObject *newPicture(int32_t width, int32_t height, int32_t depth);
void PictureConstructor(RuntimeObject *self, int32_t width, int32_t height, int32_t depth);
void RuntimePictureDestructor(RuntimeObject *self);
int32_t pictureWidthGetter(RuntimeObject *self, int32_t unused);
int32_t pictureHeightGetter(RuntimeObject *self, int32_t unused);
int32_t PictureDepthGetter(RuntimeObject *self, int32_t unused);
int32_t PictureHResGetter(RuntimeObject *self, int32_t unused);
void PictureHResSetter(RuntimeObject *self, int32_t unused, int32_t value);
int32_t PictureVResGetter(RuntimeObject *self, int32_t unused);
void PictureVResSetter(RuntimeObject *self, int32_t unused, int32_t value);
int32_t pictureTransparentGetter(RuntimeObject *self, int32_t unused);
void pictureTransparentSetter(RuntimeObject *self, int32_t unused, int32_t value);
RuntimeObject *pictureGraphicsGetter(RuntimeObject *self, int32_t unused);
RuntimeObject *pictureMaskGetter(RuntimeObject *self, int32_t unused);
int32_t pictureImageCountGetter(RuntimeObject *self, int32_t unused);
RuntimeObject *pictureIndexedImage(RuntimeObject *self, int32_t index);
RuntimeObject *pictureGroup2DGetter(RuntimeObject *self, int32_t unused);
void pictureGroup2DSetter(RuntimeObject *self, int32_t unused, RuntimeObject *group);
RuntimeObject *pictureRGBSurfaceGetter(RuntimeObject *self, int32_t unused);
/* 8 + width * height * 4 bytes: width, height, then 0xRRGGBB words. */
KelpString PicturePacker(RuntimeObject *picture);

void RGBSurfaceDestructor(RuntimeObject *self);
uint32_t rgbSurfaceGetPixel(RuntimeObject *self, int32_t x, int32_t y);
void rgbSurfaceSetPixel(RuntimeObject *self, int32_t x, int32_t y, uint32_t color);
void rgbSurfaceSeedFill(RuntimeObject *self, int32_t x, int32_t y, uint32_t color);
/* Each map is an Integer array with UBound 255. */
void rgbSurfaceTransform(RuntimeObject *self, RuntimeArray *map);
void rgbSurfaceTransformRGB(RuntimeObject *self, RuntimeArray *red, RuntimeArray *green,
                            RuntimeArray *blue);

/* The "BMP " resource of the image, decoded; nil when missing or refused. */
RuntimeObject *RuntimeGetBitmapFromResourceManager(int32_t id);
/* OpenAsPicture: BMP files by their first bytes, the other formats by name. */
RuntimeObject *FolderItemOpenImage(RuntimeObject *self, int32_t format);
/* SaveAsPicture: formats 4 and 350 write a 24-bit BMP. */
void FolderItemSaveAsPicture(RuntimeObject *self, RuntimeObject *picture, int32_t format);
/* SaveAsJPEG: quality 90; a failure sets the item's LastErrorCode. */
void FolderItemSaveAsJPEG(RuntimeObject *self, RuntimeObject *picture);
/* OpenAsVectorPicture: no vector format is read here; the file opens as
 * OpenAsPicture opens it. */
RuntimeObject *FolderItemOpenVectorImage(RuntimeObject *self);
/* OpenAsSound: a Sound on the file when it starts with "RIFF" or "FORM",
 * else nil. */
RuntimeObject *FolderItemOpenSound(RuntimeObject *self);
/* OpenAsMovie and OpenResourceMovie: nil, there being no movie service. */
RuntimeObject *FolderItemOpenMovie(RuntimeObject *self);
RuntimeObject *FolderItemOpenResourceMovie(RuntimeObject *self, int32_t index);

void RuntimeGraphicsDrawPicture(RuntimeObject *g, RuntimeObject *picture, int32_t x, int32_t y,
                                int32_t destWidth, int32_t destHeight, int32_t sourceX,
                                int32_t sourceY, int32_t sourceWidth, int32_t sourceHeight);

/* ResourceFork: files here have none; every member answers nil, 0, false or
 * "" and does nothing. */
void resourceForkClose(RuntimeObject *self);
void ResourceForkDestructor(RuntimeObject *self);
int32_t resourceForkTypeCount(RuntimeObject *self);
KelpString resourceForkResourceType(RuntimeObject *self, int32_t);
KelpString resourceForkGetResource(RuntimeObject *self, KelpString, int32_t);
RuntimeObject *resourceForkGetHandle(RuntimeObject *self, KelpString, int32_t);
void resourceForkReleaseHandle(RuntimeObject *self, RuntimeObject *);
KelpString resourceForkGetNamedResource(RuntimeObject *self, KelpString, KelpString);
int32_t resourceForkResourceCount(RuntimeObject *self, KelpString);
int32_t resourceForkResourceID(RuntimeObject *self, KelpString, int32_t);
KelpString resourceForkResourceName(RuntimeObject *self, KelpString, int32_t);
void resourceForkAddResource(RuntimeObject *self, KelpString, KelpString, int32_t, KelpString);
void resourceForkAddPicture(RuntimeObject *self, RuntimeObject *, int32_t, KelpString);
void resourceForkRemoveResource(RuntimeObject *self, KelpString, int32_t);
RuntimeObject *resourceForkGetSound(RuntimeObject *self, int32_t);
RuntimeObject *resourceForkGetPicture(RuntimeObject *self, int32_t);
RuntimeObject *resourceForkGetCicn(RuntimeObject *self, int32_t);
RuntimeObject *resourceForkGetIcl(RuntimeObject *self, int32_t);
RuntimeObject *resourceForkGetIcs(RuntimeObject *self, int32_t);
RuntimeObject *resourceForkGetCursor(RuntimeObject *self, int32_t);
RuntimeObject *resourceForkGetNamedPicture(RuntimeObject *self, KelpString);
uint8_t resourceForkGetLocked(RuntimeObject *self, KelpString, int32_t);
uint8_t resourceForkGetProtected(RuntimeObject *self, KelpString, int32_t);
uint8_t resourceForkGetPreload(RuntimeObject *self, KelpString, int32_t);
uint8_t resourceForkGetPurgeable(RuntimeObject *self, KelpString, int32_t);
uint8_t resourceForkGetSysHeap(RuntimeObject *self, KelpString, int32_t);
void resourceForkSetLocked(RuntimeObject *self, KelpString, int32_t, uint8_t);
void resourceForkSetProtected(RuntimeObject *self, KelpString, int32_t, uint8_t);
void resourceForkSetPreload(RuntimeObject *self, KelpString, int32_t, uint8_t);
void resourceForkSetPurgeable(RuntimeObject *self, KelpString, int32_t, uint8_t);
void resourceForkSetSysHeap(RuntimeObject *self, KelpString, int32_t, uint8_t);

/* A new reference to the picture (nil stays nil), for code that keeps it. */
RuntimeObject *RuntimePictureReference(RuntimeObject *picture);
/* The picture's Graphics for a plug-in to draw with, as Picture.Graphics. */
RuntimeObject *pluginPictureGraphicsGetter(RuntimeObject *picture);

#ifdef __cplusplus
}
#endif

#endif
