/* Mouse cursors, screens, tray items and the beep, as compiled code calls
 * them.  Without a display a cursor holds no toolkit cursor (the default)
 * and a screen measures 0 by 0. */
#ifndef KELP_CURSORS_H
#define KELP_CURSORS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

void mouseCursorDestructor(RuntimeObject *cursor);
/* The one _Cursors object, with a new reference; each of its getters hands
 * out the same MouseCursor at every read, with a new reference. */
RuntimeObject *GetCursorsClass(void);
RuntimeObject *GetHandOpenCursor(RuntimeObject *cursors, int32_t parameter);
RuntimeObject *GetHandClosedCursor(RuntimeObject *cursors, int32_t parameter);
RuntimeObject *GetFingerPointerCursor(RuntimeObject *cursors, int32_t parameter);
RuntimeObject *GetEastWestCursor(RuntimeObject *cursors, int32_t parameter);
RuntimeObject *GetNorthSouthCursor(RuntimeObject *cursors, int32_t parameter);
RuntimeObject *GetNorthEastSouthWestCursor(RuntimeObject *cursors, int32_t parameter);
RuntimeObject *GetNorthWestSouthEastCursor(RuntimeObject *cursors, int32_t parameter);
RuntimeObject *GetAllDirectionsCursor(RuntimeObject *cursors, int32_t parameter);
RuntimeObject *GetSplitterEastWestCursor(RuntimeObject *cursors, int32_t parameter);
RuntimeObject *GetSplitterNorthSouthCursor(RuntimeObject *cursors, int32_t parameter);
RuntimeObject *GetStandardPointerCursor(RuntimeObject *cursors, int32_t parameter);
RuntimeObject *GetTheIBeamCursor(RuntimeObject *cursors, int32_t parameter);
RuntimeObject *GetWaitCursor(RuntimeObject *cursors, int32_t parameter);
/* A new MouseCursor at each call: the toolkit's default, the watch, the
 * text cursor. */
RuntimeObject *getArrowCursor(void);
RuntimeObject *getWatchCursor(void);
RuntimeObject *getIBeamCursor(void);
/* A new MouseCursor from resource ("CURS", id), or null without one. */
RuntimeObject *RuntimeGetCursorFromResourceManager(int32_t id);

/* Always 1; getScreen(0) is a new Screen, any other index null. */
int32_t getScreenCount(void);
RuntimeObject *getScreen(int32_t index);
/* The properties of a Screen; 0 for nil. */
int32_t screenLeftGetter(RuntimeObject *self, int32_t unused);
int32_t screenTopGetter(RuntimeObject *self, int32_t unused);
int32_t screenWidthGetter(RuntimeObject *self, int32_t unused);
int32_t screenHeightGetter(RuntimeObject *self, int32_t unused);
int32_t screenDepthGetter(RuntimeObject *self, int32_t unused);

void TrayItemInitializer(RuntimeObject *item);
void TrayItemFinalizer(RuntimeObject *item);
void TrayItemSetPicture(RuntimeObject *item, int32_t parameter, RuntimeObject *picture);
void TrayItemSetHelpTag(RuntimeObject *item, int32_t parameter, stringStorage *text);
/* There is no tray here: items are taken and shown nowhere. */
void AddTrayItem(RuntimeObject *app, RuntimeObject *item);
void RemoveTrayItem(RuntimeObject *app, RuntimeObject *item);

void RuntimeBeep(void);

#ifdef __cplusplus
}
#endif

#endif
