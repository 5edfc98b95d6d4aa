// ListColumn, the object Column(i) gives: a view on column i of its list
// (-1: every column), not a copy, so assigning to it changes the list.
#include "listbox/list_pane.h"
#include "listbox/utf8.h"

#include "exceptions/raise.h"
#include "objects/definitions.h"

#include "kelp/listbox.h"
#include "kelp/objects.h"

using namespace kelp;
using namespace kelp::listbox;

namespace kelp::listbox {
namespace {

struct ColumnRecord {
    RuntimeObject object;
    RuntimeObject *list; // counted
    int32_t column;      // -1: all
};
ColumnRecord *Col(RuntimeObject *o) { return reinterpret_cast<ColumnRecord *>(o); }

// The columns a ListColumn stands for, in a list that exists.
template <typename Act> void EachColumn(RuntimeObject *self, Act act) {
    ListBox *list = self ? ListOf(Col(self)->list) : nullptr;
    if (!list)
        return;
    const int32_t from = Col(self)->column < 0 ? 0 : Col(self)->column;
    const int32_t to = Col(self)->column < 0 ? list->ColumnCount() : from + 1;
    for (int32_t i = from; i < to; ++i)
        act(list, i);
}

WidthRole Role(int32_t selector) { return WidthRole(selector < 0 || selector > 2 ? 0 : selector); }

} // namespace

ObjectDefinition *ListColumnDefinition() {
    static const PropertyRow properties[] = {
        {0, "UserResizable", &kTypeBoolean, KELP_ENTRY(listColUserResizableGetter),
         KELP_ENTRY(listColUserResizableSetter), 0},
        {0, "WidthExpression", &kTypeString, KELP_ENTRY(listColWidthExpressionGetter),
         KELP_ENTRY(listColWidthExpressionSetter), 0},
        {0, "MinWidthExpression", &kTypeString, KELP_ENTRY(listColWidthExpressionGetter),
         KELP_ENTRY(listColWidthExpressionSetter), 1},
        {0, "MaxWidthExpression", &kTypeString, KELP_ENTRY(listColWidthExpressionGetter),
         KELP_ENTRY(listColWidthExpressionSetter), 2},
        {0, "WidthActual", &kTypeInteger, KELP_ENTRY(listColWidthActualGetter),
         KELP_ENTRY(listColWidthActualSetter), 0},
        {0, "MinWidthActual", &kTypeInteger, KELP_ENTRY(listColWidthActualGetter),
         KELP_ENTRY(listColWidthActualSetter), 1},
        {0, "MaxWidthActual", &kTypeInteger, KELP_ENTRY(listColWidthActualGetter),
         KELP_ENTRY(listColWidthActualSetter), 2},
    };
    static const ClassDescription description = {
        .name = "ListColumn",
        .instanceSize = sizeof(ColumnRecord),
        .initializer = KELP_ENTRY(RuntimeListColumnConstructor),
        .finalizer = KELP_ENTRY(RuntimeListColumnDestructor),
        .properties = properties,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp::listbox

extern "C" void RuntimeListColumnConstructor(RuntimeObject *column) {
    if (column)
        Col(column)->column = -1;
}
extern "C" void RuntimeListColumnDestructor(RuntimeObject *column) {
    if (!column)
        return;
    RuntimeUnlockObject(Col(column)->list);
    Col(column)->list = nullptr;
}

extern "C" RuntimeObject *listColumnGetter(RuntimeObject *self, int32_t column) {
    ListBox *list = ListOf(self);
    if (!list)
        return nullptr;
    if (column < -1 || column >= list->ColumnCount()) {
        RaiseOutOfBounds();
        return nullptr;
    }
    RuntimeObject *object = RuntimeNewObject(ClassForDefinition(ListColumnDefinition()));
    if (object) {
        RuntimeLockObject(self);
        Col(object)->list = self;
        Col(object)->column = column;
    }
    return object;
}

// Column(i) = other: column i (every column for -1) takes the other's
// expressions and resizability.
extern "C" void listColumnSetter(RuntimeObject *self, int32_t column, RuntimeObject *from) {
    ListBox *list = ListOf(self);
    if (!list)
        return;
    if (column < -1 || column >= list->ColumnCount()) {
        RaiseOutOfBounds();
        return;
    }
    ListBox *source = from ? ListOf(Col(from)->list) : nullptr;
    if (!source || Col(from)->column < 0)
        return;
    const ColumnWidth copy = source->Column(Col(from)->column).width;
    const int32_t first = column < 0 ? 0 : column,
                  end = column < 0 ? list->ColumnCount() : column + 1;
    for (int32_t i = first; i < end; ++i)
        list->Column(i).width = copy;
    list->LayoutColumns();
}

extern "C" KelpString listColWidthExpressionGetter(RuntimeObject *self, int32_t selector) {
    std::string text;
    EachColumn(self, [&](ListBox *list, int32_t i) {
        text = ExpressionText(list->Column(i).width, Role(selector), list->contentWidth);
    });
    return MakeUtf8(text);
}
extern "C" void listColWidthExpressionSetter(RuntimeObject *self, int32_t selector,
                                             KelpString value) {
    const std::string text = ToUtf8(value);
    bool failed = false;
    ListBox *changed = nullptr;
    EachColumn(self, [&](ListBox *list, int32_t i) {
        std::string error;
        if (failed)
            return;
        if (!SetExpression(list->Column(i).width, Role(selector), text, &error)) {
            failed = true;
            RaiseWithMessage("UnsupportedFormatException", error.c_str());
        }
        changed = list;
    });
    if (changed && !failed)
        changed->LayoutColumns();
}

extern "C" int32_t listColWidthActualGetter(RuntimeObject *self, int32_t selector) {
    int32_t pixels = 0;
    EachColumn(self, [&](ListBox *list, int32_t i) {
        const ColumnWidth &w = list->Column(i).width;
        pixels = selector == 1 ? w.actualMin : selector == 2 ? w.actualMax : w.actual;
    });
    return pixels;
}
extern "C" void listColWidthActualSetter(RuntimeObject *self, int32_t selector, int32_t value) {
    EachColumn(self, [&](ListBox *list, int32_t i) {
        std::vector<ColumnWidth> widths = list->Widths();
        if (selector == 0) {
            SetActualWidth(widths, size_t(i), value);
        } else {
            // A bound in pixels is a fixed expression of that many.
            std::string error;
            SetExpression(widths[size_t(i)], Role(selector), std::to_string(value), &error);
        }
        list->StoreWidths(widths);
        if (selector == 0 && list->pane)
            list->pane->ShowWidths();
        else
            list->LayoutColumns();
    });
}

extern "C" uint8_t listColUserResizableGetter(RuntimeObject *self, int32_t) {
    uint8_t on = 0;
    EachColumn(self, [&](ListBox *list, int32_t i) { on = list->Column(i).width.resizable; });
    return on;
}
extern "C" void listColUserResizableSetter(RuntimeObject *self, int32_t, uint8_t value) {
    EachColumn(self, [&](ListBox *list, int32_t i) {
        list->Column(i).width.resizable = value != 0;
        if (list->pane)
            list->pane->ShowWidths();
    });
}
