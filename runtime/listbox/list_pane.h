#pragma once
// The pane of a ListBox: a GtkTreeView on the list's store inside a
// GtkScrolledWindow.  Every column draws a picture (column 0), a check box
// and the text of its cells through one data function that reads the row;
// what the user does in the view goes back to the ListBox as events.
#include "listbox/list_box.h"

#include "kelp/records.h"

#include <string>

#include "controls/control.h"

namespace kelp::listbox {

struct ListRecord;

class ListPane : public ControlPane {
public:
    explicit ListPane(ListRecord *record);
    ~ListPane() override;

    GtkTreeView *View() const { return mView; }
    void SetFont(const ControlFont &font) override;

    // Shows what changed in the list.
    void ShowModel();   // the list's store, new or changed in kind
    void ShowColumns(); // count, headings, widths, types
    void ShowWidths();
    void ShowSelection(); // the rows' flags into the view
    void ShowHeading(bool on);
    void ShowExpanded(Row *row);
    void ShowSortIndicator();
    void ShowGridLines(int32_t horizontal, int32_t vertical);
    void ShowScrollBars(bool horizontal, bool vertical);
    void ShowDragReorder(bool on);
    void SetRowHeight(int32_t rowHeight);

    // Positions relative to the control's top left.
    int32_t RowFromXY(int32_t x, int32_t y);
    int32_t ColumnFromXY(int32_t x, int32_t y);
    int32_t ScrollPosition();
    void SetScrollPosition(int32_t row);
    int32_t ScrollPositionX();
    void SetScrollPositionX(int32_t x);
    // Lays an EditField over the cell, holding its text, and fires
    // CellGotFocus; an editor open elsewhere closes first.
    void EditCell(int32_t row, int32_t column);
    bool Editing() const { return mEditorField != nullptr; }
    // The field of the cell being edited, or null (borrowed).
    RuntimeObject *ActiveCell() const { return mEditorField; }
    // Closes the editor: the text goes into the cell when `keep`, then
    // CellLostFocus, and CellAction when `keep`.  `refocus` gives the
    // focus back to the list.
    void EndEditing(bool keep, bool refocus);
    // CellKeyDown for a key typed in the editor: true when the program took it.
    bool EditorKey(const std::string &key);

    // The list's handler runs before its holders' and the window's.
    void EnableMenuItems() override;

    // Offer the program a cell of `row` to paint, the column's renderer
    // drawing into the view's `window`: true when a handler drew it.
    bool OfferBackground(GdkWindow *window, Row *row, GtkCellRenderer *renderer);
    bool OfferText(GdkWindow *window, Row *row, GtkCellRenderer *renderer, int32_t textX);

    template <typename R, typename... Args> R FireEvent(ObjectHook *hook, bool *alive, Args... a) {
        return FireLocked<R>(hook, alive, a...);
    }

private:
    static void DataFunc(GtkTreeViewColumn *, GtkCellRenderer *, GtkTreeModel *, GtkTreeIter *,
                         gpointer);
    static void OnSelectionChanged(GtkTreeSelection *, gpointer);
    static void OnRowActivated(GtkTreeView *, GtkTreePath *, GtkTreeViewColumn *, gpointer);
    static gboolean OnTestExpand(GtkTreeView *, GtkTreeIter *, GtkTreePath *, gpointer);
    static gboolean OnTestCollapse(GtkTreeView *, GtkTreeIter *, GtkTreePath *, gpointer);
    static void OnToggled(GtkCellRendererToggle *, gchar *, gpointer);
    static void OnEditorChanged(GtkEditable *, gpointer);
    static void OnViewGrabFocus(GtkWidget *, gpointer);
    static void OnHeaderClicked(GtkTreeViewColumn *, gpointer);
    static gboolean OnButtonPress(GtkWidget *, GdkEventButton *, gpointer);
    static gboolean OnMotion(GtkWidget *, GdkEventMotion *, gpointer);
    static gboolean OnButtonRelease(GtkWidget *, GdkEventButton *, gpointer);
    static gboolean OnKeyPress(GtkWidget *, GdkEventKey *, gpointer);
    static gboolean OnFocus(GtkWidget *, GdkEventFocus *, gpointer);
    static void OnSizeAllocate(GtkWidget *, GtkAllocation *, gpointer);
    static void OnColumnWidth(GObject *, GParamSpec *, gpointer);
    static gboolean OnDragDrop(GtkWidget *, GdkDragContext *, gint, gint, guint, gpointer);
    static void OnDragReceived(GtkWidget *, GdkDragContext *, gint, gint, GtkSelectionData *, guint,
                               guint, gpointer);
    static gboolean OnExposeAfter(GtkWidget *, GdkEventExpose *, gpointer);

    // Control coordinates of a point of the tree's bin window, and back.
    void BinToControl(int32_t bx, int32_t by, int32_t *x, int32_t *y);
    void ControlToBin(int32_t x, int32_t y, int32_t *bx, int32_t *by);
    int32_t ColumnIndex(GtkTreeViewColumn *column) const;
    // Starts editing for a press on an editable cell of the selected row
    // that comes later than a double click would; true when it did.
    bool SlowClickEdits(Row *row, int32_t column, guint32 time);
    bool DragOut(Row *row);
    void DrawBorders(GdkWindow *window);
    bool OfferPaint(ObjectHook *hook, GdkWindow *window, Row *row, GtkCellRenderer *renderer,
                    int32_t textX);

    ListRecord *mRecord;
    ListBox *mList;
    GtkTreeView *mView;
    std::vector<GtkTreeViewColumn *> mColumns;
    std::vector<GtkCellRenderer *> mTextRenderers;
    std::vector<GtkCellRenderer *> mBackgroundRenderers;
    bool mQuiet = false;                   // our own changes to the view: no events
    int32_t mRowHeight = -1;               // DefaultRowHeight; negative: the text's
    RuntimeObject *mEditorField = nullptr; // counted; the EditField over the cell
    int32_t mEditRow = -1, mEditColumn = -1;
    guint32 mLastEditableClick = 0; // time of the last press on an editable cell
    int32_t mHorizontalGrid = 0, mVerticalGrid = 0;
    int8_t mPaintHandlers[2] = {-1, -1}; // background, text: -1 not yet known
    bool mDropping = false;              // a drop asked for the dragged row
    gint mDropX = 0, mDropY = 0;         // where, in the view's coordinates
};

template <typename R, typename... Args> R ListBox::Fire(ObjectHook *hook, Args... args) {
    if (pane) {
        bool alive = true;
        if constexpr (std::is_void_v<R>) {
            pane->FireEvent<R>(hook, &alive, args...);
            mAlive = alive;
        } else {
            R r = pane->FireEvent<R>(hook, &alive, args...);
            mAlive = alive;
            return r;
        }
    } else {
        mAlive = true;
        return CallEvent<R>(mControl, hook, args...);
    }
}

// The control's record: what the class keeps beside the list.
struct ListRecord {
    RuntimeControl control;
    ListBox *list;           // owned, from construction to destruction
    KelpString initialValue; // counted
    ControlFont font;
    int32_t defaultRowHeight;
    int32_t selectionType; // 0 single, 1 multiple
    int32_t headingIndex;  // the heading pressed last, -1 none
    uint8_t hierarchical, requiresSelection;
    int32_t gridHorizontal, gridVertical;
    uint8_t hasHeading, enableDrag, enableDragReorder, columnsResizable;
    uint8_t scrollHorizontal, scrollVertical, useFocusRing;
    KelpString dataField;      // counted
    RuntimeObject *dataSource; // counted
};

inline ListRecord *Record(RuntimeObject *o) { return reinterpret_cast<ListRecord *>(o); }
inline ListBox *ListOf(RuntimeObject *o) { return o ? Record(o)->list : nullptr; }

} // namespace kelp::listbox
