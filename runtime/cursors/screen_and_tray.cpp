// Screen, the read-only view of the display; TrayItem, which this back end
// has no tray for; and the beep.
#include "cursors/screen_and_tray.h"

#include "base/fatal_report.h"
#include "objects/definitions.h"
#include "process/display.h"

#include "kelp/cursors.h"
#include "kelp/objects.h"
#include "kelp/strings.h"

#include <gdk/gdk.h>

#include <cstddef>

namespace kelp {
namespace {

constexpr const char *kFile = "runtime/cursors/screen_and_tray.cpp";

} // namespace

ObjectDefinition *ScreenDefinition() {
#define KELP_SCREEN_FIELD(name, field)                                                             \
    { 0, name, &kTypeInteger, KELP_PLAIN_FIELD, {}, offsetof(ScreenObject, field) }
#define KELP_SCREEN_GETTER(name, getter, field)                                                    \
    { 0, name, &kTypeInteger, KELP_ENTRY(getter), {}, offsetof(ScreenObject, field) }
    static const PropertyRow properties[] = {
        KELP_SCREEN_GETTER("Left", screenLeftGetter, left),
        KELP_SCREEN_GETTER("Top", screenTopGetter, top),
        KELP_SCREEN_GETTER("Width", screenWidthGetter, width),
        KELP_SCREEN_GETTER("Height", screenHeightGetter, height),
        KELP_SCREEN_GETTER("Depth", screenDepthGetter, depth),
        KELP_SCREEN_FIELD("AvailableLeft", availableLeft),
        KELP_SCREEN_FIELD("AvailableTop", availableTop),
        KELP_SCREEN_FIELD("AvailableWidth", availableWidth),
        KELP_SCREEN_FIELD("AvailableHeight", availableHeight),
    };
#undef KELP_SCREEN_FIELD
#undef KELP_SCREEN_GETTER
    static const ClassDescription description = {
        .name = "Screen", .instanceSize = sizeof(ScreenObject), .properties = properties};
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *TrayItemDefinition() {
    static const PropertyRow properties[] = {
        {0, "Icon", &kTypePtr, KELP_PLAIN_FIELD, KELP_ENTRY(TrayItemSetPicture),
         offsetof(TrayItemObject, icon)},
        {0, "HelpTag", &kTypeString, KELP_PLAIN_FIELD, KELP_ENTRY(TrayItemSetHelpTag),
         offsetof(TrayItemObject, helpTag)},
    };
    static const EventRow events[] = {{"Action", "cause As Integer", nullptr, nullptr}};
    static const ClassDescription description = {
        .name = "TrayItem",
        .instanceSize = sizeof(TrayItemObject),
        .initializer = KELP_ENTRY(TrayItemInitializer),
        .finalizer = KELP_ENTRY(TrayItemFinalizer),
        .properties = properties,
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" int32_t getScreenCount(void) { return 1; }

extern "C" RuntimeObject *getScreen(int32_t index) {
    if (index != 0)
        return nullptr;
    RuntimeObject *object = RuntimeNewObject(ClassForDefinition(ScreenDefinition()));
    auto *screen = reinterpret_cast<ScreenObject *>(object);
    if (!screen)
        return nullptr;
    const bool display = DisplayAvailable();
    screen->width = screen->availableWidth = display ? gdk_screen_width() : 0;
    screen->height = screen->availableHeight = display ? gdk_screen_height() : 0;
    screen->depth = display ? gdk_drawable_get_depth(gdk_get_default_root_window()) : 24;
    return object;
}

// The Screen's properties read what getScreen saw when it made the object.
#define KELP_SCREEN_READER(fn, field)                                                              \
    extern "C" int32_t fn(RuntimeObject *self, int32_t) {                                          \
        return self ? reinterpret_cast<ScreenObject *>(self)->field : 0;                           \
    }
KELP_SCREEN_READER(screenLeftGetter, left)
KELP_SCREEN_READER(screenTopGetter, top)
KELP_SCREEN_READER(screenWidthGetter, width)
KELP_SCREEN_READER(screenHeightGetter, height)
KELP_SCREEN_READER(screenDepthGetter, depth)
#undef KELP_SCREEN_READER

extern "C" void TrayItemInitializer(RuntimeObject *self) {
    if (!self)
        return;
    auto *item = reinterpret_cast<TrayItemObject *>(self);
    item->icon = nullptr;
    item->helpTag = nullptr;
    item->mID = 0;
}

extern "C" void TrayItemFinalizer(RuntimeObject *self) {
    if (!self)
        return;
    auto *item = reinterpret_cast<TrayItemObject *>(self);
    RuntimeUnlockObject(item->icon);
    RuntimeUnlockString(item->helpTag);
    item->icon = nullptr;
    item->helpTag = nullptr;
}

extern "C" void TrayItemSetPicture(RuntimeObject *self, int32_t, RuntimeObject *picture) {
    if (!self)
        return;
    auto *item = reinterpret_cast<TrayItemObject *>(self);
    RuntimeLockObject(picture);
    RuntimeUnlockObject(item->icon);
    item->icon = picture;
}

extern "C" void TrayItemSetHelpTag(RuntimeObject *self, int32_t, stringStorage *text) {
    if (!self)
        return;
    auto *item = reinterpret_cast<TrayItemObject *>(self);
    RuntimeLockUnlockStrings(text, item->helpTag);
    item->helpTag = text;
}

// There is no tray on this back end: an item is taken and shown nowhere.
extern "C" void AddTrayItem(RuntimeObject *, RuntimeObject *item) {
    if (!item)
        return;
    KELP_ASSERT(reinterpret_cast<TrayItemObject *>(item)->mID == 0, kFile, "item->mID == 0");
}

extern "C" void RemoveTrayItem(RuntimeObject *, RuntimeObject *) {}

extern "C" void RuntimeBeep(void) {
    if (DisplayAvailable())
        gdk_beep();
}
