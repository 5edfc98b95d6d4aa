// The ListBox's exported rows, cells and columns: index checks, then the
// list (list_box.h) and, when bound, the pane.
#include "listbox/list_pane.h"
#include "listbox/utf8.h"

#include "exceptions/raise.h"
#include "pictures/picture_object.h"

#include "kelp/listbox.h"
#include "kelp/objects.h"
#include "kelp/strings.h"

#include <algorithm>

using namespace kelp;
using namespace kelp::listbox;

namespace {

bool RowOk(ListBox *list, int32_t row) {
    if (row >= 0 && row < list->Count())
        return true;
    RaiseOutOfBounds();
    return false;
}
bool CellOk(ListBox *list, int32_t row, int32_t column) {
    if (!RowOk(list, row))
        return false;
    if (column >= 0 && column < kDataColumns)
        return true;
    RaiseOutOfBounds();
    return false;
}
bool ColumnOk(int32_t column) {
    if (column >= 0 && column < kMaxColumns)
        return true;
    RaiseOutOfBounds();
    return false;
}
// Row changes do nothing while rows come from a bound provider.
bool Changeable(ListBox *list) { return list && !list->boundData; }

template <typename T, typename Read>
T GetCellField(RuntimeObject *self, int32_t row, int32_t column, Read read) {
    ListBox *list = ListOf(self);
    if (!list || !CellOk(list, row, column))
        return T();
    const Cell *cell = list->At(row)->Find(column);
    return cell ? T(read(*cell)) : T();
}
template <typename Write>
void SetCellField(RuntimeObject *self, int32_t row, int32_t column, Write write) {
    ListBox *list = ListOf(self);
    if (!list || !CellOk(list, row, column))
        return;
    write(list->At(row)->Get(column));
    list->RowChanged(list->At(row));
}

void SetStyleBit(RuntimeObject *self, int32_t row, int32_t column, uint8_t bit, uint8_t on) {
    SetCellField(self, row, column,
                 [&](Cell &c) { c.style = uint8_t(on ? c.style | bit : c.style & ~bit); });
}

// Pixels of a picture as the view draws them.
GdkPixbuf *PixbufOf(RuntimeObject *picture) {
    DrawablePane *store = picture ? StoreOf(picture) : nullptr;
    if (!store || store->Width() < 1 || store->Height() < 1)
        return nullptr;
    std::vector<uint32_t> pixels = store->ReadPixels();
    if (pixels.size() != size_t(store->Width()) * size_t(store->Height()))
        return nullptr;
    GdkPixbuf *pixbuf =
        gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, store->Width(), store->Height());
    guchar *base = gdk_pixbuf_get_pixels(pixbuf);
    const int stride = gdk_pixbuf_get_rowstride(pixbuf);
    for (int y = 0; y < store->Height(); ++y)
        for (int x = 0; x < store->Width(); ++x) {
            uint32_t p = pixels[size_t(y) * size_t(store->Width()) + size_t(x)];
            guchar *px = base + y * stride + x * 3;
            px[0] = guchar(p >> 16), px[1] = guchar(p >> 8), px[2] = guchar(p);
        }
    return pixbuf;
}

void AddRow(RuntimeObject *self, KelpString text, bool folder) {
    if (ListBox *list = ListOf(self); Changeable(list))
        list->Add(ToUtf8(text), folder);
}
void InsertRow(RuntimeObject *self, int32_t row, KelpString text, int32_t indent, bool folder) {
    if (ListBox *list = ListOf(self); Changeable(list))
        list->Insert(row, ToUtf8(text), folder, indent);
}

} // namespace

// ------------------------------------------------------------------- life

extern "C" void listboxConstructor(RuntimeObject *self) {
    if (!self)
        return;
    ListRecord *r = Record(self);
    r->list = new ListBox(self);
    r->defaultRowHeight = -1;
    r->headingIndex = -1;
    r->scrollVertical = 1;
    r->columnsResizable = 0;
}

extern "C" void listboxDestructor(RuntimeObject *self) {
    if (!self)
        return;
    ListRecord *r = Record(self);
    if (ControlPane *pane = PaneOf(self))
        pane->Close();
    Ctl(self)->pane = nullptr;
    delete r->list;
    r->list = nullptr;
    RuntimeUnlockString(r->initialValue);
    RuntimeUnlockString(r->font.textFont);
    RuntimeUnlockString(r->dataField);
    RuntimeUnlockObject(r->dataSource);
    r->initialValue = r->font.textFont = r->dataField = nullptr;
    r->dataSource = nullptr;
}

extern "C" void ListboxCreatePane(RuntimeObject *self) {
    if (self && Record(self)->list)
        MakePane<ListPane, ListRecord>(self);
}

// ------------------------------------------------------------------- rows

extern "C" void RuntimeListAddRow(RuntimeObject *self, KelpString text) {
    AddRow(self, text, false);
}
extern "C" void RuntimeListAddParent(RuntimeObject *self, KelpString text) {
    AddRow(self, text, true);
}
extern "C" void RuntimeListInsertRow(RuntimeObject *self, int32_t row, KelpString text,
                                     int32_t indent) {
    InsertRow(self, row, text, indent, false);
}
extern "C" void RuntimeListInsertParent(RuntimeObject *self, int32_t row, KelpString text,
                                        int32_t indent) {
    InsertRow(self, row, text, indent, true);
}

extern "C" void RuntimeRemoveRow(RuntimeObject *self, int32_t row) {
    ListBox *list = ListOf(self);
    if (Changeable(list) && RowOk(list, row))
        list->Remove(row);
}

extern "C" void RuntimeListEmpty(RuntimeObject *self) {
    if (ListBox *list = ListOf(self); Changeable(list))
        list->Clear();
}

extern "C" KelpString RuntimeGetRow(RuntimeObject *self, int32_t row) {
    return listGetCell(self, row, 0);
}
extern "C" void RuntimeSetRow(RuntimeObject *self, int32_t row, KelpString text) {
    listSetCell(self, row, 0, text);
}

extern "C" void RuntimeListResort(RuntimeObject *self) {
    if (ListBox *list = ListOf(self))
        list->Sort(list->sortedColumn);
}

// The design-time rows: lines of tab-separated cells; with a heading the
// first line holds the headings.
extern "C" void RuntimeListInitialValueSetter(RuntimeObject *self, int32_t, KelpString text) {
    ListBox *list = ListOf(self);
    if (!list)
        return;
    RuntimeLockString(text);
    RuntimeUnlockString(Record(self)->initialValue);
    Record(self)->initialValue = text;
    std::string all = ToUtf8(text);
    if (Record(self)->hasHeading) {
        size_t end = all.find_first_of("\r\n");
        list->SetHeadings(all.substr(0, end));
        all =
            end == std::string::npos ? "" : all.substr(end + (all.compare(end, 2, "\r\n") ? 1 : 2));
    }
    if (Changeable(list))
        list->SetBulkText(-1, -1, all);
}

extern "C" int32_t listCountGetter(RuntimeObject *self, int32_t) {
    ListBox *list = ListOf(self);
    return list ? list->Count() : 0;
}
extern "C" int32_t listLastIndexGetter(RuntimeObject *self, int32_t) {
    ListBox *list = ListOf(self);
    return list ? list->lastIndex : -1;
}

extern "C" uint8_t listGetExpanded(RuntimeObject *self, int32_t row) {
    ListBox *list = ListOf(self);
    return list && RowOk(list, row) && list->At(row)->expanded == 1;
}
extern "C" void listSetExpanded(RuntimeObject *self, int32_t row, uint8_t value) {
    ListBox *list = ListOf(self);
    if (!list || !RowOk(list, row))
        return;
    if (value)
        list->Expand(list->At(row), false);
    else
        list->Collapse(list->At(row), false);
}

extern "C" uint8_t listGetSelected(RuntimeObject *self, int32_t row) {
    ListBox *list = ListOf(self);
    return list && RowOk(list, row) && list->At(row)->selected;
}
extern "C" void listSetSelected(RuntimeObject *self, int32_t row, uint8_t value) {
    ListBox *list = ListOf(self);
    if (list && RowOk(list, row))
        list->SetSelected(list->At(row), value != 0);
}

extern "C" RuntimeObject *listGetRowPicture(RuntimeObject *self, int32_t row) {
    ListBox *list = ListOf(self);
    if (!list || !RowOk(list, row))
        return nullptr;
    RuntimeLockObject(list->At(row)->picture);
    return list->At(row)->picture;
}
extern "C" void listSetRowPicture(RuntimeObject *self, int32_t row, RuntimeObject *picture) {
    ListBox *list = ListOf(self);
    if (!list || !RowOk(list, row))
        return;
    Row *r = list->At(row);
    RuntimeLockObject(picture);
    RuntimeUnlockObject(r->picture);
    r->picture = picture;
    if (r->pixbuf)
        g_object_unref(r->pixbuf);
    r->pixbuf = PixbufOf(picture);
    list->RowChanged(r);
}

// ------------------------------------------------------------------ cells

extern "C" KelpString listGetCell(RuntimeObject *self, int32_t row, int32_t column) {
    ListBox *list = ListOf(self);
    if (!list)
        return nullptr;
    if ((row < -1 || row >= list->Count()) || column < -1 || column >= kDataColumns) {
        RaiseOutOfBounds();
        return nullptr;
    }
    if (row < 0 || column < 0)
        return MakeUtf8(list->BulkText(row, column));
    return MakeUtf8(list->CellText(row, column));
}

extern "C" void listSetCell(RuntimeObject *self, int32_t row, int32_t column, KelpString text) {
    ListBox *list = ListOf(self);
    if (!list)
        return;
    if ((row < -1 || row >= list->Count()) || column < -1 || column >= kDataColumns) {
        RaiseOutOfBounds();
        return;
    }
    if (row < 0 && column < 0 && !Changeable(list))
        return;
    if (row < 0 || column < 0)
        list->SetBulkText(row, column, ToUtf8(text));
    else
        list->SetCellText(row, column, ToUtf8(text));
}

extern "C" uint8_t listGetCellBold(RuntimeObject *self, int32_t row, int32_t column) {
    return GetCellField<uint8_t>(self, row, column, [](const Cell &c) { return c.style & kBold; });
}
extern "C" void listSetCellBold(RuntimeObject *self, int32_t row, int32_t column, uint8_t v) {
    SetStyleBit(self, row, column, kBold, v);
}
extern "C" uint8_t listGetCellItalic(RuntimeObject *self, int32_t row, int32_t column) {
    return GetCellField<uint8_t>(self, row, column,
                                 [](const Cell &c) { return (c.style & kItalic) != 0; });
}
extern "C" void listSetCellItalic(RuntimeObject *self, int32_t row, int32_t column, uint8_t v) {
    SetStyleBit(self, row, column, kItalic, v);
}
extern "C" uint8_t listGetCellUnderline(RuntimeObject *self, int32_t row, int32_t column) {
    return GetCellField<uint8_t>(self, row, column,
                                 [](const Cell &c) { return (c.style & kUnderline) != 0; });
}
extern "C" void listSetCellUnderline(RuntimeObject *self, int32_t row, int32_t column, uint8_t v) {
    SetStyleBit(self, row, column, kUnderline, v);
}

#define KELP_BORDER_ACCESSORS(Side, index)                                                         \
    extern "C" int32_t listGetCellBorder##Side(RuntimeObject *self, int32_t row, int32_t column) { \
        return GetCellField<int32_t>(self, row, column,                                            \
                                     [](const Cell &c) { return c.border[index]; });               \
    }                                                                                              \
    extern "C" void listSetCellBorder##Side(RuntimeObject *self, int32_t row, int32_t column,      \
                                            int32_t v) {                                           \
        SetCellField(self, row, column,                                                            \
                     [&](Cell &c) { c.border[index] = uint8_t(std::clamp(v, 0, 5)); });            \
    }
KELP_BORDER_ACCESSORS(Top, 0)
KELP_BORDER_ACCESSORS(Left, 1)
KELP_BORDER_ACCESSORS(Bottom, 2)
KELP_BORDER_ACCESSORS(Right, 3)
#undef KELP_BORDER_ACCESSORS

extern "C" RuntimeObject *listGetCellTag(RuntimeObject *self, int32_t row, int32_t column) {
    RuntimeObject *tag =
        GetCellField<RuntimeObject *>(self, row, column, [](const Cell &c) { return c.tag; });
    RuntimeLockObject(tag);
    return tag;
}
extern "C" void listSetCellTag(RuntimeObject *self, int32_t row, int32_t column,
                               RuntimeObject *tag) {
    SetCellField(self, row, column, [&](Cell &c) {
        RuntimeLockObject(tag);
        RuntimeUnlockObject(c.tag);
        c.tag = tag;
    });
}

extern "C" uint8_t listCellCheckGetter(RuntimeObject *self, int32_t row, int32_t column) {
    return GetCellField<uint8_t>(self, row, column, [](const Cell &c) { return c.checked; });
}
extern "C" void listCellCheckSetter(RuntimeObject *self, int32_t row, int32_t column, uint8_t v) {
    SetCellField(self, row, column, [&](Cell &c) { c.checked = v != 0; });
}
extern "C" int32_t listCellTypeGetter(RuntimeObject *self, int32_t row, int32_t column) {
    return GetCellField<int32_t>(self, row, column, [](const Cell &c) { return c.type; });
}
extern "C" void listCellTypeSetter(RuntimeObject *self, int32_t row, int32_t column, int32_t v) {
    SetCellField(self, row, column,
                 [&](Cell &c) { c.type = uint8_t(std::clamp(v, 0, int32_t(kTypeEditable))); });
}
extern "C" int32_t listCellAlignmentGetter(RuntimeObject *self, int32_t row, int32_t column) {
    return GetCellField<int32_t>(self, row, column, [](const Cell &c) { return c.alignment; });
}
extern "C" void listCellAlignmentSetter(RuntimeObject *self, int32_t row, int32_t column,
                                        int32_t v) {
    SetCellField(self, row, column, [&](Cell &c) { c.alignment = std::clamp(v, 0, 4); });
}
extern "C" int32_t listCellAlignmentOffsetGetter(RuntimeObject *self, int32_t row, int32_t column) {
    return GetCellField<int32_t>(self, row, column,
                                 [](const Cell &c) { return c.alignmentOffset; });
}
extern "C" void listCellAlignmentOffsetSetter(RuntimeObject *self, int32_t row, int32_t column,
                                              int32_t v) {
    SetCellField(self, row, column, [&](Cell &c) { c.alignmentOffset = v; });
}

extern "C" void listInvalidateCell(RuntimeObject *self, int32_t row, int32_t column) {
    ListBox *list = ListOf(self);
    if (list && CellOk(list, row, column))
        list->RowChanged(list->At(row));
}

extern "C" void listEditCell(RuntimeObject *self, int32_t row, int32_t column) {
    ListBox *list = ListOf(self);
    if (!list || !RowOk(list, row) || !ColumnOk(column))
        return;
    if (list->pane)
        list->pane->EditCell(row, column);
}

// The EditField laid over the cell being edited, or nil.
extern "C" RuntimeObject *listActiveCellGetter(RuntimeObject *self, int32_t) {
    ListBox *list = ListOf(self);
    RuntimeObject *field = list && list->pane ? list->pane->ActiveCell() : nullptr;
    RuntimeLockObject(field);
    return field;
}
