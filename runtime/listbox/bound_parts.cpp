// The parts of a ListBox that other objects bind to, by getBoundPart:
// "gotFocusAction" and "lostFocusAction" (action sources),
// "getSelectionProvider" (whether a row is selected) and
// "columnValueProvider_<n>" (the text of column n of the selected row).
// Each part holds a reference on its list.
#include "listbox/list_pane.h"
#include "listbox/utf8.h"

#include "controls/action_receivers.h"
#include "controls/list_provider.h"
#include "objects/action_interfaces.h"
#include "objects/definitions.h"

#include "kelp/listbox.h"
#include "kelp/objects.h"
#include "kelp/strings.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

using namespace kelp;
using namespace kelp::listbox;

namespace kelp::listbox {
namespace {

// A provider's row as a list row at `index`: its fields in the columns.
void ShowBoundRow(ListBox *list, int32_t index, const ProviderRow &cells) {
    list->Insert(index, cells.empty() ? std::string_view() : std::string_view(cells[0]), false, 0);
    for (size_t c = 1; c < cells.size() && c < size_t(kDataColumns); ++c)
        list->SetCellText(index, int32_t(c), cells[c]);
}

struct PartRecord {
    RuntimeObject object;
    RuntimeObject *list;     // counted
    int32_t which;           // focus part: 0 got, 1 lost; column part: the column
    ReceiverLink *receivers; // action or data receivers, counted
};

PartRecord *Part(RuntimeObject *o) { return reinterpret_cast<PartRecord *>(o); }

void ReleasePart(RuntimeObject *self) {
    if (!self)
        return;
    ClearReceivers(Part(self)->receivers);
    RuntimeUnlockObject(Part(self)->list);
    Part(self)->list = nullptr;
}

// A part class: the part's record, its destructor and its methods.
#define KELP_PART_CLASS(className, destructor, methodRows)                                         \
    static const ClassDescription description = {                                                  \
        .name = className,                                                                         \
        .instanceSize = sizeof(PartRecord),                                                        \
        .finalizer = KELP_ENTRY(destructor),                                                       \
        .methods = methodRows,                                                                     \
    };                                                                                             \
    static ObjectDefinition *definition = BuildDefinition(description);                            \
    return definition

ObjectDefinition *ActionPartDefinition() {
    static const ParameterRow receiver[] = {{"receiver", &kTypePtr}};
    static const MethodRow methods[] = {
        {"addActionNotificationReceiver", nullptr, receiver, 1,
         KELP_ENTRY(lbaAddActionNotificationReceiver)},
        {"removeActionNotificationReceiver", nullptr, receiver, 1,
         KELP_ENTRY(lbaRemoveActionNotificationReceiver)},
    };
    KELP_PART_CLASS("Sys$ListboxAction", listboxActionDestructor, methods);
}

ObjectDefinition *SelectionPartDefinition() {
    static const ParameterRow receiver[] = {{"receiver", &kTypePtr}};
    static const ParameterRow value[] = {{"value", &kTypeBoolean}};
    static const ParameterRow list[] = {{"list", &kTypePtr}};
    static const MethodRow methods[] = {
        {"getBoolean", &kTypeBoolean, nullptr, 0, KELP_ENTRY(listSelectionGetBoolean)},
        {"setBoolean", nullptr, value, 1, KELP_ENTRY(listSelectionSetBoolean)},
        {"addDataNotificationReceiver", nullptr, receiver, 1,
         KELP_ENTRY(listSelectionAddDataNotificationReceiver)},
        {"removeDataNotificationReceiver", nullptr, receiver, 1,
         KELP_ENTRY(listSelectionRemoveDataNotificationReceiver)},
        {"selectionChanging", nullptr, list, 1, KELP_ENTRY(listSelectionChanging)},
        {"selectionChanged", nullptr, list, 1, KELP_ENTRY(listSelectionChanged)},
    };
    KELP_PART_CLASS("listSelectionProvider", listSelectionProviderDestructor, methods);
}

ObjectDefinition *ColumnPartDefinition() {
    static const ParameterRow receiver[] = {{"receiver", &kTypePtr}};
    static const ParameterRow value[] = {{"value", &kTypeString}};
    static const ParameterRow list[] = {{"list", &kTypePtr}};
    static const MethodRow methods[] = {
        {"getString", &kTypeString, nullptr, 0, KELP_ENTRY(lcvpGetString)},
        {"setString", nullptr, value, 1, KELP_ENTRY(lcvpSetString)},
        {"DataAvailable", &kTypeBoolean, nullptr, 0, KELP_ENTRY(lcvpDataAvailable)},
        {"addDataNotificationReceiver", nullptr, receiver, 1,
         KELP_ENTRY(lcvpAddDataNotificationReceiver)},
        {"removeDataNotificationReceiver", nullptr, receiver, 1,
         KELP_ENTRY(lcvpRemoveDataNotificationReceiver)},
        {"selectionChanging", nullptr, list, 1, KELP_ENTRY(lcvpSelectionChanging)},
        {"selectionChanged", nullptr, list, 1, KELP_ENTRY(lcvpSelectionChanged)},
    };
    KELP_PART_CLASS("listColumnValueProvider", listColumnValueProviderDestructor, methods);
#undef KELP_PART_CLASS
}

RuntimeObject *NewPart(ObjectDefinition *definition, RuntimeObject *list, int32_t which) {
    RuntimeObject *part = RuntimeNewObject(ClassForDefinition(definition));
    if (!part)
        return nullptr;
    RuntimeLockObject(list);
    Part(part)->list = list;
    Part(part)->which = which;
    return part;
}

bool IsOf(RuntimeObject *o, ObjectDefinition *definition) {
    return o && RuntimeObjectIsa(o, ClassForDefinition(definition));
}

// The selected row's cell of the part's column, or -1 for the row.
int32_t SelectedRow(RuntimeObject *part) {
    ListBox *list = part ? ListOf(Part(part)->list) : nullptr;
    return list ? list->ListIndex() : -1;
}

} // namespace

void TellSelectionReceiver(RuntimeObject *receiver, RuntimeObject *list) {
    if (IsOf(receiver, SelectionPartDefinition()))
        listSelectionChanged(receiver, list);
    else if (IsOf(receiver, ColumnPartDefinition()))
        lcvpSelectionChanged(receiver, list);
}

void TellFocusReceivers(ListBox *list, bool gained) {
    std::vector<RuntimeObject *> parts = list->focusReceivers[gained ? 0 : 1];
    for (RuntimeObject *p : parts)
        RuntimeLockObject(p);
    for (RuntimeObject *p : parts) {
        PerformActions(Part(p)->receivers);
        RuntimeUnlockObject(p);
    }
}

} // namespace kelp::listbox

extern "C" RuntimeObject *listGetBoundPart(RuntimeObject *self, KelpString name) {
    ListBox *list = ListOf(self);
    if (!list)
        return nullptr;
    const std::string part = ToUtf8(name);
    const std::string prefix = "columnValueProvider_";
    if (part == "gotFocusAction" || part == "lostFocusAction") {
        const int32_t which = part == "gotFocusAction" ? 0 : 1;
        RuntimeObject *p = NewPart(ActionPartDefinition(), self, which);
        if (p)
            list->focusReceivers[which].push_back(p); // not counted: the part holds the list
        return p;
    }
    if (part == "getSelectionProvider")
        return NewPart(SelectionPartDefinition(), self, -1);
    if (part.rfind(prefix, 0) == 0) {
        const int32_t column = std::atoi(part.c_str() + prefix.size());
        if (column >= 0 && column < kDataColumns)
            return NewPart(ColumnPartDefinition(), self, column);
    }
    return nullptr;
}

extern "C" void lbaAddActionNotificationReceiver(RuntimeObject *part, RuntimeObject *receiver) {
    if (part)
        AddReceiver(Part(part)->receivers, receiver);
}
extern "C" void lbaRemoveActionNotificationReceiver(RuntimeObject *part, RuntimeObject *receiver) {
    if (part)
        RemoveReceiver(Part(part)->receivers, receiver);
}
extern "C" void listboxActionDestructor(RuntimeObject *part) {
    if (ListBox *list = part ? ListOf(Part(part)->list) : nullptr)
        std::erase(list->focusReceivers[Part(part)->which], part);
    ReleasePart(part);
}

extern "C" uint8_t listSelectionGetBoolean(RuntimeObject *part) { return SelectedRow(part) >= 0; }
// False clears the selection; true selects the first row when none is.
extern "C" void listSelectionSetBoolean(RuntimeObject *part, uint8_t value) {
    ListBox *list = part ? ListOf(Part(part)->list) : nullptr;
    if (!list)
        return;
    if (!value)
        list->SelectOnly(nullptr);
    else if (list->ListIndex() < 0 && list->Count())
        list->SelectOnly(list->At(0));
}
extern "C" void listSelectionAddDataNotificationReceiver(RuntimeObject *part, RuntimeObject *r) {
    lbaAddActionNotificationReceiver(part, r);
}
extern "C" void listSelectionRemoveDataNotificationReceiver(RuntimeObject *part, RuntimeObject *r) {
    lbaRemoveActionNotificationReceiver(part, r);
}
extern "C" void listSelectionChanging(RuntimeObject *, RuntimeObject *) {}
extern "C" void listSelectionChanged(RuntimeObject *part, RuntimeObject *) {
    if (part)
        PerformActions(Part(part)->receivers);
}
extern "C" void listSelectionProviderDestructor(RuntimeObject *part) { ReleasePart(part); }

extern "C" KelpString lcvpGetString(RuntimeObject *part) {
    const int32_t row = SelectedRow(part);
    return row >= 0 ? MakeUtf8(ListOf(Part(part)->list)->CellText(row, Part(part)->which))
                    : nullptr;
}
extern "C" void lcvpSetString(RuntimeObject *part, KelpString value) {
    const int32_t row = SelectedRow(part);
    if (row >= 0)
        ListOf(Part(part)->list)->SetCellText(row, Part(part)->which, ToUtf8(value));
}
extern "C" uint8_t lcvpDataAvailable(RuntimeObject *part) { return SelectedRow(part) >= 0; }
extern "C" void lcvpAddDataNotificationReceiver(RuntimeObject *part, RuntimeObject *r) {
    lbaAddActionNotificationReceiver(part, r);
}
extern "C" void lcvpRemoveDataNotificationReceiver(RuntimeObject *part, RuntimeObject *r) {
    lbaRemoveActionNotificationReceiver(part, r);
}
extern "C" void lcvpSelectionChanging(RuntimeObject *, RuntimeObject *) {}
extern "C" void lcvpSelectionChanged(RuntimeObject *part, RuntimeObject *) {
    if (part)
        PerformActions(Part(part)->receivers);
}
extern "C" void listColumnValueProviderDestructor(RuntimeObject *part) { ReleasePart(part); }

extern "C" void listAddLSNR(RuntimeObject *self, RuntimeObject *receiver) {
    ListBox *list = ListOf(self);
    if (!list || !receiver)
        return;
    RuntimeLockObject(receiver);
    list->selectionReceivers.push_back(receiver);
}
extern "C" void listRemoveLSNR(RuntimeObject *self, RuntimeObject *receiver) {
    ListBox *list = ListOf(self);
    if (!list)
        return;
    auto &all = list->selectionReceivers;
    auto at = std::find(all.begin(), all.end(), receiver);
    if (at != all.end()) {
        all.erase(at);
        RuntimeUnlockObject(receiver);
    }
}

// A bound list shows a provider's rows, each read as cells from its fields
// (controls/list_provider.h); while bound, the program's row changes are
// ignored, and the provider's notifications change the rows instead.  An
// object that isn't a provider binds nothing; nil unbinds, and the rows
// shown stay as ordinary rows.
extern "C" void listBind(RuntimeObject *self, RuntimeObject *provider) {
    ListBox *list = ListOf(self);
    if (!list || provider == list->boundData || (provider && !IsListDataProvider(provider)))
        return;
    if (RuntimeObject *old = std::exchange(list->boundData, nullptr)) {
        RemoveListDataReceiver(old, self);
        RuntimeUnlockObject(old);
    }
    if (!provider)
        return;
    RuntimeLockObject(provider);
    list->boundData = provider;
    listListDataReload(self);
    AddListDataReceiver(provider, self);
}
extern "C" void listBinderBind(RuntimeObject *self, RuntimeObject *provider) {
    listBind(self, provider);
}
extern "C" void listListDataInsertedRow(RuntimeObject *self, int32_t index) {
    ListBox *list = ListOf(self);
    ProviderRow cells;
    if (!list || !list->boundData || index < 0 || index > list->Count() ||
        !ReadProviderRow(list->boundData, index, &cells))
        return;
    ShowBoundRow(list, index, cells);
}
extern "C" void listListDataRemovedRow(RuntimeObject *self, int32_t index) {
    ListBox *list = ListOf(self);
    if (list && list->boundData && index >= 0 && index < list->Count())
        list->Remove(index);
}
extern "C" void listListDataReload(RuntimeObject *self) {
    ListBox *list = ListOf(self);
    if (!list || !list->boundData)
        return;
    std::vector<ProviderRow> rows = ReadProviderRows(list->boundData);
    list->Clear();
    for (size_t i = 0; i < rows.size(); ++i)
        ShowBoundRow(list, int32_t(i), rows[i]);
}

extern "C" RuntimeObject *ListboxDataSourceGetter(RuntimeObject *self, int32_t) {
    if (!self)
        return nullptr;
    RuntimeLockObject(Record(self)->dataSource);
    return Record(self)->dataSource;
}
extern "C" void ListboxDataSourceSetter(RuntimeObject *self, int32_t, RuntimeObject *source) {
    if (!self)
        return;
    RuntimeLockObject(source);
    RuntimeUnlockObject(Record(self)->dataSource);
    Record(self)->dataSource = source;
}
extern "C" void ListboxDataFieldSetter(RuntimeObject *self, int32_t, KelpString field) {
    if (!self)
        return;
    RuntimeLockString(field);
    RuntimeUnlockString(Record(self)->dataField);
    Record(self)->dataField = field;
}
