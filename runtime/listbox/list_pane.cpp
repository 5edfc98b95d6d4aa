#include "listbox/list_pane.h"

#include "listbox/cell_editor.h"
#include "listbox/cell_renderer.h"
#include "listbox/utf8.h"

#include "controls/list_provider.h"

#include "graphics/graphics_gtk.h"
#include "graphics/graphics_object.h"

#include "kelp/canvas.h"
#include "kelp/objects.h"

#include "kelp/strings.h"
#include <gdk/gdkkeysyms.h>

#include <algorithm>
#include <utility>

namespace kelp::listbox {
namespace {

const char *kColumnKey = "kelp-list-column";

int32_t ColumnOf(gpointer object) {
    return GPOINTER_TO_INT(g_object_get_data(G_OBJECT(object), kColumnKey));
}

// The key as KeyDown gives it: the character, or the control code the
// language uses for the keys that have none.
std::string KeyText(const GdkEventKey *event) {
    switch (event->keyval) {
    case GDK_Up: return "\x1e";
    case GDK_Down: return "\x1f";
    case GDK_Left: return "\x1c";
    case GDK_Right: return "\x1d";
    case GDK_Home: return "\x01";
    case GDK_End: return "\x04";
    case GDK_Page_Up: return "\x0b";
    case GDK_Page_Down: return "\x0c";
    case GDK_Return:
    case GDK_KP_Enter: return "\r";
    case GDK_Tab: return "\t";
    case GDK_Escape: return "\x1b";
    case GDK_BackSpace: return "\x08";
    case GDK_Delete: return "\x7f";
    default: break;
    }
    gunichar ch = gdk_keyval_to_unicode(event->keyval);
    if (!ch)
        return std::string();
    char utf8[8];
    return std::string(utf8, size_t(g_unichar_to_utf8(ch, utf8)));
}

// Fires an event whose one argument is a string.
bool FireKey(ListBox *list, ObjectHook *hook, const std::string &key, int32_t row = -1,
             int32_t column = -1) {
    if (key.empty())
        return false;
    KelpString text = MakeUtf8(key);
    bool taken =
        row < 0 ? list->Fire<uint8_t>(hook, text) : list->Fire<uint8_t>(hook, row, column, text);
    RuntimeUnlockString(text);
    return taken;
}

Row *RowAtPath(ListBox *list, const gchar *pathText) {
    GtkTreeIter iter;
    if (!gtk_tree_model_get_iter_from_string(GTK_TREE_MODEL(list->Store()), &iter, pathText))
        return nullptr;
    return list->RowOfIter(&iter);
}

} // namespace

ListPane::ListPane(ListRecord *record)
    : ControlPane(&record->control), mRecord(record), mList(record->list) {
    GtkWidget *scroller = gtk_scrolled_window_new(nullptr, nullptr);
    gtk_scrolled_window_set_shadow_type(GTK_SCROLLED_WINDOW(scroller), GTK_SHADOW_IN);
    mView = GTK_TREE_VIEW(gtk_tree_view_new_with_model(GTK_TREE_MODEL(mList->Store())));
    gtk_container_add(GTK_CONTAINER(scroller), GTK_WIDGET(mView));
    SetWidget(scroller);
    ConnectCommonSignals();
    gtk_tree_view_set_enable_search(mView, FALSE);
    gtk_widget_add_events(GTK_WIDGET(mView), GDK_POINTER_MOTION_MASK | GDK_BUTTON_RELEASE_MASK);
    GtkTreeSelection *selection = gtk_tree_view_get_selection(mView);
    g_signal_connect(selection, "changed", G_CALLBACK(OnSelectionChanged), this);
    g_signal_connect(mView, "row-activated", G_CALLBACK(OnRowActivated), this);
    g_signal_connect(mView, "test-expand-row", G_CALLBACK(OnTestExpand), this);
    g_signal_connect(mView, "test-collapse-row", G_CALLBACK(OnTestCollapse), this);
    g_signal_connect(mView, "button-press-event", G_CALLBACK(OnButtonPress), this);
    g_signal_connect(mView, "motion-notify-event", G_CALLBACK(OnMotion), this);
    g_signal_connect(mView, "button-release-event", G_CALLBACK(OnButtonRelease), this);
    g_signal_connect(mView, "key-press-event", G_CALLBACK(OnKeyPress), this);
    g_signal_connect(mView, "grab-focus", G_CALLBACK(OnViewGrabFocus), this);
    g_signal_connect(mView, "focus-in-event", G_CALLBACK(OnFocus), this);
    g_signal_connect(mView, "focus-out-event", G_CALLBACK(OnFocus), this);
    g_signal_connect(mView, "size-allocate", G_CALLBACK(OnSizeAllocate), this);
    g_signal_connect(mView, "drag-drop", G_CALLBACK(OnDragDrop), this);
    g_signal_connect(mView, "drag-data-received", G_CALLBACK(OnDragReceived), this);
    g_signal_connect_after(mView, "expose-event", G_CALLBACK(OnExposeAfter), this);
    mList->pane = this;
    ShowColumns();
    ShowHeading(record->hasHeading);
    ShowGridLines(record->gridHorizontal, record->gridVertical);
    ShowScrollBars(record->scrollHorizontal, record->scrollVertical);
    ShowDragReorder(record->enableDragReorder);
    SetRowHeight(record->defaultRowHeight);
    SetFont(record->font);
    ShowSelection();
    gtk_widget_show_all(scroller);
}

ListPane::~ListPane() {
    if (mList->pane == this)
        mList->pane = nullptr;
    // Parts of this list listen to it and hold it: the list closing lets go.
    for (RuntimeObject *r : mList->selectionReceivers)
        RuntimeUnlockObject(r);
    mList->selectionReceivers.clear();
    // So does a provider that tells the list of its changes.
    if (RuntimeObject *provider = std::exchange(mList->boundData, nullptr)) {
        RemoveListDataReceiver(provider, mRunControl);
        RuntimeUnlockObject(provider);
    }
    // The view may outlive the pane for a moment: it must call back no more.
    g_signal_handlers_disconnect_by_data(gtk_tree_view_get_selection(mView), this);
    g_signal_handlers_disconnect_by_data(mView, this);
    for (GtkTreeViewColumn *c : mColumns)
        g_signal_handlers_disconnect_by_data(c, this);
    for (GtkCellRenderer *r : mTextRenderers) {
        g_signal_handlers_disconnect_by_data(r, this);
        DetachRenderer(r);
    }
    for (GtkCellRenderer *r : mBackgroundRenderers)
        DetachRenderer(r);
    // An editor still open goes with the list, quietly: no cell events from
    // a list that is closing.
    if (RuntimeObject *field = std::exchange(mEditorField, nullptr)) {
        if (EditPane *editor = EditPaneOf(field)) {
            g_signal_handlers_disconnect_by_data(editor->Inner(), this);
            Ctl(field)->pane = nullptr;
            editor->Close();
        }
        RuntimeUnlockObject(field);
    }
}

void ListPane::ShowModel() {
    mQuiet = true;
    gtk_tree_view_set_model(mView, mList->Store());
    mQuiet = false;
    ShowSelection();
}

void ListPane::SetFont(const ControlFont &font) { ApplyFont(GTK_WIDGET(mView), font); }

// ------------------------------------------------------------------ columns

void ListPane::ShowColumns() {
    const int32_t count = mList->ColumnCount();
    while (int32_t(mColumns.size()) > count) {
        GtkTreeViewColumn *c = mColumns.back();
        g_signal_handlers_disconnect_by_data(c, this);
        gtk_tree_view_remove_column(mView, c);
        mColumns.pop_back();
        DetachRenderer(mTextRenderers.back());
        DetachRenderer(mBackgroundRenderers.back());
        mTextRenderers.pop_back();
        mBackgroundRenderers.pop_back();
    }
    while (int32_t(mColumns.size()) < count) {
        const int32_t index = int32_t(mColumns.size());
        GtkTreeViewColumn *c = gtk_tree_view_column_new();
        g_object_set_data(G_OBJECT(c), kColumnKey, GINT_TO_POINTER(index));
        gtk_tree_view_column_set_sizing(c, GTK_TREE_VIEW_COLUMN_FIXED);
        gtk_tree_view_column_set_clickable(c, TRUE);
        GtkCellRenderer *renderers[] = {NewCellBackgroundRenderer(this),
                                        index == 0 ? gtk_cell_renderer_pixbuf_new() : nullptr,
                                        gtk_cell_renderer_toggle_new(), NewCellTextRenderer(this)};
        for (GtkCellRenderer *r : renderers) {
            if (!r)
                continue;
            g_object_set_data(G_OBJECT(r), kColumnKey, GINT_TO_POINTER(index));
            gtk_tree_view_column_pack_start(c, r, r == renderers[3]);
            gtk_tree_view_column_set_cell_data_func(c, r, DataFunc, this, nullptr);
        }
        g_signal_connect(renderers[2], "toggled", G_CALLBACK(OnToggled), this);
        g_signal_connect(c, "clicked", G_CALLBACK(OnHeaderClicked), this);
        g_signal_connect(c, "notify::width", G_CALLBACK(OnColumnWidth), this);
        gtk_tree_view_append_column(mView, c);
        mColumns.push_back(c);
        mTextRenderers.push_back(renderers[3]);
        mBackgroundRenderers.push_back(renderers[0]);
        if (mRowHeight >= 0)
            gtk_cell_renderer_set_fixed_size(renderers[3], -1, mRowHeight);
    }
    for (int32_t i = 0; i < count; ++i)
        gtk_tree_view_column_set_title(mColumns[size_t(i)], mList->HeadingText(i).c_str());
    // Every column is of fixed width, so all rows can share one height.
    gtk_tree_view_set_fixed_height_mode(mView, TRUE);
    ShowWidths();
    ShowSortIndicator();
}

void ListPane::ShowWidths() {
    mQuiet = true;
    for (size_t i = 0; i < mColumns.size(); ++i) {
        const ColumnInfo &info = mList->Column(int32_t(i));
        gtk_tree_view_column_set_fixed_width(mColumns[i], std::max(info.width.actual, 1));
        gtk_tree_view_column_set_resizable(mColumns[i],
                                           mRecord->columnsResizable && info.width.resizable);
    }
    mQuiet = false;
}

void ListPane::ShowSortIndicator() {
    for (size_t i = 0; i < mColumns.size(); ++i) {
        const bool sorted = int32_t(i) == mList->sortedColumn;
        gtk_tree_view_column_set_sort_indicator(mColumns[i], sorted);
        if (sorted)
            gtk_tree_view_column_set_sort_order(
                mColumns[i], mList->Column(int32_t(i)).sortDirection < 0 ? GTK_SORT_DESCENDING
                                                                         : GTK_SORT_ASCENDING);
    }
}

void ListPane::ShowHeading(bool on) { gtk_tree_view_set_headers_visible(mView, on); }

void ListPane::ShowGridLines(int32_t horizontal, int32_t vertical) {
    mHorizontalGrid = horizontal;
    mVerticalGrid = vertical;
    // Codes above 1 draw a line; the toolkit draws them all alike.
    const bool h = horizontal > 1, v = vertical > 1;
    gtk_tree_view_set_grid_lines(mView, h && v ? GTK_TREE_VIEW_GRID_LINES_BOTH
                                        : h    ? GTK_TREE_VIEW_GRID_LINES_HORIZONTAL
                                        : v    ? GTK_TREE_VIEW_GRID_LINES_VERTICAL
                                               : GTK_TREE_VIEW_GRID_LINES_NONE);
}

void ListPane::ShowScrollBars(bool horizontal, bool vertical) {
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(mWidget),
                                   horizontal ? GTK_POLICY_AUTOMATIC : GTK_POLICY_NEVER,
                                   vertical ? GTK_POLICY_AUTOMATIC : GTK_POLICY_NEVER);
}

void ListPane::ShowDragReorder(bool on) {
    static GtkTargetEntry row = {const_cast<gchar *>("GTK_TREE_MODEL_ROW"), GTK_TARGET_SAME_WIDGET,
                                 0};
    if (on) {
        gtk_tree_view_enable_model_drag_source(mView, GDK_BUTTON1_MASK, &row, 1, GDK_ACTION_MOVE);
        gtk_tree_view_enable_model_drag_dest(mView, &row, 1, GDK_ACTION_MOVE);
    } else {
        gtk_tree_view_unset_rows_drag_source(mView);
        gtk_tree_view_unset_rows_drag_dest(mView);
    }
}

void ListPane::SetRowHeight(int32_t rowHeight) {
    mRowHeight = rowHeight;
    for (GtkCellRenderer *r : mTextRenderers)
        gtk_cell_renderer_set_fixed_size(r, -1, rowHeight >= 0 ? rowHeight : -1);
    // The view measures its one row height again.
    gtk_tree_view_set_fixed_height_mode(mView, FALSE);
    gtk_tree_view_set_fixed_height_mode(mView, TRUE);
}

void ListPane::ShowSelection() {
    GtkTreeSelection *selection = gtk_tree_view_get_selection(mView);
    mQuiet = true;
    gtk_tree_selection_set_mode(selection,
                                mList->Multiple() ? GTK_SELECTION_MULTIPLE : GTK_SELECTION_SINGLE);
    gtk_tree_selection_unselect_all(selection);
    if (mList->SelCount())
        for (int32_t i = 0; i < mList->Count(); ++i)
            if (Row *r = mList->At(i); r->selected)
                gtk_tree_selection_select_iter(selection, &r->iter);
    mQuiet = false;
}

void ListPane::ShowExpanded(Row *row) {
    GtkTreePath *path = gtk_tree_model_get_path(GTK_TREE_MODEL(mList->Store()), &row->iter);
    mQuiet = true;
    gtk_tree_view_expand_row(mView, path, FALSE);
    mQuiet = false;
    gtk_tree_path_free(path);
}

// ---------------------------------------------------------------- drawing

void ListPane::DataFunc(GtkTreeViewColumn *, GtkCellRenderer *renderer, GtkTreeModel *,
                        GtkTreeIter *iter, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    ListBox *list = pane->mList;
    Row *row = list->RowOfIter(iter);
    const int32_t column = ColumnOf(renderer);
    if (!row) {
        g_object_set(renderer, "visible", FALSE, nullptr);
        return;
    }
    SetRendererRow(renderer, row);
    if (IsCellBackgroundRenderer(renderer))
        return;
    const Cell *cell = row->Find(column);
    const uint8_t type = list->EffectiveType(row, column);
    if (GTK_IS_CELL_RENDERER_TOGGLE(renderer)) {
        g_object_set(renderer, "visible", type == kTypeCheckbox, "active", cell && cell->checked,
                     "activatable", TRUE, nullptr);
    } else if (GTK_IS_CELL_RENDERER_PIXBUF(renderer)) {
        g_object_set(renderer, "visible", row->pixbuf != nullptr, "pixbuf", row->pixbuf, nullptr);
    } else {
        std::string text = cell ? cell->text : std::string();
        text = text.substr(0, text.find_first_of("\r\n")); // one line shows
        const ColumnInfo &info = list->Column(std::min(column, kMaxColumns - 1));
        int32_t align = cell && cell->alignment ? cell->alignment : info.alignment;
        int32_t offset =
            cell && cell->alignmentOffset ? cell->alignmentOffset : info.alignmentOffset;
        // Decimal alignment lines numbers up at their right edge.
        float xalign = align == 2 ? 0.5f : align >= 3 ? 1.0f : 0.0f;
        uint8_t style = cell ? cell->style : 0;
        g_object_set(renderer, "visible", TRUE, "text", text.c_str(), "weight",
                     style & kBold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL, "style",
                     style & kItalic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL, "underline",
                     style & kUnderline ? PANGO_UNDERLINE_SINGLE : PANGO_UNDERLINE_NONE, "xalign",
                     xalign, "xpad", guint(4 + std::max(offset, -4)), "editable", FALSE,
                     "ellipsize", PANGO_ELLIPSIZE_END, nullptr);
    }
}

namespace {

// Draws on the view's bin window with the cell's top-left as the origin,
// limited to the cell, so a handler needs to know nothing of scrolling.
class CellTarget : public GraphicsTarget {
public:
    CellTarget(GtkWidget *view, GdkWindow *window, const GdkRectangle &cell)
        : mView(view), mWindow(window), mCell(cell) {}
    ~CellTarget() override {
        if (mGc)
            g_object_unref(mGc);
    }
    GdkDrawable *Drawable() override { return GDK_DRAWABLE(mWindow); }
    GdkGC *GetGC() override {
        if (!mGc) {
            mGc = gdk_gc_new(mWindow);
            gdk_gc_set_clip_rectangle(mGc, &mCell);
        }
        return mGc;
    }
    GtkWidget *Widget() override { return mView; }
    bool OnScreen() const override { return true; }
    Rect Bounds() const override { return RectFromXYWH(0, 0, mCell.width, mCell.height); }
    int32_t DrawableOffsetX() const override { return mCell.x; }
    int32_t DrawableOffsetY() const override { return mCell.y; }
    bool SharesWindowDrawable() const override { return true; }

private:
    GtkWidget *mView;
    GdkWindow *mWindow;
    GdkRectangle mCell;
    GdkGC *mGc = nullptr;
};

} // namespace

bool ListPane::OfferBackground(GdkWindow *window, Row *row, GtkCellRenderer *renderer) {
    return OfferPaint(gHooks.cellBackgroundPaint, window, row, renderer, 0);
}

bool ListPane::OfferText(GdkWindow *window, Row *row, GtkCellRenderer *renderer, int32_t textX) {
    // The cell being edited shows its editor, not its text.
    if (mEditorField && row == mList->At(mEditRow) && ColumnOf(renderer) == mEditColumn)
        return false;
    return OfferPaint(gHooks.cellTextPaint, window, row, renderer, textX);
}

bool ListPane::OfferPaint(ObjectHook *hook, GdkWindow *window, Row *row, GtkCellRenderer *renderer,
                          int32_t textX) {
    // Looked up once: every cell of every paint asks.
    int8_t &handled = mPaintHandlers[hook == gHooks.cellTextPaint];
    if (handled < 0 && Control())
        handled = FindEventHandler(Control(), hook) != nullptr;
    if (handled <= 0)
        return false;
    const int32_t column = ColumnOf(renderer);
    const int32_t index = mList->IndexOf(row);
    if (index < 0 || column >= int32_t(mColumns.size()))
        return false;
    GtkTreePath *path = gtk_tree_model_get_path(GTK_TREE_MODEL(mList->Store()), &row->iter);
    GdkRectangle cell;
    gtk_tree_view_get_background_area(mView, path, mColumns[size_t(column)], &cell);
    gtk_tree_path_free(path);
    CellTarget target(GTK_WIDGET(mView), window, cell);
    GraphicsGTK g(&target);
    const Rect clip = target.Bounds();
    g.SetClipRect(&clip);
    RuntimeObject *object = NewGraphicsObject(&g, false);
    bool alive = true, drew;
    if (hook == gHooks.cellTextPaint) {
        const FontSpec font = ToFontSpec(mRecord->font);
        g.SetTextFont(font.name);
        g.SetTextSize(font.size);
        // The base position: where the text starts, on its baseline.
        const int32_t baseline = (cell.height + g.Ascent() - g.Descent()) / 2;
        drew = FireLocked<uint8_t>(hook, &alive, object, index, column, textX - cell.x, baseline);
    } else {
        drew = FireLocked<uint8_t>(hook, &alive, object, index, column);
    }
    DetachGraphicsObject(object);
    RuntimeUnlockObject(object);
    return drew || !alive;
}

void ListPane::DrawBorders(GdkWindow *window) {
    GtkTreePath *first = nullptr, *last = nullptr;
    if (!gtk_tree_view_get_visible_range(mView, &first, &last))
        return;
    GdkGC *gc = gdk_gc_new(window);
    GtkTreeModel *model = GTK_TREE_MODEL(mList->Store());
    GtkTreePath *path = gtk_tree_path_copy(first);
    for (int guard = 0; guard < 4096; ++guard) {
        GtkTreeIter iter;
        Row *row = gtk_tree_model_get_iter(model, &iter, path) ? mList->RowOfIter(&iter) : nullptr;
        for (size_t c = 0; row && c < mColumns.size(); ++c) {
            const Cell *cell = row->Find(int32_t(c));
            if (!cell)
                continue;
            GdkRectangle r;
            gtk_tree_view_get_background_area(mView, path, mColumns[c], &r);
            const int x0 = r.x, y0 = r.y, x1 = r.x + r.width - 1, y1 = r.y + r.height - 1;
            const int lines[4][4] = {
                {x0, y0, x1, y0}, {x0, y0, x0, y1}, {x0, y1, x1, y1}, {x1, y0, x1, y1}};
            for (int side = 0; side < 4; ++side) {
                const uint8_t b = cell->border[side];
                if (b <= 1)
                    continue;
                gdk_gc_set_line_attributes(gc, b == 4 ? 2 : 1,
                                           b == 2 ? GDK_LINE_ON_OFF_DASH : GDK_LINE_SOLID,
                                           GDK_CAP_BUTT, GDK_JOIN_MITER);
                const int *l = lines[side];
                gdk_draw_line(window, gc, l[0], l[1], l[2], l[3]);
                if (b == 5) { // double: a second line just inside
                    const int dx = side == 1 ? 2 : side == 3 ? -2 : 0;
                    const int dy = side == 0 ? 2 : side == 2 ? -2 : 0;
                    gdk_draw_line(window, gc, l[0] + dx, l[1] + dy, l[2] + dx, l[3] + dy);
                }
            }
        }
        if (!gtk_tree_path_compare(path, last))
            break;
        // The next visible row: into an expanded folder, else along and up.
        GtkTreeIter it, next;
        if (!gtk_tree_model_get_iter(model, &it, path))
            break;
        GtkTreePath *step = nullptr;
        if (gtk_tree_view_row_expanded(mView, path) &&
            gtk_tree_model_iter_children(model, &next, &it))
            step = gtk_tree_model_get_path(model, &next);
        for (GtkTreeIter at = it; !step;) {
            next = at;
            if (gtk_tree_model_iter_next(model, &next)) {
                step = gtk_tree_model_get_path(model, &next);
            } else if (!gtk_tree_model_iter_parent(model, &next, &at)) {
                break;
            } else {
                at = next;
            }
        }
        if (!step)
            break;
        gtk_tree_path_free(path);
        path = step;
    }
    gtk_tree_path_free(path);
    gtk_tree_path_free(first);
    gtk_tree_path_free(last);
    g_object_unref(gc);
}

gboolean ListPane::OnExposeAfter(GtkWidget *, GdkEventExpose *event, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    if (event->window == gtk_tree_view_get_bin_window(pane->mView))
        pane->DrawBorders(event->window);
    return FALSE;
}

// ---------------------------------------------------------- coordinates

void ListPane::BinToControl(int32_t bx, int32_t by, int32_t *x, int32_t *y) {
    gint wx = 0, wy = 0;
    gtk_tree_view_convert_bin_window_to_widget_coords(mView, bx, by, &wx, &wy);
    if (!gtk_widget_translate_coordinates(GTK_WIDGET(mView), mWidget, wx, wy, x, y))
        *x = wx, *y = wy;
}

void ListPane::ControlToBin(int32_t x, int32_t y, int32_t *bx, int32_t *by) {
    gint wx = x, wy = y;
    gtk_widget_translate_coordinates(mWidget, GTK_WIDGET(mView), x, y, &wx, &wy);
    gtk_tree_view_convert_widget_to_bin_window_coords(mView, wx, wy, bx, by);
}

int32_t ListPane::ColumnIndex(GtkTreeViewColumn *column) const {
    auto at = std::find(mColumns.begin(), mColumns.end(), column);
    return at == mColumns.end() ? -1 : int32_t(at - mColumns.begin());
}

int32_t ListPane::RowFromXY(int32_t x, int32_t y) {
    int32_t bx, by;
    ControlToBin(x, y, &bx, &by);
    GtkTreePath *path = nullptr;
    if (!gtk_widget_get_realized(GTK_WIDGET(mView)) ||
        !gtk_tree_view_get_path_at_pos(mView, bx, by, &path, nullptr, nullptr, nullptr))
        return -1;
    GtkTreeIter iter;
    Row *row = gtk_tree_model_get_iter(GTK_TREE_MODEL(mList->Store()), &iter, path)
                   ? mList->RowOfIter(&iter)
                   : nullptr;
    gtk_tree_path_free(path);
    return mList->IndexOf(row);
}

int32_t ListPane::ColumnFromXY(int32_t x, int32_t y) {
    int32_t bx, by;
    ControlToBin(x, y, &bx, &by);
    for (size_t i = 0; i < mColumns.size(); ++i) {
        GdkRectangle r;
        gtk_tree_view_get_background_area(mView, nullptr, mColumns[i], &r);
        if (bx >= r.x && bx < r.x + r.width)
            return int32_t(i);
    }
    return -1;
}

namespace {
int32_t RowHeightOf(GtkTreeView *view, ListBox *list) {
    if (!list->Count() || !gtk_widget_get_realized(GTK_WIDGET(view)))
        return 0;
    GtkTreePath *path = gtk_tree_path_new_first();
    GdkRectangle r;
    gtk_tree_view_get_background_area(view, path, nullptr, &r);
    gtk_tree_path_free(path);
    return r.height;
}
} // namespace

int32_t ListPane::ScrollPosition() {
    int32_t h = RowHeightOf(mView, mList);
    GtkAdjustment *a = gtk_tree_view_get_vadjustment(mView);
    return h > 0 ? int32_t(gtk_adjustment_get_value(a)) / h : 0;
}

void ListPane::SetScrollPosition(int32_t row) {
    GtkAdjustment *a = gtk_tree_view_get_vadjustment(mView);
    double top = double(std::max(row, 0)) * RowHeightOf(mView, mList);
    double limit = gtk_adjustment_get_upper(a) - gtk_adjustment_get_page_size(a);
    gtk_adjustment_set_value(a, std::max(0.0, std::min(top, limit)));
}

int32_t ListPane::ScrollPositionX() {
    return int32_t(gtk_adjustment_get_value(gtk_tree_view_get_hadjustment(mView)));
}

void ListPane::SetScrollPositionX(int32_t x) {
    GtkAdjustment *a = gtk_tree_view_get_hadjustment(mView);
    double limit = gtk_adjustment_get_upper(a) - gtk_adjustment_get_page_size(a);
    gtk_adjustment_set_value(a, std::max(0.0, std::min(double(x), limit)));
}

// ------------------------------------------------------------- editing

void ListPane::EditCell(int32_t row, int32_t column) {
    if (closing || column < 0 || column >= int32_t(mColumns.size()))
        return;
    EndEditing(true, false);
    Row *r = mList->At(row);
    if (!r || !mList->pane || closing)
        return;
    GtkTreeViewColumn *c = mColumns[size_t(column)];
    GtkTreePath *path = gtk_tree_model_get_path(mList->Store(), &r->iter);
    gtk_tree_view_scroll_to_cell(mView, path, c, FALSE, 0, 0);
    GdkRectangle row_area, cell_area;
    gtk_tree_view_get_background_area(mView, path, c, &row_area);
    gtk_tree_view_get_cell_area(mView, path, c, &cell_area);
    gtk_tree_path_free(path);
    // The field covers the cell's text across the row's height, kept
    // inside the list.
    int32_t x, y;
    BinToControl(cell_area.x, row_area.y, &x, &y);
    const KelpRect &b = Ctl(mRunControl)->bounds;
    const int32_t left = std::max(x, 0), top = std::max(y, 0);
    const int32_t right = std::min(x + cell_area.width, b.right - b.left);
    const int32_t bottom = std::min(y + row_area.height, b.bottom - b.top);
    if (right <= left || bottom <= top)
        return;
    const KelpRect at{int16_t(b.top + top), int16_t(b.left + left), int16_t(b.top + bottom),
                      int16_t(b.left + right)};
    mEditRow = row, mEditColumn = column;
    mEditorField = NewCellEditor(this, mRunControl, at, mList->CellText(row, column));
    if (!mEditorField)
        return;
    g_signal_connect(EditPaneOf(mEditorField)->Inner(), "changed", G_CALLBACK(OnEditorChanged),
                     this);
    gtk_widget_queue_draw(GTK_WIDGET(mView));
    mList->Fire(gHooks.cellGotFocus, row, column);
}

// Escape ends editing with the old text kept, as a person pressing it
// expects; every other way of leaving the field keeps what was typed.
void ListPane::EndEditing(bool keep, bool refocus) {
    RuntimeObject *field = std::exchange(mEditorField, nullptr);
    if (!field)
        return;
    const int32_t row = mEditRow, column = mEditColumn;
    std::string text;
    if (EditPane *editor = EditPaneOf(field)) {
        text = editor->GetText();
        g_signal_handlers_disconnect_by_data(editor->Inner(), this);
        Ctl(field)->pane = nullptr;
        editor->SetVisible(false);
        editor->Close();
    }
    if (refocus)
        gtk_widget_grab_focus(GTK_WIDGET(mView));
    gtk_widget_queue_draw(GTK_WIDGET(mView));
    ListBox *list = mList; // the events may close this pane
    if (keep)
        list->SetCellText(row, column, text);
    list->Fire(gHooks.cellLostFocus, row, column);
    if (keep && list->pane)
        list->Fire(gHooks.cellAction, row, column);
    RuntimeUnlockObject(field);
}

bool ListPane::EditorKey(const std::string &key) {
    return FireKey(mList, gHooks.cellKeyDown, key, mEditRow, mEditColumn);
}

void ListPane::OnEditorChanged(GtkEditable *, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    if (pane->mEditorField)
        pane->mList->Fire(gHooks.cellTextChange, pane->mEditRow, pane->mEditColumn);
}

bool ListPane::SlowClickEdits(Row *row, int32_t column, guint32 time) {
    if (mList->EffectiveType(row, column) != kTypeEditable)
        return false;
    const guint32 last = std::exchange(mLastEditableClick, time);
    gint doubleClick = 400;
    g_object_get(gtk_widget_get_settings(GTK_WIDGET(mView)), "gtk-double-click-time", &doubleClick,
                 nullptr);
    const int32_t index = mList->IndexOf(row);
    if (index != mList->ListIndex() || (last && time - last <= guint32(doubleClick)))
        return false;
    EditCell(index, column);
    return true;
}

void ListPane::EnableMenuItems() {
    bool alive;
    FireLocked(gHooks.enableMenuItems, &alive);
    if (alive && !closing)
        ControlPane::EnableMenuItems();
}

// The view holding the focus makes the list the focus pane, so the menu
// cycle reaches it.
void ListPane::OnViewGrabFocus(GtkWidget *, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    if (!pane->closing && FocusPane() != pane)
        SetFocus(pane);
}

void ListPane::OnToggled(GtkCellRendererToggle *renderer, gchar *path, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    ListBox *list = pane->mList;
    Row *row = RowAtPath(list, path);
    if (!row)
        return;
    const int32_t column = ColumnOf(renderer);
    Cell &cell = row->Get(column);
    cell.checked = !cell.checked;
    list->RowChanged(row);
    list->Fire(gHooks.cellAction, list->IndexOf(row), column);
}

// ------------------------------------------------------------- the user

void ListPane::OnSelectionChanged(GtkTreeSelection *selection, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    if (pane->mQuiet || pane->closing)
        return;
    std::vector<Row *> rows;
    GtkTreeModel *model = nullptr;
    GList *paths = gtk_tree_selection_get_selected_rows(selection, &model);
    for (GList *p = paths; p; p = p->next) {
        GtkTreeIter iter;
        if (gtk_tree_model_get_iter(model, &iter, static_cast<GtkTreePath *>(p->data)))
            if (Row *r = pane->mList->RowOfIter(&iter))
                rows.push_back(r);
        gtk_tree_path_free(static_cast<GtkTreePath *>(p->data));
    }
    g_list_free(paths);
    pane->mList->TakeSelection(rows);
}

void ListPane::OnRowActivated(GtkTreeView *, GtkTreePath *, GtkTreeViewColumn *, gpointer data) {
    static_cast<ListPane *>(data)->mList->Fire(gHooks.doubleClick);
}

gboolean ListPane::OnTestExpand(GtkTreeView *, GtkTreeIter *iter, GtkTreePath *, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    if (pane->mQuiet)
        return FALSE;
    ListBox *list = pane->mList;
    Row *row = list->RowOfIter(iter);
    list->Expand(row, true);
    if (!list->pane)
        return TRUE;
    // A folder the program gave no rows has nothing to open.
    GtkTreeIter child;
    return gtk_tree_model_iter_children(GTK_TREE_MODEL(list->Store()), &child, iter) ? FALSE : TRUE;
}

gboolean ListPane::OnTestCollapse(GtkTreeView *, GtkTreeIter *iter, GtkTreePath *, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    if (pane->mQuiet)
        return FALSE;
    // The rows inside go away, so the view has nothing left to fold.
    pane->mList->Collapse(pane->mList->RowOfIter(iter), true);
    return TRUE;
}

void ListPane::OnHeaderClicked(GtkTreeViewColumn *column, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    pane->mList->PressHeader(pane->ColumnIndex(column));
}

void ListPane::OnColumnWidth(GObject *column, GParamSpec *, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    const int32_t index = pane->ColumnIndex(GTK_TREE_VIEW_COLUMN(column));
    if (pane->mQuiet || index < 0)
        return;
    const int32_t width = gtk_tree_view_column_get_width(GTK_TREE_VIEW_COLUMN(column));
    ListBox *list = pane->mList;
    if (width <= 1 || width == list->Column(index).width.actual || !pane->mRecord->columnsResizable)
        return;
    // Only a drag on a column's edge counts; the view also widens the last
    // column to the list's edge, which changes no expression.
    GdkModifierType buttons = GdkModifierType(0);
    gdk_window_get_pointer(GTK_WIDGET(pane->mView)->window, nullptr, nullptr, &buttons);
    if (!(buttons & GDK_BUTTON1_MASK))
        return;
    std::vector<ColumnWidth> widths = list->Widths();
    if (SetActualWidth(widths, size_t(index), width))
        list->StoreWidths(widths);
    pane->ShowWidths();
}

void ListPane::OnSizeAllocate(GtkWidget *, GtkAllocation *allocation, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    if (allocation->width == pane->mList->contentWidth)
        return;
    pane->mList->contentWidth = allocation->width;
    pane->mList->LayoutColumns();
}

gboolean ListPane::OnButtonPress(GtkWidget *, GdkEventButton *event, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    ListBox *list = pane->mList;
    if (event->window != gtk_tree_view_get_bin_window(pane->mView) || event->button != 1 ||
        event->type != GDK_BUTTON_PRESS || pane->closing)
        return FALSE;
    int32_t x, y;
    pane->BinToControl(int32_t(event->x), int32_t(event->y), &x, &y);
    bool alive = true;
    if (pane->FireLocked<uint8_t>(gHooks.mouseDown, &alive, x, y) || !alive) {
        if (alive)
            pane->mMouseHandled = true;
        return TRUE;
    }
    GtkTreePath *path = nullptr;
    GtkTreeViewColumn *column = nullptr;
    gint cx = 0, cy = 0;
    if (!gtk_tree_view_get_path_at_pos(pane->mView, int(event->x), int(event->y), &path, &column,
                                       &cx, &cy)) {
        // Below the last row: a list that must keep a selection keeps it.
        if (!list->requiresSelection)
            list->SelectOnly(nullptr);
        return TRUE;
    }
    GtkTreeIter iter;
    Row *row = gtk_tree_model_get_iter(GTK_TREE_MODEL(list->Store()), &iter, path)
                   ? list->RowOfIter(&iter)
                   : nullptr;
    gtk_tree_path_free(path);
    if (!row)
        return FALSE;
    pane->EndEditing(true, false);
    if (!list->pane)
        return TRUE;
    const int32_t columnIndex = pane->ColumnIndex(column);
    if (list->Fire<uint8_t>(gHooks.cellClick, list->IndexOf(row), columnIndex, int32_t(cx),
                            int32_t(cy)) ||
        !list->pane)
        return TRUE;
    if (pane->SlowClickEdits(row, columnIndex, event->time))
        return TRUE;
    if (pane->mRecord->enableDrag && !(event->state & (GDK_SHIFT_MASK | GDK_CONTROL_MASK)))
        return pane->DragOut(row) ? TRUE : FALSE;
    return FALSE;
}

// A drag out of the list: the row is selected, DragRow gets an item that
// carries the row's text, and the drag runs when it answers true.
bool ListPane::DragOut(Row *row) {
    if (!row->selected)
        mList->SelectOnly(row);
    GdkRectangle area;
    GtkTreePath *path = gtk_tree_model_get_path(mList->Store(), &row->iter);
    gtk_tree_view_get_background_area(mView, path, nullptr, &area);
    gtk_tree_path_free(path);
    int32_t left, top;
    BinToControl(0, area.y, &left, &top);
    RuntimeObject *drag =
        controlNewDragItem(mRunControl, 0, top, bounds.right - bounds.left, area.height);
    KelpString text = MakeUtf8(mList->CellText(mList->IndexOf(row), 0));
    dragItemTextSetter(drag, 0, text);
    RuntimeUnlockString(text);
    const bool start = mList->Fire<uint8_t>(gHooks.dragRow, drag, mList->IndexOf(row));
    if (start && mList->pane)
        DragItemDrag(drag);
    RuntimeUnlockObject(drag);
    return start;
}

gboolean ListPane::OnMotion(GtkWidget *, GdkEventMotion *event, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    if (!pane->mMouseHandled)
        return FALSE;
    int32_t x, y;
    pane->BinToControl(int32_t(event->x), int32_t(event->y), &x, &y);
    bool alive;
    pane->FireLocked(gHooks.mouseDrag, &alive, x, y);
    return TRUE;
}

gboolean ListPane::OnButtonRelease(GtkWidget *, GdkEventButton *event, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    if (!pane->mMouseHandled)
        return FALSE;
    pane->mMouseHandled = false;
    int32_t x, y;
    pane->BinToControl(int32_t(event->x), int32_t(event->y), &x, &y);
    bool alive;
    pane->FireLocked(gHooks.mouseUp, &alive, x, y);
    return TRUE;
}

gboolean ListPane::OnKeyPress(GtkWidget *, GdkEventKey *event, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    if (FireKey(pane->mList, gHooks.keyDown, KeyText(event)) || !pane->mList->pane)
        return TRUE;
    // Sideways arrows would open and close folders; the list keeps them still.
    return event->keyval == GDK_Left || event->keyval == GDK_Right;
}

gboolean ListPane::OnFocus(GtkWidget *, GdkEventFocus *event, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    if (pane->closing)
        return FALSE;
    ListBox *list = pane->mList;
    list->Fire(event->in ? gHooks.gotFocus : gHooks.lostFocus);
    TellFocusReceivers(list, event->in);
    return FALSE;
}

gboolean ListPane::OnDragDrop(GtkWidget *, GdkDragContext *, gint x, gint y, guint, gpointer data) {
    auto *pane = static_cast<ListPane *>(data);
    pane->mDropping = true;
    pane->mDropX = x, pane->mDropY = y;
    return FALSE; // the view asks for the row, which comes to OnDragReceived
}

void ListPane::OnDragReceived(GtkWidget *widget, GdkDragContext *context, gint, gint,
                              GtkSelectionData *data, guint, guint time, gpointer user) {
    auto *pane = static_cast<ListPane *>(user);
    ListBox *list = pane->mList;
    // While the pointer moves the view asks for the row only to learn
    // whether a drop could go there; that is the toolkit's business.
    if (!pane->mDropping)
        return;
    pane->mDropping = false;
    g_signal_stop_emission_by_name(widget, "drag-data-received");
    GtkTreeModel *model = nullptr;
    GtkTreePath *source = nullptr, *dest = nullptr;
    GtkTreeViewDropPosition where = GTK_TREE_VIEW_DROP_AFTER;
    gint x = 0, y = 0;
    bool done = false;
    if (gtk_tree_get_row_drag_data(data, &model, &source)) {
        GtkTreeIter from, to;
        gtk_tree_model_get_iter(model, &from, source);
        Row *moving = list->RowOfIter(&from);
        Row *target = nullptr;
        x = pane->mDropX, y = pane->mDropY;
        if (gtk_tree_view_get_dest_row_at_pos(pane->mView, x, y, &dest, &where) &&
            gtk_tree_model_get_iter(model, &to, dest))
            target = list->RowOfIter(&to);
        const bool into = list->Hierarchical() && target && target->expanded == 1 &&
                          (where == GTK_TREE_VIEW_DROP_INTO_OR_BEFORE ||
                           where == GTK_TREE_VIEW_DROP_INTO_OR_AFTER);
        const bool before =
            where == GTK_TREE_VIEW_DROP_BEFORE || where == GTK_TREE_VIEW_DROP_INTO_OR_BEFORE;
        int32_t position = target ? list->IndexOf(target) + (before ? 0 : 1) : list->Count();
        int32_t parent = into ? list->IndexOf(target) : -1;
        if (moving && target != moving &&
            !list->Fire<uint8_t>(gHooks.dragReorderRows, position, parent))
            done = list->Move(moving, target, before, into);
        gtk_tree_path_free(source);
        if (dest)
            gtk_tree_path_free(dest);
    }
    gtk_drag_finish(context, done, FALSE, time);
}

} // namespace kelp::listbox
