/*
 * Canvas, drag items, drops and the clipboard, as compiled code calls them.
 *
 * Failure channels: a nil control, view or item does nothing and gives 0,
 * nil or the empty string; nothing raises.  Without a display the clipboard
 * reads empty and takes nothing.  A returned object or string is the
 * caller's reference.
 */
#ifndef KELP_CANVAS_H
#define KELP_CANVAS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Canvas */
void CanvasCreatePane(RuntimeObject *self);
void RuntimeCanvasInitializer(RuntimeObject *self);
void RuntimeCanvasDestructor(RuntimeObject *self);
RuntimeObject *canvasGraphicsGetter(RuntimeObject *self, int32_t unused);
void canvasBackdropSetter(RuntimeObject *self, int32_t unused, RuntimeObject *picture);
/* A width or height of -10000 means the canvas's own. */
void canvasScroll(RuntimeObject *self, int32_t dx, int32_t dy, int32_t left, int32_t top,
                  int32_t width, int32_t height, uint8_t scrollControls);
/* Draws the control (and what lies on it) into `graphics` at (left, top). */
void RuntimeControlDrawInto(RuntimeObject *control, RuntimeObject *graphics, int32_t left,
                            int32_t top);
/* The window's background, its Paint and its canvases into `graphics`. */
void formDrawInto(RuntimeObject *view, RuntimeObject *graphics, int32_t left, int32_t top);
/* The window's back colour, Backdrop and Paint as seen from its point
 * (x, y), drawn at the origin of `graphics`: what lies behind a control
 * there.  Controls are not drawn. */
void formDrawBackground(RuntimeObject *view, RuntimeObject *graphics, int32_t x, int32_t y);

/* Drops onto controls and windows */
RuntimeObject *controlNewDragItem(RuntimeObject *control, int32_t left, int32_t top, int32_t width,
                                  int32_t height);
RuntimeObject *formNewDragItem(RuntimeObject *view, int32_t left, int32_t top, int32_t width,
                               int32_t height);
void controlAcceptTextDrop(RuntimeObject *control);
void controlAcceptPictureDrop(RuntimeObject *control);
void controlAcceptFileDrop(RuntimeObject *control, KelpString fileType);
void controlAcceptMacDataDrop(RuntimeObject *control, KelpString type);
void formAcceptTextDrop(RuntimeObject *view);
void formAcceptPictureDrop(RuntimeObject *view);
void formAcceptFileDrop(RuntimeObject *view, KelpString fileType);
void formAcceptMacDataDrop(RuntimeObject *view, KelpString type);

/* DragItem */
void DragItemInitializer(RuntimeObject *self);
void DragItemFinalizer(RuntimeObject *self);
void DragItemAddItem(RuntimeObject *self, int32_t left, int32_t top, int32_t width, int32_t height);
/* Runs only inside the press of a MouseDown; returns when the button is up. */
void DragItemDrag(RuntimeObject *self);
uint8_t DragItemNextItem(RuntimeObject *self);
int32_t dragItemDropLeft(RuntimeObject *self, int32_t unused);
int32_t dragItemDropTop(RuntimeObject *self, int32_t unused);
int32_t dragItemDropWidth(RuntimeObject *self, int32_t unused);
int32_t dragItemDropHeight(RuntimeObject *self, int32_t unused);
intptr_t dragItemGetHandle(RuntimeObject *self, int32_t unused);
uint8_t DragItemTextAvailable(RuntimeObject *self);
KelpString dragItemTextGetter(RuntimeObject *self, int32_t unused);
void dragItemTextSetter(RuntimeObject *self, int32_t unused, KelpString text);
uint8_t DragItemPictureAvailable(RuntimeObject *self);
RuntimeObject *dragItemPictureGetter(RuntimeObject *self, int32_t unused);
void dragItemPictureSetter(RuntimeObject *self, int32_t unused, RuntimeObject *picture);
uint8_t DragItemFolderItemAvailable(RuntimeObject *self);
RuntimeObject *dragItemFolderItemGetter(RuntimeObject *self, int32_t unused);
void dragItemFolderItemSetter(RuntimeObject *self, int32_t unused, RuntimeObject *item);
/* Raw data: `type` is four characters; the data is any bytes. */
uint8_t DragItemMacDataAvailable(RuntimeObject *self, KelpString type);
KelpString DragItemGetMacData(RuntimeObject *self, KelpString type);
void DragItemSetMacData(RuntimeObject *self, KelpString type, KelpString data);
void DragItemSetPrivateMacData(RuntimeObject *self, KelpString type, KelpString data);

/* Clipboard */
void ClipboardInitializer(RuntimeObject *self);
void ClipboardFinalizer(RuntimeObject *self);
void clipboardClose(RuntimeObject *self);
KelpString clipboardTextGetter(RuntimeObject *self, int32_t unused);
void clipboardTextSetter(RuntimeObject *self, int32_t unused, KelpString text);
void clipboardSetText(RuntimeObject *self, KelpString text);
uint8_t clipboardTextAvailable(RuntimeObject *self);
uint8_t clipboardMacDataAvailable(RuntimeObject *self, KelpString type);
KelpString clipboardMacData(RuntimeObject *self, KelpString type);
void clipboardAddMacData(RuntimeObject *self, KelpString type, KelpString data);
uint8_t clipboardPictureAvailable(RuntimeObject *self);
RuntimeObject *clipboardPictureGetter(RuntimeObject *self, int32_t unused);
void clipboardPictureSetter(RuntimeObject *self, int32_t unused, RuntimeObject *picture);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* KELP_CANVAS_H */
