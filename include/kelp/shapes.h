/*
 * 2D shapes as compiled code calls them: Object2D and its shapes, groups and
 * figures, and drawing them on a Graphics.
 *
 * Shapes are plain records of geometry and style; X and Y are a shape's
 * centre and angles are in radians.  Fill and Border are percentages in the
 * language and fractions in the record.
 *
 * Failure channels: a null shape raises NilObjectException and gives a
 * neutral result (0, nil, false); Item, Remove and Insert of a group with a
 * bad index, and ControlX or ControlY of a curve with an index other than 0
 * or 1, raise OutOfBoundsException.  Bad geometry (zero or negative sizes,
 * NaN or infinite numbers) never raises: it draws what the numbers allow,
 * which may be nothing.  A returned object or string is the caller's
 * reference; arguments are borrowed.
 */
#ifndef KELP_SHAPES_H
#define KELP_SHAPES_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------- Object2D */

void Object2DConstructor(RuntimeObject *self);
/* X, Y, Rotation and Scale: a group moves, turns or scales its members with
 * it, and a curve its end and control points.  Other doubles are stored. */
void Object2DDoubleSetter(RuntimeObject *self, int32_t offset, double value);
/* Fill and Border: the stored fraction times 100, and back. */
double doublePercentGetter(RuntimeObject *self, int32_t offset);
void doublePercentSetter(RuntimeObject *self, int32_t offset, double value);

/* ------------------------------------------------------------- shapes */

void RectShapeConstructor(RuntimeObject *self);
/* Whether (x, y) lies inside a shape with a size (rect, round rect, oval,
 * arc, pixmap). */
uint8_t RectShapeContains(RuntimeObject *self, double x, double y);
void RoundRectShapeConstructor(RuntimeObject *self);
void OvalShapeConstructor(RuntimeObject *self);
void ArcShapeConstructor(RuntimeObject *self);
/* Stored reduced to 0 .. 2 pi. */
void ArcStartAngleSetter(RuntimeObject *self, int32_t offset, double value);

void PixmapShapeConstructor(RuntimeObject *self);
void PixmapShapeDestructor(RuntimeObject *self);
/* Holds the picture and takes its size as Width, Height and the source's. */
void PixmapShapeImageCtor(RuntimeObject *self, RuntimeObject *picture);

void StringShapeConstructor(RuntimeObject *self);
void StringShapeDestructor(RuntimeObject *self);
KelpString StringToSSGetter(RuntimeObject *self, int32_t unused);
void SSToStringSetter(RuntimeObject *self, int32_t unused, KelpString text);

void CurveShapeConstructor(RuntimeObject *self);
double CurveGetControlX(RuntimeObject *self, int32_t index);
double CurveGetControlY(RuntimeObject *self, int32_t index);
void CurveSetControlX(RuntimeObject *self, int32_t index, double value);
void CurveSetControlY(RuntimeObject *self, int32_t index, double value);
/* 0 straight, 1 quadratic, 2 cubic; other values are held to that range. */
void CurveOrderSetter(RuntimeObject *self, int32_t unused, int32_t order);

/* ------------------------------------------------------------- groups */

void Group2DConstructor(RuntimeObject *self);
void Group2DDestructor(RuntimeObject *self);
int32_t Group2DCount(RuntimeObject *self);
void Group2DAppend(RuntimeObject *self, RuntimeObject *item);
/* index 0 .. Count; the item goes before the one at index. */
void Group2DInsert(RuntimeObject *self, int32_t index, RuntimeObject *item);
RuntimeObject *Group2DGetItem(RuntimeObject *self, int32_t index);
void Group2DSetItem(RuntimeObject *self, int32_t index, RuntimeObject *item);
void Group2DRemoveByIndex(RuntimeObject *self, int32_t index);
/* Removes the first place that holds item; nothing when there is none. */
void Group2DRemoveByObject(RuntimeObject *self, RuntimeObject *item);

void FigureShapeConstructor(RuntimeObject *self);
void FigureShapeDestructor(RuntimeObject *self);
void FigureShapeAddLine(RuntimeObject *self, float x1, float y1, float x2, float y2);
void FigureShapeAddQuad(RuntimeObject *self, float x1, float y1, float x2, float y2, float cx1,
                        float cy1);
void FigureShapeAddCubic(RuntimeObject *self, float x1, float y1, float x2, float y2, float cx1,
                         float cy1, float cx2, float cy2);

/* ------------------------------------------------------------- drawing */

/* Draws the shape (a nil shape draws nothing), moved by deltaX, deltaY in
 * the pane's coordinates for the length of the draw. */
void RuntimeGraphicsDrawObject(RuntimeObject *g, RuntimeObject *shape);
void RuntimeGraphicsDrawObjectXY(RuntimeObject *g, RuntimeObject *shape, int32_t deltaX,
                                 int32_t deltaY);

#ifdef __cplusplus
}
#endif

#endif
