// A ListBox on a real window, driven through the X server: clicks on rows,
// headings, check boxes and disclosure triangles, editing by typing, drag
// reorder; the properties after, and the events in the order they came.
#include "controls/control_fixture.h"

#include "edit_fields/edit_field.h"
#include "objects/definitions.h"
#include "objects/object_model.h"

#include "kelp/canvas.h"
#include "kelp/edit_fields.h"
#include "kelp/listbox.h"
#include "kelp/menus.h"

#include <atomic>
#include <filesystem>
#include <thread>

namespace kelp::test {
namespace {

std::string Text(KelpString s) {
    std::string text = Str(s);
    RuntimeUnlockString(s);
    return text;
}

void Log(const std::string &what, std::initializer_list<int32_t> numbers = {}) {
    std::string line = what;
    for (int32_t n : numbers)
        line += (line.size() == what.size() ? " " : ",") + std::to_string(n);
    Events().push_back(line);
}

void OnChange(RuntimeObject *) { Log("Change"); }
uint8_t OnHeaderPressed(RuntimeObject *, int32_t c) { return Log("HeaderPressed", {c}), 0; }
uint8_t OnSortColumn(RuntimeObject *, int32_t c) { return Log("SortColumn", {c}), 0; }
uint8_t OnCellClick(RuntimeObject *, int32_t r, int32_t c, int32_t, int32_t) {
    return Log("CellClick", {r, c}), 0;
}
void OnCellAction(RuntimeObject *, int32_t r, int32_t c) { Log("CellAction", {r, c}); }
void OnCellGotFocus(RuntimeObject *, int32_t r, int32_t c) { Log("CellGotFocus", {r, c}); }
void OnCellLostFocus(RuntimeObject *, int32_t r, int32_t c) { Log("CellLostFocus", {r, c}); }
void OnCellTextChange(RuntimeObject *, int32_t r, int32_t c) { Log("CellTextChange", {r, c}); }
uint8_t OnDragReorder(RuntimeObject *, int32_t at, int32_t parent) {
    return Log("DragReorderRows", {at, parent}), 0;
}
// Column 1 holds numbers: compared as numbers, not as text.
uint8_t OnCompareRows(RuntimeObject *me, int32_t a, int32_t b, int32_t column, int32_t *result) {
    if (column != 1)
        return 0;
    *result = std::stoi(Text(listGetCell(me, a, 1))) - std::stoi(Text(listGetCell(me, b, 1)));
    return 1;
}
void OnExpandRow(RuntimeObject *me, int32_t row) {
    Log("ExpandRow", {row});
    RuntimeListAddRow(me, Lit("apple"));
    RuntimeListAddRow(me, Lit("pear"));
}
void OnCollapseRow(RuntimeObject *, int32_t row) { Log("CollapseRow", {row}); }
// Letters are taken; other keys go on to the list.
uint8_t OnKeyDown(RuntimeObject *, KelpString key) {
    std::string k = Str(key);
    Log("KeyDown", {k.empty() ? 0 : int32_t(uint8_t(k[0]))});
    return !k.empty() && std::isalpha(uint8_t(k[0]));
}
uint8_t OnDragRow(RuntimeObject *, RuntimeObject *drag, int32_t row) {
    Events().push_back("DragRow " + std::to_string(row) + " " + Text(dragItemTextGetter(drag, 0)));
    return 1;
}
// Cell 1,1 gets a red background, far past its edges: what shows must stay
// in the cell.  Cell 0,0 gets a blue mark for text at the base position.
uint8_t OnCellBackgroundPaint(RuntimeObject *, RuntimeObject *g, int32_t r, int32_t c) {
    if (r != 1 || c != 1)
        return 0;
    graphicsForeColorSetter(g, 0, 0xff0000);
    RuntimeGraphicsFillRect(g, -500, -500, 2000, 2000);
    return 1;
}
GdkPoint gTextAt = {-1, -1};
uint8_t OnCellTextPaint(RuntimeObject *, RuntimeObject *g, int32_t r, int32_t c, int32_t x,
                        int32_t y) {
    if (r != 0 || c != 0)
        return 0;
    gTextAt = {x, y};
    graphicsForeColorSetter(g, 0, 0x0000ff);
    RuntimeGraphicsFillRect(g, x, y - 6, 6, 6);
    return 1;
}
uint8_t gTakeMouse = 0;
uint8_t OnMouseDown(RuntimeObject *, int32_t, int32_t) { return Log("MouseDown"), gTakeMouse; }
void OnMouseUp(RuntimeObject *, int32_t, int32_t) { Log("MouseUp"); }
void OnEnableMenuItems(RuntimeObject *) { Log("EnableMenuItems"); }

class ListBoxWindowTest : public ControlFixture {
protected:
    RuntimeObject *MakeList(const char *initial, std::initializer_list<Handler> handlers,
                            bool hierarchical = false) {
        mWindow = MakeWindow(400, 280, [&](RuntimeObject *view) {
            Add(
                view, "ListBox", "List1",
                [&](MassData &m) {
                    Box(m, 10, 10, 360, 240)
                        .Int("ColumnCount", 3)
                        .Bool("HasHeading", true)
                        .Text("ColumnWidths", "50%, 25%, *")
                        .Bool("Hierarchical", hierarchical)
                        .Text("InitialValue", initial);
                },
                handlers);
        });
        RuntimeObject *list = Find(mWindow, "List1");
        Focus(mWindow);
        return list;
    }
    GtkTreeView *View(RuntimeObject *list) {
        return GTK_TREE_VIEW(gtk_bin_get_child(GTK_BIN(Widget(list))));
    }
    // A point of a cell (top-level row) in the view's own coordinates: its
    // middle, or `dx` pixels in from its left and `fy` of its height down.
    GdkPoint CellPoint(RuntimeObject *list, int row, int column, int dx = -1, double fy = 0.5) {
        GtkTreeView *view = View(list);
        GtkTreePath *path = gtk_tree_path_new_from_indices(row, -1);
        GdkRectangle r;
        gtk_tree_view_get_cell_area(view, path, gtk_tree_view_get_column(view, column), &r);
        gtk_tree_path_free(path);
        gint x, y;
        gtk_tree_view_convert_bin_window_to_widget_coords(
            view, dx < 0 ? r.x + r.width / 2 : r.x + dx, r.y + int(r.height * fy), &x, &y);
        return {x, y};
    }
    void ClickCell(RuntimeObject *list, int row, int column, int dx = -1) {
        GdkPoint p = CellPoint(list, row, column, dx);
        ASSERT_TRUE(ClickAt(GTK_WIDGET(View(list)), p.x, p.y));
        Settle(120);
    }
    // The disclosure triangle of the first row, left of its text.
    void ClickTriangle(RuntimeObject *list) {
        GtkTreeView *view = View(list);
        GtkTreePath *path = gtk_tree_path_new_first();
        GdkRectangle cell, row;
        gtk_tree_view_get_cell_area(view, path, gtk_tree_view_get_column(view, 0), &cell);
        gtk_tree_view_get_background_area(view, path, gtk_tree_view_get_column(view, 0), &row);
        gtk_tree_path_free(path);
        gint x, y;
        gtk_tree_view_convert_bin_window_to_widget_coords(view, (row.x + cell.x) / 2,
                                                          cell.y + cell.height / 2, &x, &y);
        ASSERT_TRUE(ClickAt(GTK_WIDGET(view), x, y));
        Settle(120);
    }
    void ClickHeading(RuntimeObject *list, int column) {
        GtkWidget *button = gtk_tree_view_get_column(View(list), column)->button;
        ASSERT_NE(button, nullptr);
        ASSERT_TRUE(ClickAt(button, button->allocation.width / 2, button->allocation.height / 2));
        Settle(120);
    }
    // The person drags in steps, as a hand does, while the loop runs here.
    void Drag(RuntimeObject *list, GdkPoint from, GdkPoint to) {
        gint fx, fy, tx, ty;
        gdk_window_get_origin(GTK_WIDGET(View(list))->window, &fx, &fy);
        tx = fx + to.x, ty = fy + to.y;
        fx += from.x, fy += from.y;
        std::atomic<bool> done{false};
        std::thread hand([&] {
            std::string steps = "mousemove " + std::to_string(fx) + " " + std::to_string(fy) +
                                " mousedown 1 sleep 0.2";
            for (int i = 1; i <= 6; ++i)
                steps += " mousemove " + std::to_string(fx + (tx - fx) * i / 6) + " " +
                         std::to_string(fy + (ty - fy) * i / 6) + " sleep 0.15";
            XDoToolQuiet(steps + " mouseup 1");
            done = true;
        });
        for (int i = 0; i < 100 && !done; ++i)
            Settle(50);
        hand.join();
        Settle(200);
    }
    std::vector<std::string> Column0(RuntimeObject *list) {
        std::vector<std::string> rows;
        for (int32_t i = 0; i < listCountGetter(list, 0); ++i)
            rows.push_back(Text(RuntimeGetRow(list, i)));
        return rows;
    }
    RuntimeObject *mWindow = nullptr;
};

TEST_F(ListBoxWindowTest, HeadingsSortRowsSelectAndCheckBoxesToggle) {
    RuntimeObject *list = MakeList("Name\tAge\tOk\rpear\t30\rApple\t4\rfig\t100",
                                   {{"Change", H(&OnChange)},
                                    {"HeaderPressed", H(&OnHeaderPressed)},
                                    {"SortColumn", H(&OnSortColumn)},
                                    {"CompareRows", H(&OnCompareRows)},
                                    {"CellClick", H(&OnCellClick)},
                                    {"CellAction", H(&OnCellAction)}});
    listColumnTypeSetter(list, 2, 2); // check boxes
    listSetCellBold(list, 0, 0, 1);
    listSetCellItalic(list, 1, 0, 1);
    listSetCellBorderBottom(list, 2, 1, 4);
    Settle(100);
    EXPECT_EQ(Text(listGetHeading(list, 1)), "Age");
    EXPECT_EQ(Text(listColumnWidthsGetter(list, 0)), "50%, 25%, *");
    RuntimeObject *age = listColumnGetter(list, 1);
    EXPECT_NEAR(listColWidthActualGetter(age, 0), 90, 3) << "a quarter of the content width";
    RuntimeUnlockObject(age);
    listColumnWidthsSetter(list, 0, Lit("100, 60"));
    Settle(60);
    EXPECT_EQ(Text(listColumnWidthsGetter(list, 0)), "100, 60, 1*");
    listColumnWidthsSetter(list, 0, Lit("100, 60, 80"));
    Settle(60);
    EXPECT_EQ(Text(listColumnWidthsGetter(list, 0)), "100, 60, 80")
        << "the view filling the row to its edge is no change of width";
    listColumnWidthsSetter(list, 0, Lit("50%, 25%, *"));

    ClickHeading(list, 1);
    EXPECT_EQ(Column0(list), (std::vector<std::string>{"Apple", "pear", "fig"}))
        << "CompareRows orders by number";
    ClickHeading(list, 1);
    EXPECT_EQ(Column0(list), (std::vector<std::string>{"fig", "pear", "Apple"}))
        << "a second press turns the order round";
    EXPECT_EQ(listSortedColumnGetter(list, 0), 1);
    EXPECT_EQ(listColumnSortDirectionGetter(list, 1), -1);
    EXPECT_TRUE(listGetCellBold(list, 1, 0)) << "styles travel with their rows";

    ClickCell(list, 1, 0);
    EXPECT_EQ(listSelectionGetter(list, 0), 1);
    EXPECT_EQ(Text(listTextGetter(list, 0)), "pear");
    GdkPoint p = CellPoint(list, 1, 0);
    gint cx, cy;
    gtk_widget_translate_coordinates(GTK_WIDGET(View(list)), Widget(list), p.x, p.y, &cx, &cy);
    EXPECT_EQ(listRowFromXY(list, cx, cy), 1);
    EXPECT_EQ(listColFromXY(list, cx, cy), 0);

    ClickCell(list, 2, 2, 8); // on the check box at the cell's left
    EXPECT_TRUE(listCellCheckGetter(list, 2, 2));
    EXPECT_EQ(Events(),
              (std::vector<std::string>{"HeaderPressed 1", "SortColumn 1", "HeaderPressed 1",
                                        "SortColumn 1", "CellClick 1,0", "Change", "CellClick 2,2",
                                        "CellAction 2,2", "Change"}));
    std::filesystem::create_directories("screenshots");
    EXPECT_TRUE(SaveScreenshot(Fixed(mWindow), "screenshots/listbox.png"));
}

// The events since the last look, repeats merged: a key typed over a
// selection reports a removal and an insertion.
std::vector<std::string> TakeEvents() {
    std::vector<std::string> merged;
    for (const std::string &e : Events())
        if (merged.empty() || merged.back() != e)
            merged.push_back(e);
    Events().clear();
    return merged;
}

TEST_F(ListBoxWindowTest, ASecondSlowClickEditsTheCellInAnEditField) {
    RuntimeObject *list =
        MakeList("Name\tAge\tOk\rpear\t30\rfig\t100", {{"CellGotFocus", H(&OnCellGotFocus)},
                                                       {"CellTextChange", H(&OnCellTextChange)},
                                                       {"CellLostFocus", H(&OnCellLostFocus)},
                                                       {"CellAction", H(&OnCellAction)}});
    listColumnTypeSetter(list, 0, 3); // editable
    GdkPoint p = CellPoint(list, 1, 0);
    gint ox, oy;
    gdk_window_get_origin(GTK_WIDGET(View(list))->window, &ox, &oy);
    ASSERT_TRUE(XDoTool("mousemove " + std::to_string(ox + p.x) + " " + std::to_string(oy + p.y) +
                        " click --repeat 2 --delay 60 1"));
    Settle(150);
    EXPECT_EQ(listActiveCellGetter(list, 0), nullptr) << "a double click doesn't edit";
    ClickCell(list, 0, 0);
    Settle(700); // past the double-click time
    Events().clear();
    ClickCell(list, 0, 0);
    RuntimeObject *field = listActiveCellGetter(list, 0);
    ASSERT_NE(field, nullptr);
    EXPECT_TRUE(ClassInherits(field->klass, ClassForDefinition(EditFieldDefinition())));
    EXPECT_EQ(Text(editTextGetter(field, 0)), "pear");
    // The field lies over the cell and has the keyboard.
    GtkWidget *entry = Widget(field);
    gint x, y;
    gtk_widget_translate_coordinates(entry, GTK_WIDGET(View(list)), 0, 0, &x, &y);
    EXPECT_LE(std::abs(y + entry->allocation.height / 2 - CellPoint(list, 0, 0).y), 3);
    EXPECT_TRUE(gtk_widget_has_focus(entry));
    Key("k");
    std::filesystem::create_directories("screenshots");
    EXPECT_TRUE(SaveScreenshot(Widget(list), "screenshots/listbox_cell_editing.png"));
    Key("Return");
    EXPECT_EQ(listActiveCellGetter(list, 0), nullptr);
    EXPECT_EQ(Text(listGetCell(list, 0, 0)), "k");
    EXPECT_EQ(TakeEvents(), (std::vector<std::string>{"CellGotFocus 0,0", "CellTextChange 0,0",
                                                      "CellLostFocus 0,0", "CellAction 0,0"}));
    RuntimeUnlockObject(field);

    // Every way out of the field, on a cell not editable by its type.
    struct Ending {
        const char *how; // a key, or "click" on another row
        const char *text;
        std::vector<std::string> events;
    };
    const Ending endings[] = {
        {"Tab", "xy", {"CellLostFocus 1,1", "CellAction 1,1"}},
        {"Escape", "xy", {"CellLostFocus 1,1"}},
        {"click", "xyxy", {"CellLostFocus 1,1", "CellAction 1,1"}},
    };
    for (const Ending &e : endings) {
        listEditCell(list, 1, 1);
        Settle(100);
        Key("End");
        Key("x");
        Key("y");
        EXPECT_EQ(TakeEvents(),
                  (std::vector<std::string>{"CellGotFocus 1,1", "CellTextChange 1,1"}))
            << e.how;
        if (std::string(e.how) == "click")
            ClickCell(list, 0, 2);
        else
            Key(e.how);
        EXPECT_EQ(listActiveCellGetter(list, 0), nullptr) << e.how;
        EXPECT_EQ(Text(listGetCell(list, 1, 1)), std::string("100") + e.text) << e.how;
        EXPECT_EQ(TakeEvents(), e.events) << e.how;
    }
}

TEST_F(ListBoxWindowTest, KeysAndPressesGoToTheProgramFirst) {
    RuntimeObject *list =
        MakeList("Name\tAge\tOk\ra\t1\rb\t2\rc\t3", {{"KeyDown", H(&OnKeyDown)},
                                                     {"MouseDown", H(&OnMouseDown)},
                                                     {"MouseUp", H(&OnMouseUp)},
                                                     {"Change", H(&OnChange)},
                                                     {"EnableMenuItems", H(&OnEnableMenuItems)}});
    gTakeMouse = 0;
    ClickCell(list, 0, 0);
    enableMenuItems(); // the menu cycle reaches the list holding the focus
    Key("x");
    Key("Down");
    EXPECT_EQ(listSelectionGetter(list, 0), 1) << "Down moves the selection";
    gTakeMouse = 1;
    ClickCell(list, 2, 0);
    EXPECT_EQ(listSelectionGetter(list, 0), 1) << "a press the program took selects nothing";
    EXPECT_EQ(Events(),
              (std::vector<std::string>{"MouseDown", "Change", "EnableMenuItems", "KeyDown 120",
                                        "KeyDown 31", "Change", "MouseDown", "MouseUp"}));
    gTakeMouse = 0;
    for (uint8_t keep : {1, 0}) { // a press below the last row
        listRequiresSelectionSetter(list, 0, keep);
        GdkPoint below = CellPoint(list, 2, 0, -1, 4.0);
        ASSERT_TRUE(ClickAt(GTK_WIDGET(View(list)), below.x, below.y));
        Settle(120);
        EXPECT_EQ(listSelectionGetter(list, 0), keep ? 1 : -1) << int(keep);
    }
}

TEST_F(ListBoxWindowTest, ADisclosureTriangleAsksTheProgramForTheRows) {
    RuntimeObject *list =
        MakeList("Name\tAge\tOk",
                 {{"ExpandRow", H(&OnExpandRow)}, {"CollapseRow", H(&OnCollapseRow)}}, true);
    RuntimeListAddParent(list, Lit("Fruit"));
    RuntimeListAddRow(list, Lit("Nuts"));
    Settle(100);
    ClickTriangle(list);
    EXPECT_EQ(Column0(list), (std::vector<std::string>{"Fruit", "apple", "pear", "Nuts"}));
    EXPECT_TRUE(listGetExpanded(list, 0));
    ClickTriangle(list);
    EXPECT_EQ(Column0(list), (std::vector<std::string>{"Fruit", "Nuts"}));
    EXPECT_FALSE(listGetExpanded(list, 0));
    EXPECT_EQ(Events(), (std::vector<std::string>{"ExpandRow 0", "CollapseRow 0"}));
}

TEST_F(ListBoxWindowTest, ARowDraggedOutOffersItsText) {
    RuntimeObject *list = MakeList("Name\tAge\tOk\ra\t1\rb\t2\rc\t3", {{"DragRow", H(&OnDragRow)}});
    listEnableDragSetter(list, 0, 1);
    Drag(list, CellPoint(list, 1, 0), CellPoint(list, 1, 0, 400));
    EXPECT_EQ(listSelectionGetter(list, 0), 1) << "the dragged row is selected first";
    EXPECT_EQ(Column0(list), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(Events(), (std::vector<std::string>{"DragRow 1 b"}));
}

TEST_F(ListBoxWindowTest, ARowDraggedBelowAnotherMovesThere) {
    RuntimeObject *list =
        MakeList("Name\tAge\tOk\ra\t1\rb\t2\rc\t3\rd\t4", {{"DragReorderRows", H(&OnDragReorder)}});
    ListEnableDragReorderSetter(list, 0, 1);
    Settle(50);
    Drag(list, CellPoint(list, 0, 0), CellPoint(list, 2, 0, -1, 0.8));
    EXPECT_EQ(Column0(list), (std::vector<std::string>{"b", "c", "a", "d"}));
    EXPECT_EQ(Text(listGetCell(list, 2, 1)), "1") << "the row moves with its cells";
    EXPECT_EQ(Events(), (std::vector<std::string>{"DragReorderRows 3,-1"}));
}

TEST_F(ListBoxWindowTest, PaintHandlersDrawCellsInsteadOfTheList) {
    RuntimeObject *list = MakeList("Name\tAge\tOk\rpear\t30\rApple\t4\rfig\t100",
                                   {{"CellBackgroundPaint", H(&OnCellBackgroundPaint)},
                                    {"CellTextPaint", H(&OnCellTextPaint)}});
    Settle(150);
    GtkTreeView *view = View(list);
    // Points of the window: a cell's origin plus an offset into it.
    auto at = [&](int row, int column, int dx, int dy) {
        GdkPoint p = CellPoint(list, row, column, 0, 0.0);
        gint x, y;
        gtk_widget_translate_coordinates(GTK_WIDGET(view), Fixed(mWindow), p.x, p.y, &x, &y);
        return GdkPoint{x + dx, y + dy};
    };
    const int width = gtk_tree_view_column_get_width(gtk_tree_view_get_column(view, 1));
    struct {
        int row, column, dx, dy;
        uint32_t rgb;
        const char *what;
    } cases[] = {
        {1, 1, 2, 2, 0xff0000, "the handled background"},
        {1, 1, width - 12, 8, 0xff0000, "to the cell's right"},
        {1, 2, 4, 4, 0xffffff, "the next cell is not drawn over"},
        {2, 1, 4, 4, 0xffffff, "nor the next row"},
        {1, 0, 4, 4, 0xffffff, "nor the cell before"},
    };
    for (const auto &c : cases) {
        GdkPoint p = at(c.row, c.column, c.dx, c.dy);
        EXPECT_EQ(Pixel(mWindow, p.x, p.y), c.rgb) << c.what;
    }
    ASSERT_GE(gTextAt.x, 0) << "CellTextPaint ran";
    GdkPoint mark = at(0, 0, gTextAt.x + 3, gTextAt.y - 3);
    EXPECT_EQ(Pixel(mWindow, mark.x, mark.y), 0x0000ffu) << "the text's mark at its base position";
    // "pear" is not drawn: along the text's line only the mark is dark.
    int dark = 0;
    for (int x = gTextAt.x + 8; x < gTextAt.x + 60; ++x) {
        GdkPoint p = at(0, 0, x, gTextAt.y - 3);
        dark += Pixel(mWindow, p.x, p.y) != 0xffffff;
    }
    EXPECT_EQ(dark, 0);
    GdkPoint apple = at(2, 0, 0, 0);
    int drawn = 0; // the rows not handled keep their text
    for (int x = gTextAt.x; x < gTextAt.x + 40; ++x)
        for (int y = 2; y < 16; ++y)
            drawn += Pixel(mWindow, apple.x + x, apple.y + y) != 0xffffff;
    EXPECT_GT(drawn, 10);
    std::filesystem::create_directories("screenshots");
    EXPECT_TRUE(SaveScreenshot(Fixed(mWindow), "screenshots/listbox-cell-paint.png"));
}
} // namespace
} // namespace kelp::test
