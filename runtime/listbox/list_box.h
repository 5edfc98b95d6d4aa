#pragma once
// The rows, cells and columns of a ListBox, kept in a store that the
// pane's tree view shows.  The list exists from the control's construction,
// so rows added before the window opens are there when it does; the pane
// only views the store and reports clicks back here.
//
// Rows are also kept in a vector in display order: the children of an
// expanded folder stand directly behind it.  A collapsed folder holds no
// rows at all, only an empty placeholder node in the store, so that the
// view draws its disclosure triangle; expanding asks the program for the
// children again (ExpandRow).
//
// Failure channel: the exported functions check indices and raise; nothing
// here raises, and a bad index given here is ignored.
#include "listbox/width_expressions.h"

#include "kelp/records.h"

#include <gtk/gtk.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelp {
struct ObjectHook;
}

namespace kelp::listbox {

class ListPane;

enum CellType : uint8_t { kTypeDefault, kTypeNormal, kTypeCheckbox, kTypeEditable };
enum Style : uint8_t { kBold = 1, kItalic = 2, kUnderline = 4 };
constexpr int32_t kMaxColumns = 64;   // shown
constexpr int32_t kDataColumns = 256; // may hold text

struct Cell {
    uint8_t column = 0;
    uint8_t style = 0;      // Style bits
    uint8_t type = 0;       // CellType; default: the column's
    uint8_t checked = 0;    // CellCheck
    uint8_t border[4] = {}; // top, left, bottom, right; 0: the list's grid
    int32_t alignment = 0;  // 0 default, 1 left, 2 center, 3 right, 4 decimal
    int32_t alignmentOffset = 0;
    std::string text;             // UTF-8
    RuntimeObject *tag = nullptr; // counted
};

struct Row {
    int16_t expanded = -1; // -1 plain row, 0 collapsed folder, 1 expanded
    int16_t indent = 0;    // depth from 0
    bool selected = false;
    int32_t index = 0;                // display position, renumbered when stale
    GtkTreeIter iter{};               // its node in the store (nodes persist)
    std::vector<Cell> cells;          // column 0 first, then by creation
    RuntimeObject *picture = nullptr; // counted; drawn in column 0
    GdkPixbuf *pixbuf = nullptr;      // the picture as the view draws it

    const Cell *Find(int32_t column) const;
    Cell &Get(int32_t column); // made on first use
};

// The event slots of the ListBox class, in their table's order.
struct Hooks {
    ObjectHook *change, *doubleClick, *keyDown, *enableMenuItems, *expandRow, *collapseRow,
        *dragRow, *sortColumn, *cellAction, *gotFocus, *lostFocus, *cellBackgroundPaint,
        *cellTextPaint, *cellClick, *cellKeyDown, *cellTextChange, *cellGotFocus, *cellLostFocus,
        *mouseDown, *mouseDrag, *mouseUp, *compareRows, *dragReorderRows, *headerPressed;
};
extern Hooks gHooks;

struct ColumnInfo {
    ColumnWidth width;
    std::string heading; // "" reads as the column number
    uint8_t type = kTypeNormal;
    int32_t alignment = 1; // left
    int32_t alignmentOffset = 0;
    int32_t sortDirection = 1;
};

// Tells a listSelectionNotificationReceiver that the list's selection changed.
void TellSelectionReceiver(RuntimeObject *receiver, RuntimeObject *list);
class ListBox;
// Tells the action receivers of the list's focus parts that it gained or lost focus.
void TellFocusReceivers(ListBox *list, bool gained);

class ListBox {
public:
    explicit ListBox(RuntimeObject *control); // not counted: the control owns the list
    ~ListBox();
    ListBox(const ListBox &) = delete;
    ListBox &operator=(const ListBox &) = delete;

    RuntimeObject *Control() const { return mControl; }
    GtkTreeModel *Store() const { return mStore; }
    ListPane *pane = nullptr; // set while bound

    // ---- rows, in display order
    int32_t Count() const { return int32_t(mRows.size()); }
    Row *At(int32_t index) const {
        return index >= 0 && index < Count() ? mRows[size_t(index)] : nullptr;
    }
    int32_t IndexOf(const Row *row);
    Row *RowOfIter(GtkTreeIter *iter) const;
    // AddRow and AddFolder: behind the folder being expanded, as its child,
    // else at the end.
    Row *Add(std::string_view text, bool folder);
    // Before display row `position` (clamped to 0..Count), beside it.
    Row *Insert(int32_t position, std::string_view text, bool folder, int32_t indent);
    // The row and, for an expanded folder, the rows inside it.
    void Remove(int32_t index);
    void Clear();
    int32_t lastIndex = -1;
    // Drag reorder: the row with its children before or after `target`, or
    // first inside it; at the end without one.  False when it can't go there.
    bool Move(Row *row, Row *target, bool before, bool into);

    // ---- cells
    std::string CellText(int32_t row, int32_t column) const;
    void SetCellText(int32_t row, int32_t column, std::string_view text);
    // Repaints the row.
    void RowChanged(Row *row);
    // The type that applies to a cell: its own, else its column's.
    uint8_t EffectiveType(const Row *row, int32_t column) const;
    // The whole list, a row or a column, as tab and line separated text.
    std::string BulkText(int32_t row, int32_t column) const;
    void SetBulkText(int32_t row, int32_t column, std::string_view text);

    // ---- columns
    int32_t ColumnCount() const { return int32_t(mColumnCount); }
    void SetColumnCount(int32_t count);
    ColumnInfo &Column(int32_t index) { return mColumns[size_t(index)]; }
    std::vector<ColumnWidth> Widths() const;
    void StoreWidths(const std::vector<ColumnWidth> &widths);
    int32_t contentWidth = 0; // the width last laid out
    void LayoutColumns();     // at contentWidth, then shows the widths
    void SetHeadings(std::string_view tabbed);
    std::string HeadingText(int32_t column) const;

    // ---- hierarchy
    bool Hierarchical() const { return mHierarchical; }
    void SetHierarchical(bool on);
    // Expanded(row) = true or false; `byView` when the view asked.
    void Expand(Row *row, bool byView);
    void Collapse(Row *row, bool byView);

    // ---- selection
    bool Multiple() const; // SelectionType 1
    bool requiresSelection = false;
    int32_t ListIndex();
    int32_t SelCount() const { return mSelCount; }
    void SetSelected(Row *row, bool on);
    void SelectOnly(Row *row); // null clears
    // Reads the view's selection after the user changed it.
    void TakeSelection(const std::vector<Row *> &selected);
    // Change and the receivers, once the selection is settled.
    void SelectionChanged();

    // ---- sorting
    int32_t sortedColumn = -1;
    int32_t headingIndex = -1;
    void Sort(int32_t column);
    // A heading pressed by click or PressHeader.
    void PressHeader(int32_t column);

    // ---- events, through the pane's lock when there is a pane
    template <typename R = void, typename... Args> R Fire(ObjectHook *hook, Args... args);
    bool Alive() const { return mAlive; }

    // Selection notification receivers (listSelectionNotificationReceiver).
    std::vector<RuntimeObject *> selectionReceivers; // counted
    // Action receivers of the focus parts: [0] got focus, [1] lost focus.
    std::vector<RuntimeObject *> focusReceivers[2]; // not counted
    RuntimeObject *boundData = nullptr;             // counted; rows then come from it

private:
    void Renumber();
    bool Flat() const;
    void NodeInsert(GtkTreeIter *out, GtkTreeIter *parent, GtkTreeIter *sibling, bool before);
    void NodeSet(GtkTreeIter *iter, Row *row);
    void NodeRemove(GtkTreeIter *iter);
    void NewStore(bool tree); // the rows into a new store of the kind
    void AddPlaceholder(Row *folder);
    void RemovePlaceholder(Row *folder);
    void RemoveChildren(Row *folder);
    void Rebuild(); // the vector from the store, after a reorder
    void FreeRow(Row *row);
    void SortSiblings(GtkTreeIter *parent, int32_t column);
    // Into the store next to `sibling` (before it, or after), or at the end
    // of `parent`'s rows; and into the vector at `position`.
    Row *Place(Row *row, GtkTreeIter *parent, GtkTreeIter *sibling, int32_t position,
               bool before = true);

    RuntimeObject *mControl;
    GtkTreeModel *mStore;     // a list store, or a tree store when hierarchical
    std::vector<Row *> mRows; // display order, owned
    bool mStale = false;      // Row::index needs renumbering
    bool mHierarchical = false;
    std::vector<Row *> mExpanding; // folders whose ExpandRow is running
    int32_t mSelCount = 0;
    int32_t mSelectionNesting = 0;
    bool mNotifying = false;
    bool mMoving = false; // the view's selection follows the store
    bool mAlive = true;
    size_t mColumnCount = 1;
    std::vector<ColumnInfo> mColumns{size_t(kMaxColumns)};
};

} // namespace kelp::listbox
