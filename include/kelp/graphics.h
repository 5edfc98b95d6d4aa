/*
 * The runtime's graphics exports, as compiled code calls them: the colour
 * model, the theme's colours, the font list, and the "Graphics" class.
 *
 * A colour is a word 0xRRGGBB.  Coordinates given to a Graphics are relative
 * to its pane's top-left.  A null Graphics object raises NilObjectException
 * and gives a neutral result; a Graphics with nothing to draw on (no display,
 * a closed pane) draws nothing and measures 0.  Strings are borrowed; a
 * returned string carries a reference that the caller owns.
 */
#ifndef KELP_GRAPHICS_H
#define KELP_GRAPHICS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------- colours */

/* Each channel clamped to 0..255. */
uint32_t RuntimeRGB(int32_t red, int32_t green, int32_t blue);
/* Hue, saturation and value in 0.0..1.0 (hue held just below 1). */
uint32_t RuntimeHSV(double hue, double saturation, double value);
/* Cyan, magenta and yellow in 0.0..1.0: the complements of red, green, blue. */
uint32_t RuntimeCMY(double cyan, double magenta, double yellow);

int32_t readColorRed(uint32_t color);
int32_t readColorGreen(uint32_t color);
int32_t readColorBlue(uint32_t color);
double readColorHue(uint32_t color);
double readColorSaturation(uint32_t color);
double readColorValue(uint32_t color);
double readColorCyan(uint32_t color);
double readColorMagenta(uint32_t color);
double readColorYellow(uint32_t color);

/* The theme's colours, read once at start-up. */
uint32_t getFrameColor(void);
uint32_t getFillColor(void);
uint32_t getTextColor(void);
uint32_t getLightTingeColor(void);
uint32_t getDarkTingeColor(void);
uint32_t getLightBevelColor(void);
uint32_t getDarkBevelColor(void);
uint32_t getHilightColor(void);
uint32_t GetDisabledTextColor(void);

/* --------------------------------------------------------------- fonts */

/* The installed font families plus the pseudo family "System" at index 0. */
int32_t getFontCount(void);
/* OutOfBoundsException outside 0..getFontCount() - 1. */
KelpString getFontName(int32_t index);

/* ------------------------------------------------ the class "Graphics" */

/* Properties: getters take (graphics, parameter), setters (graphics,
 * parameter, value); the parameter is unused. */
int32_t graphicsWidthGetter(RuntimeObject *g, int32_t unused);
int32_t graphicsHeightGetter(RuntimeObject *g, int32_t unused);
KelpString graphicsTextFontGetter(RuntimeObject *g, int32_t unused);
void graphicsTextFontSetter(RuntimeObject *g, int32_t unused, KelpString name);
int32_t graphicsTextSizeGetter(RuntimeObject *g, int32_t unused);
void graphicsTextSizeSetter(RuntimeObject *g, int32_t unused, int32_t size);
uint8_t graphicsBoldGetter(RuntimeObject *g, int32_t unused);
void graphicsBoldSetter(RuntimeObject *g, int32_t unused, uint8_t value);
uint8_t graphicsItalicGetter(RuntimeObject *g, int32_t unused);
void graphicsItalicSetter(RuntimeObject *g, int32_t unused, uint8_t value);
uint8_t graphicsUnderlineGetter(RuntimeObject *g, int32_t unused);
void graphicsUnderlineSetter(RuntimeObject *g, int32_t unused, uint8_t value);
uint32_t graphicsForeColorGetter(RuntimeObject *g, int32_t unused);
void graphicsForeColorSetter(RuntimeObject *g, int32_t unused, uint32_t color);
int32_t graphicsPenWidthGetter(RuntimeObject *g, int32_t unused);
void graphicsPenWidthSetter(RuntimeObject *g, int32_t unused, int32_t width);
int32_t graphicsPenHeightGetter(RuntimeObject *g, int32_t unused);
void graphicsPenHeightSetter(RuntimeObject *g, int32_t unused, int32_t height);
int32_t graphicsCopiesGetter(RuntimeObject *g, int32_t unused);
int32_t graphicsFirstPageGetter(RuntimeObject *g, int32_t unused);
int32_t graphicsLastPageGetter(RuntimeObject *g, int32_t unused);
/* UseOldRenderer is kept and read back; it changes nothing. */
uint8_t graphicsUseOldRendererGetter(RuntimeObject *g, int32_t unused);
void graphicsUseOldRendererSetter(RuntimeObject *g, int32_t unused, uint8_t value);

/* Pixel(x, y): reading gives 0xRRGGBB (0 outside the drawable); the
 * assigning form sets one pixel. */
uint32_t graphicsPixelGetter(RuntimeObject *g, int32_t x, int32_t y);
void graphicsPixelSetter(RuntimeObject *g, int32_t x, int32_t y, uint32_t color);

/* Methods.  Sizes of zero or less draw nothing. */
void RuntimeGraphicsClearRect(RuntimeObject *g, int32_t x, int32_t y, int32_t w, int32_t h);
void RuntimeGraphicsDrawLine(RuntimeObject *g, int32_t x1, int32_t y1, int32_t x2, int32_t y2);
void RuntimeGraphicsDrawRect(RuntimeObject *g, int32_t x, int32_t y, int32_t w, int32_t h);
void RuntimeGraphicsFillRect(RuntimeObject *g, int32_t x, int32_t y, int32_t w, int32_t h);
void RuntimeGraphicsDrawOval(RuntimeObject *g, int32_t x, int32_t y, int32_t w, int32_t h);
void RuntimeGraphicsFillOval(RuntimeObject *g, int32_t x, int32_t y, int32_t w, int32_t h);
void RuntimeGraphicsDrawRoundRect(RuntimeObject *g, int32_t x, int32_t y, int32_t w, int32_t h,
                                  int32_t ovalWidth, int32_t ovalHeight);
void RuntimeGraphicsFillRoundRect(RuntimeObject *g, int32_t x, int32_t y, int32_t w, int32_t h,
                                  int32_t ovalWidth, int32_t ovalHeight);
void RuntimeGraphicsDrawFocusRing(RuntimeObject *g, int32_t x, int32_t y, int32_t w, int32_t h);
/* `points` is a 1-based Integer array x1, y1, x2, y2, ...; empty draws nothing. */
void graphicsDrawPolygon(RuntimeObject *g, RuntimeArray *points);
void graphicsFillPolygon(RuntimeObject *g, RuntimeArray *points);
/* The theme's stop, note and caution icons at 32 by 32. */
void graphicsDrawStopIcon(RuntimeObject *g, int32_t x, int32_t y);
void graphicsDrawNoteIcon(RuntimeObject *g, int32_t x, int32_t y);
void graphicsDrawCautionIcon(RuntimeObject *g, int32_t x, int32_t y);

/* DrawString(text, x, y): y is the baseline.  The full form takes the wrap
 * width (0: no wrapping; the first line's baseline is still y) and whether
 * to condense: with a width of 1 or more the text is cut to the width and
 * ends in "...". */
void RuntimeGraphicsDrawString(RuntimeObject *g, KelpString text, int32_t x, int32_t y);
void RuntimeGraphicsDrawStringCondensed(RuntimeObject *g, KelpString text, int32_t x, int32_t y,
                                        int32_t wrapWidth, uint8_t condense);
int32_t RuntimeGraphicsStringWidth(RuntimeObject *g, KelpString text);
int32_t RuntimeGraphicsStringHeight(RuntimeObject *g, KelpString text, int32_t wrapWidth);
int32_t RuntimeGraphicsStringDirection(RuntimeObject *g, KelpString text);
int32_t RuntimeGraphicsTextHeight(RuntimeObject *g);
int32_t RuntimeGraphicsTextAscent(RuntimeObject *g);

/* Printing: ends the page and starts the next one (a screen ignores it). */
void RuntimeGraphicsNextPage(RuntimeObject *g);

/* The class's destructor: deletes the drawing state the object owns. */
void RuntimeGraphicsDestructor(RuntimeObject *g);

#ifdef __cplusplus
}
#endif

#endif
