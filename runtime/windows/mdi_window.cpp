#include "windows/mdi_window.h"

#include "objects/definitions.h"

#include "kelp/objects.h"
#include "kelp/windows.h"

#include <cstddef>

namespace kelp {

ObjectDefinition *MDIWindowDefinition() {
    static const PropertyRow properties[] = {
        {0, "Left", &kTypeInteger, KELP_ENTRY(MDIWindowPosGetter), KELP_ENTRY(MDIWindowPosSetter),
         offsetof(MDIWindowRecord, left)},
        {0, "Top", &kTypeInteger, KELP_ENTRY(MDIWindowPosGetter), KELP_ENTRY(MDIWindowPosSetter),
         offsetof(MDIWindowRecord, top)},
        {0, "Width", &kTypeInteger, KELP_ENTRY(MDIWindowPosGetter), KELP_ENTRY(MDIWindowPosSetter),
         offsetof(MDIWindowRecord, width)},
        {0, "Height", &kTypeInteger, KELP_ENTRY(MDIWindowPosGetter), KELP_ENTRY(MDIWindowPosSetter),
         offsetof(MDIWindowRecord, height)},
        {0, "MinWidth", &kTypeInteger, KELP_PLAIN_FIELD, KELP_PLAIN_FIELD,
         offsetof(MDIWindowRecord, minWidth)},
        {0, "MinHeight", &kTypeInteger, KELP_PLAIN_FIELD, KELP_PLAIN_FIELD,
         offsetof(MDIWindowRecord, minHeight)},
        {0, "MaxWidth", &kTypeInteger, KELP_PLAIN_FIELD, KELP_PLAIN_FIELD,
         offsetof(MDIWindowRecord, maxWidth)},
        {0, "MaxHeight", &kTypeInteger, KELP_PLAIN_FIELD, KELP_PLAIN_FIELD,
         offsetof(MDIWindowRecord, maxHeight)},
        {0, "Visible", &kTypeBoolean, KELP_ENTRY(MDIWindowVisibleGetter),
         KELP_ENTRY(MDIWindowVisibleSetter), offsetof(MDIWindowRecord, visible)},
        {0, "Title", &kTypeString, KELP_ENTRY(MDIWindowTitleGetter),
         KELP_ENTRY(MDIWindowTitleSetter), -9},
        {0, "Handle", &kTypeInteger, KELP_ENTRY(MDIWindowHandleGetter), {}, -9},
    };
    static const MethodRow methods[] = {
        {"Maximize", nullptr, nullptr, 0, KELP_ENTRY(MDIWindowMaximize)},
        {"Minimize", nullptr, nullptr, 0, KELP_ENTRY(MDIWindowMinimize)},
        {"Restore", nullptr, nullptr, 0, KELP_ENTRY(MDIWindowRestore)},
    };
    static const ClassDescription description = {
        .name = "MDIWindow",
        .instanceSize = sizeof(MDIWindowRecord),
        .initializer = KELP_ENTRY(MDIWindowConstructor),
        .finalizer = KELP_ENTRY(MDIWindowDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using kelp::MDIWindowRecord;

extern "C" void MDIWindowConstructor(RuntimeObject *self) {
    if (!self)
        return;
    auto *record = reinterpret_cast<MDIWindowRecord *>(self);
    record->minWidth = record->minHeight = 64;
    record->maxWidth = record->maxHeight = 32000;
    record->visible = 1;
}

// No frame exists to carry a title, a handle or a state.
extern "C" KelpString MDIWindowTitleGetter(RuntimeObject *, int32_t) { return nullptr; }
extern "C" void MDIWindowTitleSetter(RuntimeObject *, int32_t, KelpString) {}
extern "C" int32_t MDIWindowHandleGetter(RuntimeObject *, int32_t) { return 0; }
extern "C" void MDIWindowMaximize(RuntimeObject *) {}
extern "C" void MDIWindowMinimize(RuntimeObject *) {}
extern "C" void MDIWindowRestore(RuntimeObject *) {}

// Nothing is held beyond the record's own words.
extern "C" void MDIWindowDestructor(RuntimeObject *) {}

// Left, Top, Width and Height share one accessor; the row's parameter is the
// field's offset.
extern "C" int32_t MDIWindowPosGetter(RuntimeObject *self, int32_t offset) {
    return self ? intGetter(self, offset) : 0;
}
extern "C" void MDIWindowPosSetter(RuntimeObject *self, int32_t offset, int32_t value) {
    if (self)
        intSetter(self, offset, value);
}
extern "C" uint8_t MDIWindowVisibleGetter(RuntimeObject *self, int32_t) {
    return self && reinterpret_cast<MDIWindowRecord *>(self)->visible ? 1 : 0;
}
extern "C" void MDIWindowVisibleSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (self)
        reinterpret_cast<MDIWindowRecord *>(self)->visible = value ? 1 : 0;
}
