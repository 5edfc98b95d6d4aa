// MouseCursor, the _Cursors collection and the global cursor.
#include "cursors/mouse_cursor.h"

#include "cursors/cursor_pictures.h"
#include "objects/definitions.h"
#include "panes/pane.h"
#include "process/display.h"
#include "resources/resource_store.h"

#include "kelp/cursors.h"
#include "kelp/objects.h"

namespace kelp {
namespace {

// Toolkit cursor numbers.
constexpr int kFleur = 52, kWatch = 150, kTextCursor = 152;

GdkCursor *FromBits(const uint8_t image[32], const uint8_t mask[32], int hotRow, int hotColumn) {
    if (!DisplayAvailable())
        return nullptr;
    GdkWindow *root = gdk_get_default_root_window();
    GdkPixmap *source =
        gdk_bitmap_create_from_data(root, reinterpret_cast<const gchar *>(image), 16, 16);
    GdkPixmap *shape =
        gdk_bitmap_create_from_data(root, reinterpret_cast<const gchar *>(mask), 16, 16);
    GdkColor black = {0, 0, 0, 0}, white = {0, 0xFFFF, 0xFFFF, 0xFFFF};
    GdkCursor *cursor =
        gdk_cursor_new_from_pixmap(source, shape, &black, &white, hotColumn, hotRow);
    g_object_unref(source);
    g_object_unref(shape);
    return cursor;
}

GdkCursor *ToolkitCursor(int number) {
    return DisplayAvailable() ? gdk_cursor_new(GdkCursorType(number)) : nullptr;
}

CursorHolder *HolderForKind(CursorKind kind) {
    auto *holder = new CursorHolder;
    CursorPicture picture;
    if (BuiltInCursorPicture(kind, picture))
        holder->cursor = FromBits(picture.image, picture.mask, picture.hotRow, picture.hotColumn);
    else if (kind == kCursorArrowAllDirections)
        holder->cursor = ToolkitCursor(kFleur);
    else if (kind == kCursorIBeam)
        holder->cursor = ToolkitCursor(kTextCursor);
    else if (kind == kCursorWait)
        holder->cursor = ToolkitCursor(kWatch);
    return holder; // the standard pointer: no cursor, the toolkit's default
}

// A getter of _Cursors: made at the first call and kept for the process.
RuntimeObject *Kept(CursorKind kind) {
    static RuntimeObject *made[13] = {};
    RuntimeObject *&cursor = made[kind];
    if (!cursor)
        cursor = NewMouseCursor(HolderForKind(kind));
    if (cursor)
        RuntimeLockObject(cursor);
    return cursor;
}

CursorHolder gGlobal; // its cursor holds a reference

} // namespace

ObjectDefinition *MouseCursorDefinition() {
    static const ClassDescription description = {
        .name = "MouseCursor",
        .instanceSize = sizeof(MouseCursorObject),
        .finalizer = KELP_ENTRY(mouseCursorDestructor),
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *CursorsDefinition() {
    static const TypeRecord cursorType = {kTypeObjectOf, "MouseCursor", nullptr, 0,
                                          &MouseCursorDefinition};
    static const PropertyRow properties[] = {
        {0, "HandOpen", &cursorType, KELP_ENTRY(GetHandOpenCursor), {}, 0},
        {0, "HandClosed", &cursorType, KELP_ENTRY(GetHandClosedCursor), {}, 0},
        {0, "FingerPointer", &cursorType, KELP_ENTRY(GetFingerPointerCursor), {}, 0},
        {0, "ArrowEastWest", &cursorType, KELP_ENTRY(GetEastWestCursor), {}, 0},
        {0, "ArrowNorthSouth", &cursorType, KELP_ENTRY(GetNorthSouthCursor), {}, 0},
        {0, "ArrowNortheastSouthwest", &cursorType, KELP_ENTRY(GetNorthEastSouthWestCursor), {}, 0},
        {0, "ArrowNorthwestSoutheast", &cursorType, KELP_ENTRY(GetNorthWestSouthEastCursor), {}, 0},
        {0, "ArrowAllDirections", &cursorType, KELP_ENTRY(GetAllDirectionsCursor), {}, 0},
        {0, "SplitterEastWest", &cursorType, KELP_ENTRY(GetSplitterEastWestCursor), {}, 0},
        {0, "SplitterNorthSouth", &cursorType, KELP_ENTRY(GetSplitterNorthSouthCursor), {}, 0},
        {0, "StandardPointer", &cursorType, KELP_ENTRY(GetStandardPointerCursor), {}, 0},
        {0, "IBeam", &cursorType, KELP_ENTRY(GetTheIBeamCursor), {}, 0},
        {0, "Wait", &cursorType, KELP_ENTRY(GetWaitCursor), {}, 0},
    };
    static const ClassDescription description = {.name = "_Cursors", .properties = properties};
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

RuntimeObject *NewMouseCursor(CursorHolder *holder) {
    RuntimeObject *object = RuntimeNewObject(ClassForDefinition(MouseCursorDefinition()));
    if (!object) {
        delete holder;
        return nullptr;
    }
    reinterpret_cast<MouseCursorObject *>(object)->holder = holder;
    return object;
}

CursorHolder *HolderOf(RuntimeObject *mouseCursor) {
    // A MouseCursor field may be handed any object; only a MouseCursor has
    // a holder to read.
    if (!mouseCursor || !RuntimeObjectIsa(mouseCursor, ClassForDefinition(MouseCursorDefinition())))
        return nullptr;
    return reinterpret_cast<MouseCursorObject *>(mouseCursor)->holder;
}

void SetGlobalCursor(const CursorHolder *holder) {
    GdkCursor *cursor = holder ? holder->cursor : nullptr;
    if (cursor)
        gdk_cursor_ref(cursor);
    if (gGlobal.cursor)
        gdk_cursor_unref(gGlobal.cursor);
    gGlobal.cursor = cursor;
    gGlobal.id = holder ? holder->id : 0;
    SetGlobalPaneCursor(cursor);
}

const CursorHolder *GetGlobalCursor() { return &gGlobal; }

void ResetGlobalCursor() { SetGlobalCursor(nullptr); }

GdkCursor *NamedCursor(int32_t id) {
    switch (id) {
    case 6601: return ToolkitCursor(108);
    case 6602: return ToolkitCursor(70);
    case 6603: return ToolkitCursor(96);
    default: return nullptr;
    }
}

} // namespace kelp

using namespace kelp;

extern "C" void mouseCursorDestructor(RuntimeObject *self) {
    if (!self)
        return;
    auto *cursor = reinterpret_cast<MouseCursorObject *>(self);
    delete cursor->holder;
    cursor->holder = nullptr;
}

extern "C" RuntimeObject *GetCursorsClass(void) {
    static RuntimeObject *cursors = RuntimeNewObject(ClassForDefinition(CursorsDefinition()));
    if (cursors)
        RuntimeLockObject(cursors);
    return cursors;
}

extern "C" RuntimeObject *GetHandOpenCursor(RuntimeObject *, int32_t) {
    return Kept(kCursorHandOpen);
}
extern "C" RuntimeObject *GetHandClosedCursor(RuntimeObject *, int32_t) {
    return Kept(kCursorHandClosed);
}
extern "C" RuntimeObject *GetFingerPointerCursor(RuntimeObject *, int32_t) {
    return Kept(kCursorFingerPointer);
}
extern "C" RuntimeObject *GetEastWestCursor(RuntimeObject *, int32_t) {
    return Kept(kCursorArrowEastWest);
}
extern "C" RuntimeObject *GetNorthSouthCursor(RuntimeObject *, int32_t) {
    return Kept(kCursorArrowNorthSouth);
}
extern "C" RuntimeObject *GetNorthEastSouthWestCursor(RuntimeObject *, int32_t) {
    return Kept(kCursorArrowNortheastSouthwest);
}
extern "C" RuntimeObject *GetNorthWestSouthEastCursor(RuntimeObject *, int32_t) {
    return Kept(kCursorArrowNorthwestSoutheast);
}
extern "C" RuntimeObject *GetAllDirectionsCursor(RuntimeObject *, int32_t) {
    return Kept(kCursorArrowAllDirections);
}
extern "C" RuntimeObject *GetSplitterEastWestCursor(RuntimeObject *, int32_t) {
    return Kept(kCursorSplitterEastWest);
}
extern "C" RuntimeObject *GetSplitterNorthSouthCursor(RuntimeObject *, int32_t) {
    return Kept(kCursorSplitterNorthSouth);
}
extern "C" RuntimeObject *GetStandardPointerCursor(RuntimeObject *, int32_t) {
    return Kept(kCursorStandardPointer);
}
extern "C" RuntimeObject *GetTheIBeamCursor(RuntimeObject *, int32_t) { return Kept(kCursorIBeam); }
extern "C" RuntimeObject *GetWaitCursor(RuntimeObject *, int32_t) { return Kept(kCursorWait); }

extern "C" RuntimeObject *getArrowCursor(void) { return NewMouseCursor(new CursorHolder); }

extern "C" RuntimeObject *getWatchCursor(void) {
    auto *holder = new CursorHolder;
    holder->cursor = ToolkitCursor(kWatch);
    return NewMouseCursor(holder);
}

extern "C" RuntimeObject *getIBeamCursor(void) {
    auto *holder = new CursorHolder;
    holder->cursor = ToolkitCursor(kTextCursor);
    return NewMouseCursor(holder);
}

extern "C" RuntimeObject *RuntimeGetCursorFromResourceManager(int32_t id) {
    CursorBits bits;
    if (!FindCursorBits(uint32_t(id), bits))
        return nullptr;
    auto *holder = new CursorHolder;
    holder->cursor = FromBits(bits.image, bits.mask, bits.hotRow, bits.hotColumn);
    holder->id = id;
    return NewMouseCursor(holder);
}
