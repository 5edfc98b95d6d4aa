// The "Graphics" class of the language: coordinates relative to the pane,
// properties and methods over the Graphics* the object holds.
#include "graphics/graphics_object.h"

#include "kelp/graphics.h"
#include "kelp/objects.h"

#include "base/fatal_report.h"
#include "exceptions/raise.h"
#include "graphics/graphics_gtk.h"
#include "objects/definitions.h"
#include "strings/kstring.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kelp {

namespace {

// Text of a language string as UTF-8, whatever its encoding (text of an
// unknown encoding is read as the system's, and invalid UTF-8 that still
// gets through is taken as Latin-1 by the drawing side).
std::string TextOf(KelpString s) {
    if (!s || s->length <= 0)
        return {};
    return std::string(GetUTF8String(kelp::string::Wrap(s)).View());
}

// The Graphics behind the object, with the nil check that every entry
// makes; null when there is nothing to do.
Graphics *Get(RuntimeObject *object) {
    if (!object) {
        RaiseNilObject();
        return nullptr;
    }
    return reinterpret_cast<GraphicsObject *>(object)->handle;
}

// The pane's top-left, added to the coordinates the language gives.
bool PaneOrigin(Graphics *g, int32_t &left, int32_t &top) {
    GraphicsTarget *target = g->Target();
    KELP_ASSERT(target != nullptr, "runpanes");
    if (!target)
        return false;
    Rect bounds = target->Bounds();
    left = bounds.left;
    top = bounds.top;
    return true;
}

// For drawing methods: the Graphics, its pane's origin, and the target's
// chance to rebuild a purged offscreen store.
Graphics *ForDrawing(RuntimeObject *object, int32_t &left, int32_t &top) {
    Graphics *g = Get(object);
    if (!g || !PaneOrigin(g, left, top))
        return nullptr;
    g->Target()->PrepareForDrawing();
    return g;
}

// The rect between (x, y) and (x + w, y + h) in window coordinates, its
// corners in order whichever way the size points; false for a size of zero.
bool MakeRect(RuntimeObject *object, Graphics *&g, int32_t x, int32_t y, int32_t w, int32_t h,
              Rect &r) {
    int32_t left = 0, top = 0;
    g = ForDrawing(object, left, top);
    if (!g || w == 0 || h == 0)
        return false;
    if (w < 0)
        x += w, w = -w;
    if (h < 0)
        y += h, h = -h;
    r = RectFromXYWH(x + left, y + top, w, h);
    return true;
}

void SetStyleBit(RuntimeObject *object, int32_t bit, uint8_t on) {
    if (Graphics *g = Get(object))
        g->SetTextStyle(on ? (g->TextStyle() | bit) : (g->TextStyle() & ~bit));
}

uint8_t StyleBit(RuntimeObject *object, int32_t bit) {
    Graphics *g = Get(object);
    return g && (g->TextStyle() & bit) ? 1 : 0;
}

void DrawPolygonOf(RuntimeObject *object, RuntimeArray *points, bool fill) {
    int32_t left = 0, top = 0;
    Graphics *g = ForDrawing(object, left, top);
    if (!g || !points)
        return;
    // A one-dimensional Integer array; index 0 is unused.
    if (points->dimensions != 1 || !points->buffer)
        return;
    const int32_t upper = points->upperBounds[0];
    if (upper < 1 || static_cast<int64_t>(upper + 1) * 4 > points->bufferLength)
        return;
    const auto *values = static_cast<const int32_t *>(points->buffer);
    std::vector<int32_t> coords(upper + (upper % 2));
    for (int32_t i = 0; i < upper; ++i)
        coords[i] = values[i + 1] + ((i % 2) ? top : left);
    if (upper % 2)
        coords[upper] = top;
    g->DrawPolygon(coords.data(), static_cast<int32_t>(coords.size()), fill);
}

void DrawIcon(RuntimeObject *object, int32_t kind, int32_t x, int32_t y) {
    int32_t left = 0, top = 0;
    if (Graphics *g = ForDrawing(object, left, top))
        g->DrawStockIcon(kind, x + left, y + top, 32, 32);
}

} // namespace

RuntimeObject *NewGraphicsObject(Graphics *g, bool owns) {
    RuntimeObject *object = NewObjectOfDefinition(GraphicsDefinition());
    if (object) {
        auto *go = reinterpret_cast<GraphicsObject *>(object);
        go->handle = g;
        go->ownsHandle = owns ? 1 : 0;
    }
    return object;
}

Graphics *GraphicsOfObject(RuntimeObject *object) {
    return object ? reinterpret_cast<GraphicsObject *>(object)->handle : nullptr;
}

void DetachGraphicsObject(RuntimeObject *object) {
    if (!object)
        return;
    auto *go = reinterpret_cast<GraphicsObject *>(object);
    if (go->ownsHandle)
        delete go->handle;
    go->handle = nullptr;
    go->ownsHandle = 0;
}

} // namespace kelp

using kelp::Get;
using kelp::Graphics;
using kelp::Rect;

extern "C" {

// ------------------------------------------------------------ properties

int32_t graphicsWidthGetter(RuntimeObject *g, int32_t) {
    Graphics *gr = Get(g);
    if (!gr || !gr->Target())
        return 0;
    Rect b = gr->Target()->Bounds();
    return b.right - b.left;
}

int32_t graphicsHeightGetter(RuntimeObject *g, int32_t) {
    Graphics *gr = Get(g);
    if (!gr || !gr->Target())
        return 0;
    Rect b = gr->Target()->Bounds();
    return b.bottom - b.top;
}

KelpString graphicsTextFontGetter(RuntimeObject *g, int32_t) {
    Graphics *gr = Get(g);
    return gr ? kelp::string::FromUTF8(gr->TextFont()).Release() : nullptr;
}

void graphicsTextFontSetter(RuntimeObject *g, int32_t, KelpString name) {
    if (Graphics *gr = Get(g))
        gr->SetTextFont(kelp::TextOf(name));
}

int32_t graphicsTextSizeGetter(RuntimeObject *g, int32_t) {
    Graphics *gr = Get(g);
    return gr ? gr->TextSize() : 0;
}

void graphicsTextSizeSetter(RuntimeObject *g, int32_t, int32_t size) {
    if (Graphics *gr = Get(g))
        gr->SetTextSize(size);
}

uint8_t graphicsBoldGetter(RuntimeObject *g, int32_t) {
    return kelp::StyleBit(g, kelp::kStyleBold);
}
void graphicsBoldSetter(RuntimeObject *g, int32_t, uint8_t v) {
    kelp::SetStyleBit(g, kelp::kStyleBold, v);
}
uint8_t graphicsItalicGetter(RuntimeObject *g, int32_t) {
    return kelp::StyleBit(g, kelp::kStyleItalic);
}
void graphicsItalicSetter(RuntimeObject *g, int32_t, uint8_t v) {
    kelp::SetStyleBit(g, kelp::kStyleItalic, v);
}
uint8_t graphicsUnderlineGetter(RuntimeObject *g, int32_t) {
    return kelp::StyleBit(g, kelp::kStyleUnderline);
}
void graphicsUnderlineSetter(RuntimeObject *g, int32_t, uint8_t v) {
    kelp::SetStyleBit(g, kelp::kStyleUnderline, v);
}

uint32_t graphicsForeColorGetter(RuntimeObject *g, int32_t) {
    Graphics *gr = Get(g);
    return gr ? kelp::RGBToColorWord(gr->ForeColor()) : 0;
}

void graphicsForeColorSetter(RuntimeObject *g, int32_t, uint32_t color) {
    if (Graphics *gr = Get(g))
        gr->SetForeColor(kelp::ColorWordToRGB(color));
}

int32_t graphicsPenWidthGetter(RuntimeObject *g, int32_t) {
    Graphics *gr = Get(g);
    return gr ? gr->PenWidth() : 0;
}

void graphicsPenWidthSetter(RuntimeObject *g, int32_t, int32_t width) {
    if (Graphics *gr = Get(g))
        gr->SetPenSize(width, gr->PenHeight());
}

int32_t graphicsPenHeightGetter(RuntimeObject *g, int32_t) {
    Graphics *gr = Get(g);
    return gr ? gr->PenHeight() : 0;
}

void graphicsPenHeightSetter(RuntimeObject *g, int32_t, int32_t height) {
    if (Graphics *gr = Get(g))
        gr->SetPenSize(gr->PenWidth(), height);
}

int32_t graphicsCopiesGetter(RuntimeObject *g, int32_t) {
    Graphics *gr = Get(g);
    return gr && gr->Target() ? gr->Target()->Copies() : 0;
}

int32_t graphicsFirstPageGetter(RuntimeObject *g, int32_t) {
    Graphics *gr = Get(g);
    return gr && gr->Target() ? gr->Target()->FirstPage() : 0;
}

int32_t graphicsLastPageGetter(RuntimeObject *g, int32_t) {
    Graphics *gr = Get(g);
    return gr && gr->Target() ? gr->Target()->LastPage() : 0;
}

uint8_t graphicsUseOldRendererGetter(RuntimeObject *g, int32_t) {
    if (!g) {
        kelp::RaiseNilObject();
        return 0;
    }
    return reinterpret_cast<kelp::GraphicsObject *>(g)->useOldRenderer;
}

void graphicsUseOldRendererSetter(RuntimeObject *g, int32_t, uint8_t value) {
    if (!g) {
        kelp::RaiseNilObject();
        return;
    }
    reinterpret_cast<kelp::GraphicsObject *>(g)->useOldRenderer = value ? 1 : 0;
}

uint32_t graphicsPixelGetter(RuntimeObject *g, int32_t x, int32_t y) {
    int32_t left = 0, top = 0;
    Graphics *gr = kelp::ForDrawing(g, left, top);
    kelp::RGBColor rgb;
    if (!gr || !gr->GetPixel(x + left, y + top, rgb))
        return 0;
    // The high byte of each channel.
    return (static_cast<uint32_t>(rgb.red >> 8) << 16) |
           (static_cast<uint32_t>(rgb.green >> 8) << 8) | static_cast<uint32_t>(rgb.blue >> 8);
}

void graphicsPixelSetter(RuntimeObject *g, int32_t x, int32_t y, uint32_t color) {
    int32_t left = 0, top = 0;
    if (Graphics *gr = kelp::ForDrawing(g, left, top))
        gr->SetPixel(x + left, y + top, kelp::ColorWordToRGB(color));
}

// ------------------------------------------------------------ shapes

void RuntimeGraphicsClearRect(RuntimeObject *g, int32_t x, int32_t y, int32_t w, int32_t h) {
    Graphics *gr;
    Rect r;
    if (kelp::MakeRect(g, gr, x, y, w, h, r))
        gr->EraseRect(r);
}

void RuntimeGraphicsDrawLine(RuntimeObject *g, int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
    int32_t left = 0, top = 0;
    if (Graphics *gr = kelp::ForDrawing(g, left, top)) {
        gr->MoveTo(x1 + left, y1 + top);
        gr->LineTo(x2 + left, y2 + top);
    }
}

void RuntimeGraphicsDrawRect(RuntimeObject *g, int32_t x, int32_t y, int32_t w, int32_t h) {
    Graphics *gr;
    Rect r;
    if (kelp::MakeRect(g, gr, x, y, w, h, r))
        gr->FrameRect(r);
}

void RuntimeGraphicsFillRect(RuntimeObject *g, int32_t x, int32_t y, int32_t w, int32_t h) {
    Graphics *gr;
    Rect r;
    if (kelp::MakeRect(g, gr, x, y, w, h, r))
        gr->FillRect(r);
}

void RuntimeGraphicsDrawOval(RuntimeObject *g, int32_t x, int32_t y, int32_t w, int32_t h) {
    Graphics *gr;
    Rect r;
    if (kelp::MakeRect(g, gr, x, y, w, h, r))
        gr->FrameOval(r);
}

void RuntimeGraphicsFillOval(RuntimeObject *g, int32_t x, int32_t y, int32_t w, int32_t h) {
    Graphics *gr;
    Rect r;
    if (kelp::MakeRect(g, gr, x, y, w, h, r))
        gr->FillOval(r);
}

void RuntimeGraphicsDrawRoundRect(RuntimeObject *g, int32_t x, int32_t y, int32_t w, int32_t h,
                                  int32_t ow, int32_t oh) {
    Graphics *gr;
    Rect r;
    if (kelp::MakeRect(g, gr, x, y, w, h, r))
        gr->FrameRoundRect(r, ow, oh);
}

void RuntimeGraphicsFillRoundRect(RuntimeObject *g, int32_t x, int32_t y, int32_t w, int32_t h,
                                  int32_t ow, int32_t oh) {
    Graphics *gr;
    Rect r;
    if (kelp::MakeRect(g, gr, x, y, w, h, r))
        gr->FillRoundRect(r, ow, oh);
}

void RuntimeGraphicsDrawFocusRing(RuntimeObject *g, int32_t x, int32_t y, int32_t w, int32_t h) {
    Graphics *gr;
    Rect r;
    if (kelp::MakeRect(g, gr, x, y, w, h, r))
        gr->DrawFocusRing(r);
}

void graphicsDrawPolygon(RuntimeObject *g, RuntimeArray *points) {
    kelp::DrawPolygonOf(g, points, false);
}
void graphicsFillPolygon(RuntimeObject *g, RuntimeArray *points) {
    kelp::DrawPolygonOf(g, points, true);
}

void graphicsDrawStopIcon(RuntimeObject *g, int32_t x, int32_t y) { kelp::DrawIcon(g, 0, x, y); }
void graphicsDrawNoteIcon(RuntimeObject *g, int32_t x, int32_t y) { kelp::DrawIcon(g, 1, x, y); }
void graphicsDrawCautionIcon(RuntimeObject *g, int32_t x, int32_t y) { kelp::DrawIcon(g, 2, x, y); }

// ------------------------------------------------------------ text

void RuntimeGraphicsDrawStringCondensed(RuntimeObject *g, KelpString text, int32_t x, int32_t y,
                                        int32_t wrapWidth, uint8_t condense) {
    int32_t left = 0, top = 0;
    Graphics *gr = kelp::ForDrawing(g, left, top);
    if (!gr || !text)
        return;
    const std::string utf8 = kelp::TextOf(text);
    x += left;
    y += top;
    if (condense && wrapWidth >= 1) {
        gr->DrawStringCondensed(utf8, x, y, wrapWidth, "...");
    } else if (wrapWidth != 0) {
        // The wrapped block starts one ascent above y, so its first baseline is y.
        Rect r;
        r.left = static_cast<int16_t>(x);
        r.top = static_cast<int16_t>(y - gr->Ascent());
        r.right = static_cast<int16_t>(x + wrapWidth);
        r.bottom = 32767;
        gr->DrawTextWrapped(utf8, r, 0);
    } else {
        gr->DrawText(utf8, x, y, 0);
    }
}

void RuntimeGraphicsDrawString(RuntimeObject *g, KelpString text, int32_t x, int32_t y) {
    RuntimeGraphicsDrawStringCondensed(g, text, x, y, 0, 0);
}

int32_t RuntimeGraphicsStringWidth(RuntimeObject *g, KelpString text) {
    Graphics *gr = Get(g);
    return gr ? gr->TextWidth(kelp::TextOf(text)) : 0;
}

int32_t RuntimeGraphicsStringHeight(RuntimeObject *g, KelpString text, int32_t wrapWidth) {
    Graphics *gr = Get(g);
    return gr ? gr->WrappedHeight(kelp::TextOf(text), wrapWidth) : 0;
}

int32_t RuntimeGraphicsStringDirection(RuntimeObject *g, KelpString text) {
    Graphics *gr = Get(g);
    if (!gr)
        return 0;
    return text ? gr->StringDirection(kelp::TextOf(text)) : gr->StringDirection();
}

int32_t RuntimeGraphicsTextHeight(RuntimeObject *g) {
    Graphics *gr = Get(g);
    return gr ? gr->TextHeight() : 0;
}

int32_t RuntimeGraphicsTextAscent(RuntimeObject *g) {
    Graphics *gr = Get(g);
    return gr ? gr->Ascent() : 0;
}

void RuntimeGraphicsNextPage(RuntimeObject *g) {
    Graphics *gr = Get(g);
    if (gr && gr->Target())
        gr->Target()->NextPage();
}

void RuntimeGraphicsDestructor(RuntimeObject *g) { kelp::DetachGraphicsObject(g); }

} // extern "C"

// ------------------------------------------------------------ the class

namespace kelp {

ObjectDefinition *GraphicsDefinition() {
    static const TypeRecord kIntegerArray = {kTypeArray, nullptr, &kTypeInteger, 1};
    static const PropertyRow properties[] = {
        {0, "ForeColor", &kTypeColor, KELP_ENTRY(graphicsForeColorGetter),
         KELP_ENTRY(graphicsForeColorSetter)},
        {0, "Width", &kTypeInteger, KELP_ENTRY(graphicsWidthGetter), {}},
        {0, "Height", &kTypeInteger, KELP_ENTRY(graphicsHeightGetter), {}},
        {0, "TextFont", &kTypeString, KELP_ENTRY(graphicsTextFontGetter),
         KELP_ENTRY(graphicsTextFontSetter)},
        {0, "TextSize", &kTypeInteger, KELP_ENTRY(graphicsTextSizeGetter),
         KELP_ENTRY(graphicsTextSizeSetter)},
        {0, "Copies", &kTypeInteger, KELP_ENTRY(graphicsCopiesGetter), {}},
        {0, "FirstPage", &kTypeInteger, KELP_ENTRY(graphicsFirstPageGetter), {}},
        {0, "LastPage", &kTypeInteger, KELP_ENTRY(graphicsLastPageGetter), {}},
        {0, "Bold", &kTypeBoolean, KELP_ENTRY(graphicsBoldGetter), KELP_ENTRY(graphicsBoldSetter)},
        {0, "Italic", &kTypeBoolean, KELP_ENTRY(graphicsItalicGetter),
         KELP_ENTRY(graphicsItalicSetter)},
        {0, "Underline", &kTypeBoolean, KELP_ENTRY(graphicsUnderlineGetter),
         KELP_ENTRY(graphicsUnderlineSetter)},
        {0, "PenWidth", &kTypeInteger, KELP_ENTRY(graphicsPenWidthGetter),
         KELP_ENTRY(graphicsPenWidthSetter)},
        {0, "PenHeight", &kTypeInteger, KELP_ENTRY(graphicsPenHeightGetter),
         KELP_ENTRY(graphicsPenHeightSetter)},
        {0, "UseOldRenderer", &kTypeBoolean, KELP_ENTRY(graphicsUseOldRendererGetter),
         KELP_ENTRY(graphicsUseOldRendererSetter)},
    };
    static const ParameterRow xywh[] = {{"x", &kTypeInteger},
                                        {"y", &kTypeInteger},
                                        {"width", &kTypeInteger},
                                        {"height", &kTypeInteger}};
    static const ParameterRow line[] = {
        {"x1", &kTypeInteger}, {"y1", &kTypeInteger}, {"x2", &kTypeInteger}, {"y2", &kTypeInteger}};
    static const ParameterRow roundRect[] = {
        {"x", &kTypeInteger},      {"y", &kTypeInteger},         {"width", &kTypeInteger},
        {"height", &kTypeInteger}, {"ovalWidth", &kTypeInteger}, {"ovalHeight", &kTypeInteger}};
    static const ParameterRow drawString[] = {{"text", &kTypeString},
                                              {"x", &kTypeInteger},
                                              {"y", &kTypeInteger},
                                              {"wrapWidth", &kTypeInteger, "0"},
                                              {"condense", &kTypeBoolean, "False"}};
    static const ParameterRow text[] = {{"text", &kTypeString}};
    static const ParameterRow textWrap[] = {{"text", &kTypeString}, {"wrapWidth", &kTypeInteger}};
    static const ParameterRow xy[] = {{"x", &kTypeInteger}, {"y", &kTypeInteger}};
    static const ParameterRow points[] = {{"points", &kIntegerArray}};
    static const MethodRow methods[] = {
        {"ClearRect", nullptr, xywh, 4, KELP_ENTRY(RuntimeGraphicsClearRect)},
        {"DrawLine", nullptr, line, 4, KELP_ENTRY(RuntimeGraphicsDrawLine)},
        {"DrawOval", nullptr, xywh, 4, KELP_ENTRY(RuntimeGraphicsDrawOval)},
        {"DrawRect", nullptr, xywh, 4, KELP_ENTRY(RuntimeGraphicsDrawRect)},
        {"DrawRoundRect", nullptr, roundRect, 6, KELP_ENTRY(RuntimeGraphicsDrawRoundRect)},
        {"FillOval", nullptr, xywh, 4, KELP_ENTRY(RuntimeGraphicsFillOval)},
        {"FillRect", nullptr, xywh, 4, KELP_ENTRY(RuntimeGraphicsFillRect)},
        {"FillRoundRect", nullptr, roundRect, 6, KELP_ENTRY(RuntimeGraphicsFillRoundRect)},
        {"DrawString", nullptr, drawString, 5, KELP_ENTRY(RuntimeGraphicsDrawStringCondensed)},
        {"StringWidth", &kTypeInteger, text, 1, KELP_ENTRY(RuntimeGraphicsStringWidth)},
        {"StringHeight", &kTypeInteger, textWrap, 2, KELP_ENTRY(RuntimeGraphicsStringHeight)},
        {"StringDirection", &kTypeInteger, text, 1, KELP_ENTRY(RuntimeGraphicsStringDirection)},
        {"TextHeight", &kTypeInteger, nullptr, 0, KELP_ENTRY(RuntimeGraphicsTextHeight)},
        {"TextAscent", &kTypeInteger, nullptr, 0, KELP_ENTRY(RuntimeGraphicsTextAscent)},
        {"NextPage", nullptr, nullptr, 0, KELP_ENTRY(RuntimeGraphicsNextPage)},
        {"DrawStopIcon", nullptr, xy, 2, KELP_ENTRY(graphicsDrawStopIcon)},
        {"DrawNoteIcon", nullptr, xy, 2, KELP_ENTRY(graphicsDrawNoteIcon)},
        {"DrawCautionIcon", nullptr, xy, 2, KELP_ENTRY(graphicsDrawCautionIcon)},
        {"Pixel", &kTypeColor, xy, 2, KELP_ENTRY(graphicsPixelGetter),
         KELP_ENTRY(graphicsPixelSetter)},
        {"DrawPolygon", nullptr, points, 1, KELP_ENTRY(graphicsDrawPolygon)},
        {"FillPolygon", nullptr, points, 1, KELP_ENTRY(graphicsFillPolygon)},
        {"_DrawFocusRing", nullptr, xywh, 4, KELP_ENTRY(RuntimeGraphicsDrawFocusRing)},
    };
    static const ClassDescription description = {
        .name = "Graphics",
        .instanceSize = sizeof(GraphicsObject),
        .finalizer = KELP_ENTRY(RuntimeGraphicsDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
