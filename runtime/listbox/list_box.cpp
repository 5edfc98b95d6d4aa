#include "listbox/list_box.h"

#include "listbox/list_pane.h"

#include "exceptions/call_event.h"
#include "strings/encodings.h"

#include "kelp/objects.h"

#include <algorithm>
#include <functional>

namespace kelp::listbox {

Hooks gHooks;

const Cell *Row::Find(int32_t column) const {
    for (const Cell &c : cells)
        if (c.column == column)
            return &c;
    return nullptr;
}

Cell &Row::Get(int32_t column) {
    for (Cell &c : cells)
        if (c.column == column)
            return c;
    cells.emplace_back();
    cells.back().column = uint8_t(column);
    return cells.back();
}

ListBox::ListBox(RuntimeObject *control)
    : mControl(control), mStore(GTK_TREE_MODEL(gtk_list_store_new(1, G_TYPE_POINTER))) {}

// A flat list keeps its nodes in a list store, whose paths cost a log of
// the row count; a tree store walks all siblings for each, which a list of
// many rows can't afford.  Only a hierarchical list needs the tree.
bool ListBox::Flat() const { return GTK_IS_LIST_STORE(mStore); }

void ListBox::NodeInsert(GtkTreeIter *out, GtkTreeIter *parent, GtkTreeIter *sibling, bool before) {
    if (Flat() && before)
        gtk_list_store_insert_before(GTK_LIST_STORE(mStore), out, sibling);
    else if (Flat())
        gtk_list_store_insert_after(GTK_LIST_STORE(mStore), out, sibling);
    else if (before)
        gtk_tree_store_insert_before(GTK_TREE_STORE(mStore), out, parent, sibling);
    else
        gtk_tree_store_insert_after(GTK_TREE_STORE(mStore), out, parent, sibling);
}

void ListBox::NodeSet(GtkTreeIter *iter, Row *row) {
    if (Flat())
        gtk_list_store_set(GTK_LIST_STORE(mStore), iter, 0, row, -1);
    else
        gtk_tree_store_set(GTK_TREE_STORE(mStore), iter, 0, row, -1);
}

void ListBox::NodeRemove(GtkTreeIter *iter) {
    if (Flat())
        gtk_list_store_remove(GTK_LIST_STORE(mStore), iter);
    else
        gtk_tree_store_remove(GTK_TREE_STORE(mStore), iter);
}

void ListBox::NewStore(bool tree) {
    g_object_unref(mStore);
    mStore = tree ? GTK_TREE_MODEL(gtk_tree_store_new(1, G_TYPE_POINTER))
                  : GTK_TREE_MODEL(gtk_list_store_new(1, G_TYPE_POINTER));
    GtkTreeIter *last = nullptr;
    for (Row *row : mRows) {
        NodeInsert(&row->iter, nullptr, last, false);
        NodeSet(&row->iter, row);
        last = &row->iter;
        if (row->expanded == 0 && tree)
            AddPlaceholder(row);
    }
    if (pane)
        pane->ShowModel();
}

ListBox::~ListBox() {
    for (Row *row : mRows)
        FreeRow(row);
    mRows.clear();
    g_object_unref(mStore);
    for (RuntimeObject *r : selectionReceivers)
        RuntimeUnlockObject(r);
    RuntimeUnlockObject(boundData);
}

void ListBox::FreeRow(Row *row) {
    for (Cell &c : row->cells)
        RuntimeUnlockObject(c.tag);
    RuntimeUnlockObject(row->picture);
    if (row->pixbuf)
        g_object_unref(row->pixbuf);
    delete row;
}

void ListBox::Renumber() {
    for (size_t i = 0; i < mRows.size(); ++i)
        mRows[i]->index = int32_t(i);
    mStale = false;
}

int32_t ListBox::IndexOf(const Row *row) {
    if (!row)
        return -1;
    if (mStale)
        Renumber();
    return At(row->index) == row ? row->index : -1;
}

Row *ListBox::RowOfIter(GtkTreeIter *iter) const {
    gpointer p = nullptr;
    gtk_tree_model_get(mStore, iter, 0, &p, -1);
    return static_cast<Row *>(p);
}

Row *ListBox::Place(Row *row, GtkTreeIter *parent, GtkTreeIter *sibling, int32_t position,
                    bool before) {
    if (sibling)
        NodeInsert(&row->iter, parent, sibling, before);
    else if (!parent && !mRows.empty() && position == Count()) {
        // After the last top-level node: the store would walk all siblings
        // to find the end, which a list of many rows can't afford.
        Row *last = mRows.back();
        for (GtkTreeIter up; gtk_tree_model_iter_parent(mStore, &up, &last->iter);)
            last = RowOfIter(&up);
        NodeInsert(&row->iter, nullptr, &last->iter, false);
    } else
        NodeInsert(&row->iter, parent, nullptr, true); // at the end of the parent's rows
    NodeSet(&row->iter, row);
    mRows.insert(mRows.begin() + position, row);
    if (position + 1 == Count() && !mStale)
        row->index = position;
    else
        mStale = true;
    if (mSelCount && position + 1 < Count())
        mStale = true;
    if (row->expanded == 0 && mHierarchical)
        AddPlaceholder(row);
    lastIndex = position;
    return row;
}

Row *ListBox::Add(std::string_view text, bool folder) {
    auto *row = new Row;
    row->expanded = folder ? 0 : -1;
    row->Get(0).text = std::string(text);
    if (!mExpanding.empty()) {
        Row *parent = mExpanding.back();
        int32_t at = IndexOf(parent) + 1;
        while (at < Count() && mRows[size_t(at)]->indent > parent->indent)
            ++at;
        row->indent = int16_t(parent->indent + 1);
        return Place(row, &parent->iter, nullptr, at);
    }
    return Place(row, nullptr, nullptr, Count());
}

Row *ListBox::Insert(int32_t position, std::string_view text, bool folder, int32_t indent) {
    position = std::clamp(position, 0, Count());
    if (position == Count() && !mExpanding.empty())
        return Add(text, folder);
    auto *row = new Row;
    row->expanded = folder ? 0 : -1;
    row->Get(0).text = std::string(text);
    if (position == Count() && (!mHierarchical || position == 0 || Flat())) {
        row->indent = mHierarchical ? 0 : int16_t(std::max(indent, 0));
        return Place(row, nullptr, nullptr, position);
    }
    Row *beside = position < Count() ? mRows[size_t(position)] : nullptr;
    if (beside && (!mHierarchical || position == 0 || Flat())) {
        row->indent = beside->indent;
        GtkTreeIter parent;
        bool hasParent = gtk_tree_model_iter_parent(mStore, &parent, &beside->iter) != FALSE;
        return Place(row, hasParent ? &parent : nullptr, &beside->iter, position);
    }
    // The indent asked for, as far as the rows around allow: no deeper than
    // a child of the row above (an open folder) or its sibling, and no
    // shallower than the row below, which would otherwise become a child
    // of the new row.
    Row *above = mRows[size_t(position - 1)];
    const int32_t shallowest = beside ? beside->indent : 0;
    const int32_t deepest = std::max(shallowest, above->indent + (above->expanded == 1 ? 1 : 0));
    row->indent = int16_t(std::clamp(indent, shallowest, deepest));
    if (beside && beside->indent == row->indent) {
        GtkTreeIter parent;
        bool hasParent = gtk_tree_model_iter_parent(mStore, &parent, &beside->iter) != FALSE;
        return Place(row, hasParent ? &parent : nullptr, &beside->iter, position);
    }
    if (row->indent > above->indent) // the only child of the open folder above
        return Place(row, &above->iter, nullptr, position);
    // Behind the row above's ancestor at this indent, among its siblings;
    // indents grow by at most one a row, so that ancestor is the first row
    // up at the indent.
    Row *sibling = above;
    for (int32_t at = position - 1; at >= 0 && mRows[size_t(at)]->indent >= row->indent; --at)
        sibling = mRows[size_t(at)];
    return Place(row, nullptr, &sibling->iter, position, false);
}

void ListBox::Remove(int32_t index) {
    Row *row = At(index);
    if (!row)
        return;
    int32_t end = index + 1;
    while (end < Count() && mRows[size_t(end)]->indent > row->indent)
        ++end;
    bool hadSelection = false;
    for (int32_t i = index; i < end; ++i)
        if (mRows[size_t(i)]->selected) {
            hadSelection = true;
            --mSelCount;
        }
    GtkTreeIter iter = row->iter;
    std::vector<Row *> gone(mRows.begin() + index, mRows.begin() + end);
    mRows.erase(mRows.begin() + index, mRows.begin() + end);
    mStale = true;
    std::erase_if(mExpanding, [&](Row *r) { return std::count(gone.begin(), gone.end(), r); });
    NodeRemove(&iter);
    for (Row *r : gone)
        FreeRow(r);
    if (hadSelection)
        SelectionChanged();
}

void ListBox::Clear() {
    bool hadSelection = mSelCount > 0;
    std::vector<Row *> gone;
    gone.swap(mRows);
    mSelCount = 0;
    mExpanding.clear();
    if (Flat())
        gtk_list_store_clear(GTK_LIST_STORE(mStore));
    else
        gtk_tree_store_clear(GTK_TREE_STORE(mStore));
    for (Row *r : gone)
        FreeRow(r);
    lastIndex = -1;
    if (hadSelection)
        SelectionChanged();
}

namespace {
// Gives `to` the children of `from`, nodes and rows, all the way down.
void CopyChildren(GtkTreeStore *store, GtkTreeIter *from, GtkTreeIter *to) {
    GtkTreeModel *model = GTK_TREE_MODEL(store);
    GtkTreeIter child, made;
    for (bool ok = gtk_tree_model_iter_children(model, &child, from); ok;
         ok = gtk_tree_model_iter_next(model, &child)) {
        gpointer p = nullptr;
        gtk_tree_model_get(model, &child, 0, &p, -1);
        gtk_tree_store_append(store, &made, to);
        gtk_tree_store_set(store, &made, 0, p, -1);
        if (p)
            static_cast<Row *>(p)->iter = made;
        CopyChildren(store, &child, &made);
    }
}
} // namespace

bool ListBox::Move(Row *row, Row *target, bool before, bool into) {
    GtkTreeModel *model = mStore;
    if (!row || row == target)
        return false;
    GtkTreeIter up, at;
    for (Row *r = target; r;) { // not into its own children
        if (r == row)
            return false;
        at = r->iter;
        r = gtk_tree_model_iter_parent(model, &up, &at) ? RowOfIter(&up) : nullptr;
    }
    mMoving = true;
    GtkTreeIter old = row->iter, made;
    int16_t indent = 0;
    if (into) {
        NodeInsert(&made, &target->iter, nullptr, false);
        indent = int16_t(target->indent + 1);
    } else if (target) {
        GtkTreeIter parent;
        bool hasParent = gtk_tree_model_iter_parent(model, &parent, &target->iter);
        NodeInsert(&made, hasParent ? &parent : nullptr, &target->iter, before);
        indent = target->indent;
    } else {
        NodeInsert(&made, nullptr, nullptr, true);
    }
    NodeSet(&made, row);
    if (!Flat())
        CopyChildren(GTK_TREE_STORE(mStore), &old, &made);
    NodeRemove(&old);
    row->iter = made;
    const int16_t shift = int16_t(indent - row->indent);
    const int32_t from = IndexOf(row);
    for (int32_t i = from + 1; i < Count() && mRows[size_t(i)]->indent > row->indent; ++i)
        mRows[size_t(i)]->indent = int16_t(mRows[size_t(i)]->indent + shift);
    row->indent = indent;
    Rebuild();
    mMoving = false;
    if (pane) {
        for (Row *r : mRows)
            if (r->expanded == 1)
                pane->ShowExpanded(r);
        pane->ShowSelection();
    }
    return true;
}

std::string ListBox::CellText(int32_t row, int32_t column) const {
    const Row *r = At(row);
    const Cell *c = r ? r->Find(column) : nullptr;
    return c ? c->text : std::string();
}

void ListBox::SetCellText(int32_t row, int32_t column, std::string_view text) {
    if (Row *r = At(row)) {
        r->Get(column).text = std::string(text);
        RowChanged(r);
    }
}

void ListBox::RowChanged(Row *row) {
    // The view draws cells from the rows themselves, so a repaint shows the
    // change; telling the store would cost a path, which is dear in a tree.
    (void)row;
    if (pane)
        gtk_widget_queue_draw(GTK_WIDGET(pane->View()));
}

uint8_t ListBox::EffectiveType(const Row *row, int32_t column) const {
    const Cell *c = row ? row->Find(column) : nullptr;
    if (c && c->type != kTypeDefault)
        return c->type;
    return column < kMaxColumns ? mColumns[size_t(column)].type : uint8_t(kTypeNormal);
}

std::string ListBox::BulkText(int32_t row, int32_t column) const {
    auto line = [&](int32_t r) {
        std::string text;
        for (int32_t c = 0; c < ColumnCount(); ++c)
            text += (c ? "\t" : "") + CellText(r, c);
        return text;
    };
    std::string text;
    if (row >= 0)
        return line(row);
    for (int32_t r = 0; r < Count(); ++r) {
        if (r)
            text += "\r";
        text += column >= 0 ? CellText(r, column) : line(r);
    }
    return text;
}

namespace {
// Splits on any line ending (CR, LF, CRLF) or on a tab.
std::vector<std::string> Split(std::string_view text, bool lines) {
    std::vector<std::string> pieces(1);
    for (size_t i = 0; i < text.size(); ++i) {
        char ch = text[i];
        if (lines ? (ch == '\r' || ch == '\n') : ch == '\t') {
            if (ch == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
                ++i;
            pieces.emplace_back();
        } else
            pieces.back() += ch;
    }
    return pieces;
}
} // namespace

void ListBox::SetBulkText(int32_t row, int32_t column, std::string_view text) {
    if (row >= 0) {
        std::vector<std::string> cells = Split(text, false);
        for (size_t c = 0; c < cells.size() && c < size_t(kDataColumns); ++c)
            if (column < 0 || int32_t(c) == column)
                SetCellText(row, int32_t(c), cells[c]);
        return;
    }
    std::vector<std::string> lines = Split(text, true);
    if (column >= 0) {
        for (size_t r = 0; r < lines.size() && int32_t(r) < Count(); ++r)
            SetCellText(int32_t(r), column, lines[r]);
        return;
    }
    Clear();
    if (text.empty())
        return;
    for (const std::string &line : lines) {
        Add("", false);
        SetBulkText(Count() - 1, -1, line);
    }
}

void ListBox::SetColumnCount(int32_t count) {
    mColumnCount = size_t(std::clamp(count, 1, kMaxColumns));
    LayoutColumns();
    if (pane)
        pane->ShowColumns();
}

std::vector<ColumnWidth> ListBox::Widths() const {
    std::vector<ColumnWidth> widths;
    for (size_t i = 0; i < mColumnCount; ++i)
        widths.push_back(mColumns[i].width);
    return widths;
}

void ListBox::StoreWidths(const std::vector<ColumnWidth> &widths) {
    for (size_t i = 0; i < widths.size() && i < mColumns.size(); ++i)
        mColumns[i].width = widths[i];
}

void ListBox::LayoutColumns() {
    std::vector<ColumnWidth> widths = Widths();
    Layout(widths, contentWidth);
    StoreWidths(widths);
    if (pane)
        pane->ShowWidths();
}

void ListBox::SetHeadings(std::string_view tabbed) {
    std::vector<std::string> pieces = Split(tabbed, false);
    for (size_t i = 0; i < mColumns.size(); ++i)
        mColumns[i].heading = i < pieces.size() ? pieces[i] : "";
    if (pane)
        pane->ShowColumns();
}

std::string ListBox::HeadingText(int32_t column) const {
    const std::string &h = mColumns[size_t(column)].heading;
    return h.empty() ? std::to_string(column) : h;
}

// ---------------------------------------------------------------- hierarchy

void ListBox::AddPlaceholder(Row *folder) {
    GtkTreeIter child;
    if (!gtk_tree_model_iter_has_child(mStore, &folder->iter))
        gtk_tree_store_append(GTK_TREE_STORE(mStore), &child, &folder->iter); // holds no row
}

void ListBox::RemovePlaceholder(Row *folder) {
    GtkTreeIter child;
    if (gtk_tree_model_iter_children(mStore, &child, &folder->iter) && !RowOfIter(&child))
        gtk_tree_store_remove(GTK_TREE_STORE(mStore), &child);
}

void ListBox::SetHierarchical(bool on) {
    if (on == mHierarchical)
        return;
    mHierarchical = on;
    Record(mControl)->hierarchical = on;
    // Rows inside open folders become rows of their own in a flat list.
    for (Row *row : mRows) {
        row->indent = 0;
        if (row->expanded == 1)
            row->expanded = 0;
    }
    mExpanding.clear();
    NewStore(on);
}

void ListBox::Expand(Row *row, bool byView) {
    if (!row || row->expanded != 0 || !mHierarchical)
        return;
    row->expanded = 1;
    mExpanding.push_back(row);
    Fire(gHooks.expandRow, IndexOf(row));
    if (std::find(mExpanding.begin(), mExpanding.end(), row) == mExpanding.end())
        return; // removed by the handler
    mExpanding.pop_back();
    RemovePlaceholder(row);
    if (pane && !byView)
        pane->ShowExpanded(row);
}

void ListBox::RemoveChildren(Row *folder) {
    int32_t at = IndexOf(folder);
    while (at + 1 < Count() && mRows[size_t(at + 1)]->indent > folder->indent)
        Remove(at + 1);
}

void ListBox::Collapse(Row *row, bool byView) {
    (void)byView;
    if (!row || row->expanded != 1)
        return;
    Fire(gHooks.collapseRow, IndexOf(row));
    if (std::find(mRows.begin(), mRows.end(), row) == mRows.end())
        return; // the handler removed it: the pointer is only compared
    row->expanded = 0;
    AddPlaceholder(row);
    RemoveChildren(row);
}

// ---------------------------------------------------------------- selection

int32_t ListBox::ListIndex() {
    if (!mSelCount)
        return -1;
    for (size_t i = 0; i < mRows.size(); ++i)
        if (mRows[i]->selected)
            return int32_t(i);
    return -1;
}

void ListBox::SetSelected(Row *row, bool on) {
    if (!row || row->selected == on)
        return;
    if (on && !Multiple())
        for (Row *r : mRows)
            if (r->selected) {
                r->selected = false;
                --mSelCount;
            }
    row->selected = on;
    mSelCount += on ? 1 : -1;
    if (pane)
        pane->ShowSelection();
    SelectionChanged();
}

void ListBox::SelectOnly(Row *row) {
    bool changed = false;
    for (Row *r : mRows)
        if (r->selected != (r == row)) {
            r->selected = r == row;
            changed = true;
        }
    mSelCount = row ? 1 : 0;
    if (!changed)
        return;
    if (pane)
        pane->ShowSelection();
    SelectionChanged();
}

void ListBox::TakeSelection(const std::vector<Row *> &selected) {
    if (mMoving)
        return;
    for (Row *r : mRows)
        r->selected = false;
    for (Row *r : selected)
        r->selected = true;
    mSelCount = int32_t(selected.size());
    SelectionChanged();
}

void ListBox::SelectionChanged() {
    if (mNotifying)
        return; // a Change handler that changes the selection again
    mNotifying = true;
    Fire(gHooks.change);
    std::vector<RuntimeObject *> receivers = selectionReceivers;
    for (RuntimeObject *r : receivers)
        RuntimeLockObject(r);
    for (RuntimeObject *r : receivers) {
        TellSelectionReceiver(r, mControl);
        RuntimeUnlockObject(r);
    }
    mNotifying = false;
}

// ------------------------------------------------------------------ sorting

namespace {
// The list being sorted: the comparison is called by the sort and fires
// CompareRows, so one sort runs at a time.
ListBox *sSorting = nullptr;
} // namespace

void ListBox::SortSiblings(GtkTreeIter *parent, int32_t column) {
    GtkTreeModel *model = mStore;
    std::vector<Row *> siblings;
    GtkTreeIter it;
    for (bool ok = gtk_tree_model_iter_children(model, &it, parent); ok;
         ok = gtk_tree_model_iter_next(model, &it)) {
        Row *r = RowOfIter(&it);
        if (!r)
            return; // a collapsed folder's placeholder: nothing to sort
        siblings.push_back(r);
        if (r->expanded == 1)
            SortSiblings(&r->iter, column);
    }
    if (siblings.size() < 2)
        return;
    std::vector<int> order(siblings.size());
    for (size_t i = 0; i < order.size(); ++i)
        order[i] = int(i);
    const int32_t direction = mColumns[size_t(std::min(column, kMaxColumns - 1))].sortDirection;
    // Looked up once: a list without the handler compares text only.
    const bool asks = gHooks.compareRows && FindEventHandler(mControl, gHooks.compareRows);
    auto less = [&](int a, int b) {
        Row *ra = siblings[size_t(a)], *rb = siblings[size_t(b)];
        int32_t result = 0;
        if (asks && Fire<uint8_t>(gHooks.compareRows, ra->index, rb->index, column, &result)) {
            return direction < 0 ? result > 0 : result < 0;
        }
        static const std::string kNone;
        const Cell *ca = ra->Find(column), *cb = rb->Find(column);
        const std::string &ta = ca ? ca->text : kNone, &tb = cb ? cb->text : kNone;
        int c =
            UTF8StringCompare(reinterpret_cast<const uint8_t *>(ta.data()), long(ta.size()),
                              reinterpret_cast<const uint8_t *>(tb.data()), long(tb.size()), true);
        return direction < 0 ? c > 0 : c < 0;
    };
    std::stable_sort(order.begin(), order.end(), less);
    if (Flat())
        gtk_list_store_reorder(GTK_LIST_STORE(mStore), order.data());
    else
        gtk_tree_store_reorder(GTK_TREE_STORE(mStore), parent, order.data());
}

void ListBox::Rebuild() {
    GtkTreeModel *model = mStore;
    std::vector<Row *> rows;
    rows.reserve(mRows.size());
    std::function<void(GtkTreeIter *)> walk = [&](GtkTreeIter *parent) {
        GtkTreeIter it;
        for (bool ok = gtk_tree_model_iter_children(model, &it, parent); ok;
             ok = gtk_tree_model_iter_next(model, &it))
            if (Row *r = RowOfIter(&it)) {
                rows.push_back(r);
                if (r->expanded == 1)
                    walk(&r->iter);
            }
    };
    walk(nullptr);
    mRows.swap(rows);
    Renumber();
}

void ListBox::Sort(int32_t column) {
    if (column < 0 || column >= kMaxColumns || boundData ||
        mColumns[size_t(column)].sortDirection == 0 || sSorting) {
        if (pane)
            gtk_widget_queue_draw(GTK_WIDGET(pane->View()));
        return;
    }
    sortedColumn = column;
    if (pane)
        pane->ShowSortIndicator();
    if (mRows.empty())
        return;
    if (Fire<uint8_t>(gHooks.sortColumn, column))
        return;
    Renumber(); // the comparison names rows by their place before the sort
    sSorting = this;
    SortSiblings(nullptr, column);
    sSorting = nullptr;
    Rebuild();
    if (pane)
        pane->ShowSelection();
}

void ListBox::PressHeader(int32_t column) {
    if (column < 0 || column >= ColumnCount())
        return;
    if (Fire<uint8_t>(gHooks.headerPressed, column))
        return;
    ColumnInfo &c = mColumns[size_t(column)];
    // A second press on the sorted column turns its direction round.
    if (headingIndex == column && c.sortDirection != 0)
        c.sortDirection = -c.sortDirection;
    headingIndex = Record(mControl)->headingIndex = column;
    Sort(column);
}

} // namespace kelp::listbox
