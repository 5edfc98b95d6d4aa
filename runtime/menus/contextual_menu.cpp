// ContextualMenu: a control of text rows that pops up where the pointer is
// and tells its Action which row was chosen.  The rows become menu items
// only for the time the menu is open.
#include "menus/classes.h"
#include "menus/popup.h"

#include "controls/control.h"
#include "exceptions/call_event.h"
#include "objects/definitions.h"
#include "objects/text.h"

#include "kelp/menus.h"
#include "kelp/objects.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kelp {
namespace {

struct ContextualMenuRecord {
    RuntimeControl control;
    void *rows; // the row texts, "-" for a separator; made on first use
};

using Rows = std::vector<std::string>;

ObjectHook *gAction;

Rows &RowsOf(RuntimeObject *self) {
    auto *record = reinterpret_cast<ContextualMenuRecord *>(self);
    if (!record->rows)
        record->rows = new Rows;
    return *static_cast<Rows *>(record->rows);
}

} // namespace

ObjectDefinition *ContextualMenuDefinition() {
    static const ParameterRow textParams[] = {{"text", &kTypeString}};
    static const MethodRow methods[] = {
        {"AddRow", nullptr, textParams, 1, KELP_ENTRY(contextualMenuAddRow)},
        {"AddSeparator", nullptr, nullptr, 0, KELP_ENTRY(contextualMenuAddSeparator)},
        {"DeleteAllRows", nullptr, nullptr, 0, KELP_ENTRY(contextualMenuResetContent)},
        {"Open", nullptr, nullptr, 0, KELP_ENTRY(contextualMenuOpen)},
    };
    static const EventRow events[] = {{"Action", "item As String", nullptr, &gAction}};
    static const ClassDescription description = {
        .name = "ContextualMenu",
        .super = ControlDefinition,
        .instanceSize = sizeof(ContextualMenuRecord),
        .finalizer = KELP_ENTRY(RuntimeContextualMenuDestructor),
        .methods = methods,
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" void contextualMenuAddRow(RuntimeObject *self, KelpString text) {
    if (self)
        RowsOf(self).emplace_back(objtext::View(text));
}

extern "C" void contextualMenuAddSeparator(RuntimeObject *self) {
    if (self)
        RowsOf(self).emplace_back("-");
}

extern "C" void contextualMenuResetContent(RuntimeObject *self) {
    if (self)
        RowsOf(self).clear();
}

extern "C" void contextualMenuOpen(RuntimeObject *self) {
    if (!self || RowsOf(self).empty())
        return;
    RuntimeLockObject(self);
    RuntimeObject *base = NewObjectOfDefinition(MenuItemDefinition());
    for (const std::string &row : RowsOf(self)) {
        RuntimeObject *item = NewObjectOfDefinition(MenuItemDefinition());
        KelpString text = objtext::Make(row);
        RuntimeMenuItemTextSetter(item, 0, text);
        objtext::Release(text);
        RuntimeMenuItemAppend(base, item);
        RuntimeUnlockObject(item);
    }
    int32_t x = 0, y = 0;
    PointerOnScreen(x, y);
    if (RuntimeObject *chosen = PopUpAndChoose(base, x, y)) {
        KelpString text = RuntimeMenuItemTextGetter(chosen, 0);
        CallEvent(self, gAction, text);
        objtext::Release(text);
        RuntimeUnlockObject(chosen);
    }
    RuntimeUnlockObject(base);
    RuntimeUnlockObject(self);
}

extern "C" void RuntimeContextualMenuDestructor(RuntimeObject *self) {
    if (!self)
        return;
    auto *record = reinterpret_cast<ContextualMenuRecord *>(self);
    delete static_cast<Rows *>(record->rows);
    record->rows = nullptr;
}
