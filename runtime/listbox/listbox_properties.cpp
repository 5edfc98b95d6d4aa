// The ListBox's column, selection and appearance properties.
#include "listbox/list_pane.h"
#include "listbox/utf8.h"

#include "exceptions/raise.h"

#include "kelp/listbox.h"
#include "kelp/objects.h"
#include "kelp/strings.h"

#include <algorithm>

using namespace kelp;
using namespace kelp::listbox;

namespace kelp::listbox {

bool ListBox::Multiple() const { return Record(mControl)->selectionType == 1; }

} // namespace kelp::listbox

namespace {

bool ColumnOk(int32_t column) {
    if (column >= 0 && column < kMaxColumns)
        return true;
    RaiseOutOfBounds();
    return false;
}

template <typename Field>
Field ColumnField(RuntimeObject *self, int32_t column, Field ColumnInfo::*f) {
    ListBox *list = ListOf(self);
    return list && ColumnOk(column) ? list->Column(column).*f : Field();
}
template <typename Field>
void SetColumnField(RuntimeObject *self, int32_t column, Field ColumnInfo::*f, Field value) {
    ListBox *list = ListOf(self);
    if (!list || !ColumnOk(column))
        return;
    list->Column(column).*f = value;
    if (list->pane)
        gtk_widget_queue_draw(GTK_WIDGET(list->pane->View()));
}

template <typename Show> void WithPane(RuntimeObject *self, Show show) {
    if (ListBox *list = ListOf(self); list && list->pane)
        show(list->pane);
}

} // namespace

extern "C" int32_t listColumnCountGetter(RuntimeObject *self, int32_t) {
    ListBox *list = ListOf(self);
    return list ? list->ColumnCount() : 1;
}
extern "C" void listColumnCountSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (ListBox *list = ListOf(self))
        list->SetColumnCount(value);
}

extern "C" KelpString listColumnWidthsGetter(RuntimeObject *self, int32_t) {
    ListBox *list = ListOf(self);
    return list ? MakeUtf8(ColumnWidthsText(list->Widths(), list->contentWidth)) : nullptr;
}
extern "C" void listColumnWidthsSetter(RuntimeObject *self, int32_t, KelpString value) {
    ListBox *list = ListOf(self);
    if (!list)
        return;
    std::vector<ColumnWidth> widths = list->Widths();
    std::string error;
    if (!SetColumnWidths(widths, ToUtf8(value), &error)) {
        RaiseWithMessage("UnsupportedFormatException", error.c_str());
        return;
    }
    list->StoreWidths(widths);
    list->LayoutColumns();
}

extern "C" int32_t listColumnTypeGetter(RuntimeObject *self, int32_t column) {
    return ColumnField(self, column, &ColumnInfo::type);
}
extern "C" void listColumnTypeSetter(RuntimeObject *self, int32_t column, int32_t value) {
    SetColumnField(self, column, &ColumnInfo::type,
                   uint8_t(std::clamp(value, 0, int32_t(kTypeEditable))));
}
extern "C" int32_t listColumnAlignmentGetter(RuntimeObject *self, int32_t column) {
    return ColumnField(self, column, &ColumnInfo::alignment);
}
extern "C" void listColumnAlignmentSetter(RuntimeObject *self, int32_t column, int32_t value) {
    SetColumnField(self, column, &ColumnInfo::alignment, std::clamp(value, 0, 4));
}
extern "C" int32_t listColumnAlignmentOffsetGetter(RuntimeObject *self, int32_t column) {
    return ColumnField(self, column, &ColumnInfo::alignmentOffset);
}
extern "C" void listColumnAlignmentOffsetSetter(RuntimeObject *self, int32_t column,
                                                int32_t value) {
    SetColumnField(self, column, &ColumnInfo::alignmentOffset, value);
}
extern "C" int32_t listColumnSortDirectionGetter(RuntimeObject *self, int32_t column) {
    return ColumnField(self, column, &ColumnInfo::sortDirection);
}
extern "C" void listColumnSortDirectionSetter(RuntimeObject *self, int32_t column, int32_t value) {
    SetColumnField(self, column, &ColumnInfo::sortDirection, std::clamp(value, -1, 1));
    WithPane(self, [](ListPane *p) { p->ShowSortIndicator(); });
}
extern "C" void listColumnPressHeader(RuntimeObject *self, int32_t column) {
    ListBox *list = ListOf(self);
    if (list && ColumnOk(column))
        list->PressHeader(column);
}

extern "C" KelpString listGetHeading(RuntimeObject *self, int32_t column) {
    ListBox *list = ListOf(self);
    if (!list)
        return nullptr;
    if (column == -1) {
        std::string all;
        for (int32_t i = 0; i < list->ColumnCount(); ++i)
            all += (i ? "\t" : "") + list->HeadingText(i);
        return MakeUtf8(all);
    }
    return ColumnOk(column) ? MakeUtf8(list->HeadingText(column)) : nullptr;
}
extern "C" void listSetHeading(RuntimeObject *self, int32_t column, KelpString text) {
    ListBox *list = ListOf(self);
    if (!list)
        return;
    if (column == -1) {
        list->SetHeadings(ToUtf8(text));
    } else if (ColumnOk(column)) {
        list->Column(column).heading = ToUtf8(text);
        WithPane(self, [](ListPane *p) { p->ShowColumns(); });
    }
}

extern "C" int32_t listSortedColumnGetter(RuntimeObject *self, int32_t) {
    ListBox *list = ListOf(self);
    return list ? list->sortedColumn : -1;
}
// Names the column that Sort uses; sorting waits for Sort.
extern "C" void listSortedColumnSetter(RuntimeObject *self, int32_t, int32_t value) {
    ListBox *list = ListOf(self);
    if (!list || (value != -1 && !ColumnOk(value)))
        return;
    list->sortedColumn = value;
    WithPane(self, [](ListPane *p) { p->ShowSortIndicator(); });
}

extern "C" void listHasHeadingSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (!self)
        return;
    Record(self)->hasHeading = value != 0;
    WithPane(self, [&](ListPane *p) { p->ShowHeading(value != 0); });
}
extern "C" void listHeadingIndexSetter(RuntimeObject *self, int32_t, int32_t value) {
    ListBox *list = ListOf(self);
    if (!list || (value != -1 && !ColumnOk(value)))
        return;
    if (value == -1)
        list->headingIndex = Record(self)->headingIndex = -1;
    else
        list->PressHeader(value);
}

// ---------------------------------------------------------------- selection

extern "C" int32_t listSelectionGetter(RuntimeObject *self, int32_t) {
    ListBox *list = ListOf(self);
    return list ? list->ListIndex() : -1;
}
extern "C" void listSelectionSetter(RuntimeObject *self, int32_t, int32_t row) {
    ListBox *list = ListOf(self);
    if (!list)
        return;
    if (row < -1 || row >= list->Count()) {
        RaiseOutOfBounds();
        return;
    }
    list->SelectOnly(list->At(row));
}
extern "C" int32_t listSelCountGetter(RuntimeObject *self, int32_t) {
    ListBox *list = ListOf(self);
    return list ? list->SelCount() : 0;
}
extern "C" KelpString listTextGetter(RuntimeObject *self, int32_t) {
    ListBox *list = ListOf(self);
    int32_t at = list ? list->ListIndex() : -1;
    return at >= 0 ? MakeUtf8(list->CellText(at, 0)) : nullptr;
}
extern "C" void listTextSetter(RuntimeObject *self, int32_t, KelpString value) {
    ListBox *list = ListOf(self);
    int32_t at = list ? list->ListIndex() : -1;
    if (at >= 0)
        list->SetCellText(at, 0, ToUtf8(value));
}
extern "C" void listRequiresSelectionSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (ListBox *list = ListOf(self)) {
        list->requiresSelection = value != 0;
        Record(self)->requiresSelection = value != 0;
    }
}
extern "C" void listHierarchicalSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (ListBox *list = ListOf(self))
        list->SetHierarchical(value != 0);
}
// A press on a row then offers a drag out of the list through DragRow.
extern "C" void listEnableDragSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (self)
        Record(self)->enableDrag = value != 0;
}
extern "C" void ListEnableDragReorderSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (!self)
        return;
    Record(self)->enableDragReorder = value != 0;
    WithPane(self, [&](ListPane *p) { p->ShowDragReorder(value != 0); });
}

// ------------------------------------------------------------- position

extern "C" int32_t listScrollPositionGetter(RuntimeObject *self, int32_t) {
    ListBox *list = ListOf(self);
    return list && list->pane ? list->pane->ScrollPosition() : 0;
}
extern "C" void listScrollPositionSetter(RuntimeObject *self, int32_t, int32_t row) {
    WithPane(self, [&](ListPane *p) { p->SetScrollPosition(row); });
}
extern "C" int32_t listScrollPositionXGetter(RuntimeObject *self, int32_t) {
    ListBox *list = ListOf(self);
    return list && list->pane ? list->pane->ScrollPositionX() : 0;
}
extern "C" void listScrollPositionXSetter(RuntimeObject *self, int32_t, int32_t x) {
    WithPane(self, [&](ListPane *p) { p->SetScrollPositionX(x); });
}
extern "C" void listHScrollBarSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (!self)
        return;
    Record(self)->scrollHorizontal = value != 0;
    WithPane(self, [&](ListPane *p) {
        p->ShowScrollBars(Record(self)->scrollHorizontal, Record(self)->scrollVertical);
    });
}
extern "C" void listVScrollBarSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (!self)
        return;
    Record(self)->scrollVertical = value != 0;
    WithPane(self, [&](ListPane *p) {
        p->ShowScrollBars(Record(self)->scrollHorizontal, Record(self)->scrollVertical);
    });
}
// The toolkit's automatic scroll bars already hide when not needed.
extern "C" void listAutoHideScrollbarSetter(RuntimeObject *, int32_t, uint8_t) {}

extern "C" void listHGridLinesSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (!self)
        return;
    Record(self)->gridHorizontal = value;
    WithPane(self, [&](ListPane *p) { p->ShowGridLines(value, Record(self)->gridVertical); });
}
extern "C" void listVGridLinesSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (!self)
        return;
    Record(self)->gridVertical = value;
    WithPane(self, [&](ListPane *p) { p->ShowGridLines(Record(self)->gridHorizontal, value); });
}
extern "C" void listDefaultRowHeightSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (!self)
        return;
    Record(self)->defaultRowHeight = value;
    WithPane(self, [&](ListPane *p) { p->SetRowHeight(value); });
}

extern "C" int32_t listRowFromXY(RuntimeObject *self, int32_t x, int32_t y) {
    ListBox *list = ListOf(self);
    return list && list->pane ? list->pane->RowFromXY(x, y) : -1;
}
extern "C" int32_t listColFromXY(RuntimeObject *self, int32_t x, int32_t y) {
    ListBox *list = ListOf(self);
    return list && list->pane ? list->pane->ColumnFromXY(x, y) : -1;
}

// ------------------------------------------------------------------ font

extern "C" KelpString listTextFontGetter(RuntimeObject *self, int32_t) {
    if (!self)
        return nullptr;
    RuntimeLockString(Record(self)->font.textFont);
    return Record(self)->font.textFont;
}
extern "C" void listTextFontSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (self)
        SetFontName(self, Record(self)->font, value);
}
extern "C" int32_t listTextSizeGetter(RuntimeObject *self, int32_t) {
    return self ? Record(self)->font.textSize : 0;
}
extern "C" void listTextSizeSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (self)
        SetFontSize(self, Record(self)->font, value);
}
extern "C" uint8_t listBoldGetter(RuntimeObject *self, int32_t) {
    return self ? Record(self)->font.bold : 0;
}
extern "C" void listBoldSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (self)
        SetFontStyle(self, Record(self)->font, 0, value);
}
extern "C" uint8_t listItalicGetter(RuntimeObject *self, int32_t) {
    return self ? Record(self)->font.italic : 0;
}
extern "C" void listItalicSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (self)
        SetFontStyle(self, Record(self)->font, 1, value);
}
extern "C" uint8_t listUnderlineGetter(RuntimeObject *self, int32_t) {
    return self ? Record(self)->font.underline : 0;
}
extern "C" void listUnderlineSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (self)
        SetFontStyle(self, Record(self)->font, 2, value);
}
