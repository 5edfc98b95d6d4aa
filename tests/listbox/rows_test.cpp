// The rows and cells of a ListBox with no window: seeded random operations
// against a plain model, indices outside the list, folders, bulk text.
#include "controls/control_fixture.h"

#include "kelp/listbox.h"

#include <algorithm>
#include <random>

namespace kelp::test {
namespace {

std::string Text(KelpString s) {
    std::string text = Str(s);
    RuntimeUnlockString(s);
    return text;
}

// A ListBox of a subclass that carries `handlers`, not on any window.
RuntimeObject *NewList(const char *name,
                       std::initializer_list<ControlFixture::Handler> handlers = {}) {
    RuntimeClass *klass = MakeSubclass("ListBox", name);
    for (const auto &h : handlers)
        EXPECT_TRUE(SetEventHandler(klass, h.first, h.second)) << h.first;
    return RuntimeNewObject(klass);
}

std::string Lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return std::tolower(c); });
    return s;
}

TEST(ListBoxRows, RandomOperationsAgreeWithAPlainModel) {
    struct ModelRow {
        std::string cells[2];
        bool selected = false;
    };
    RuntimeObject *list = NewList("RandomList");
    listColumnCountSetter(list, 0, 2);
    std::vector<ModelRow> model;
    std::mt19937 rng(19);
    auto word = [&] {
        std::string w;
        for (int i = 0, n = 1 + int(rng() % 4); i < n; ++i)
            w += char((rng() % 2 ? 'a' : 'A') + rng() % 6);
        return w;
    };
    for (int step = 0; step < 3000; ++step) {
        const int32_t count = int32_t(model.size());
        switch (rng() % 7) {
        case 0:
        case 1: {
            std::string w = word();
            RuntimeListAddRow(list, Lit(w));
            model.push_back({{w, ""}});
            break;
        }
        case 2: {
            int32_t at = int32_t(rng() % uint32_t(count + 1));
            std::string w = word();
            RuntimeListInsertRow(list, at, Lit(w), 0);
            model.insert(model.begin() + at, ModelRow{{w, ""}});
            break;
        }
        case 3:
            if (count) {
                int32_t at = int32_t(rng() % uint32_t(count));
                RuntimeRemoveRow(list, at);
                model.erase(model.begin() + at);
            }
            break;
        case 4:
            if (count) {
                int32_t at = int32_t(rng() % uint32_t(count)), column = int32_t(rng() % 2);
                std::string w = word();
                listSetCell(list, at, column, Lit(w));
                model[size_t(at)].cells[column] = w;
            }
            break;
        case 5:
            if (count) { // single selection: the row alone
                int32_t at = int32_t(rng() % uint32_t(count));
                listSelectionSetter(list, 0, at);
                for (size_t i = 0; i < model.size(); ++i)
                    model[i].selected = int32_t(i) == at;
            }
            break;
        case 6: {
            int32_t column = int32_t(rng() % 2), direction = rng() % 2 ? 1 : -1;
            listColumnSortDirectionSetter(list, column, direction);
            listSortedColumnSetter(list, 0, column);
            RuntimeListResort(list);
            std::stable_sort(model.begin(), model.end(), [&](const ModelRow &a, const ModelRow &b) {
                std::string x = Lower(a.cells[column]), y = Lower(b.cells[column]);
                return direction > 0 ? x < y : y < x;
            });
            break;
        }
        }
        ASSERT_EQ(listCountGetter(list, 0), int32_t(model.size())) << "step " << step;
        int32_t selected = -1, selCount = 0;
        for (size_t i = 0; i < model.size(); ++i) {
            ASSERT_EQ(Text(listGetCell(list, int32_t(i), 0)), model[i].cells[0]) << "step " << step;
            ASSERT_EQ(Text(listGetCell(list, int32_t(i), 1)), model[i].cells[1]) << "step " << step;
            if (model[i].selected) {
                selected = selected < 0 ? int32_t(i) : selected;
                ++selCount;
            }
        }
        ASSERT_EQ(listSelectionGetter(list, 0), selected) << "step " << step;
        ASSERT_EQ(listSelCountGetter(list, 0), selCount) << "step " << step;
    }
    RuntimeUnlockObject(list);
}

TEST(ListBoxRows, IndicesOutsideTheListRaise) {
    RuntimeObject *list = NewList("BoundsList");
    listColumnCountSetter(list, 0, 2);
    listSetCell(list, -1, -1, Lit("a\t1\rb\t2"));
    RuntimeObject *column = nullptr;
    struct Case {
        const char *what;
        std::function<void()> act;
        const char *raised;
    } cases[] = {
        {"Cell(2, 0)", [&] { Text(listGetCell(list, 2, 0)); }, "OutOfBoundsException"},
        {"Cell(-2, 0)", [&] { Text(listGetCell(list, -2, 0)); }, "OutOfBoundsException"},
        {"Cell(0, 256)", [&] { listSetCell(list, 0, 256, Lit("x")); }, "OutOfBoundsException"},
        {"Cell(0, 200) past the columns shown", [&] { listSetCell(list, 0, 200, Lit("x")); }, ""},
        {"CellCheck(5, 0)", [&] { listCellCheckSetter(list, 5, 0, 1); }, "OutOfBoundsException"},
        {"CellBold(0, -1)", [&] { listSetCellBold(list, 0, -1, 1); }, "OutOfBoundsException"},
        {"CellTag(9, 0)", [&] { RuntimeUnlockObject(listGetCellTag(list, 9, 0)); },
         "OutOfBoundsException"},
        {"RemoveRow(2)", [&] { RuntimeRemoveRow(list, 2); }, "OutOfBoundsException"},
        {"Selected(-1)", [&] { listSetSelected(list, -1, 1); }, "OutOfBoundsException"},
        {"ListIndex = 2", [&] { listSelectionSetter(list, 0, 2); }, "OutOfBoundsException"},
        {"ListIndex = -1", [&] { listSelectionSetter(list, 0, -1); }, ""},
        {"Expanded(7)", [&] { listGetExpanded(list, 7); }, "OutOfBoundsException"},
        {"ColumnType(64)", [&] { listColumnTypeSetter(list, 64, 2); }, "OutOfBoundsException"},
        {"Heading(64)", [&] { Text(listGetHeading(list, 64)); }, "OutOfBoundsException"},
        {"Column(2)", [&] { column = listColumnGetter(list, 2); }, "OutOfBoundsException"},
        {"InsertRow(99) goes at the end", [&] { RuntimeListInsertRow(list, 99, Lit("c"), 0); }, ""},
        {"ColumnWidths = abc", [&] { listColumnWidthsSetter(list, 0, Lit("10, abc")); },
         "UnsupportedFormatException"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(Raised(c.act), c.raised) << c.what;
    EXPECT_EQ(column, nullptr);
    EXPECT_EQ(Text(listGetCell(list, 0, 200)), "x");
    EXPECT_EQ(Text(listGetCell(list, 2, 0)), "c");
    EXPECT_EQ(Text(listColumnWidthsGetter(list, 0)), ", ") << "a refused width changes nothing";
    RuntimeObject *all = listColumnGetter(list, -1);
    EXPECT_EQ(Raised([&] { listColWidthExpressionSetter(all, 2, Lit("*")); }),
              "UnsupportedFormatException");
    listColWidthExpressionSetter(all, 0, Lit("40"));
    EXPECT_EQ(Text(listColumnWidthsGetter(list, 0)), "40, 40") << "Column(-1) is every column";
    RuntimeUnlockObject(all);
    RuntimeUnlockObject(list);
}

TEST(ListBoxRows, BulkTextColumnCountAndHeadings) {
    RuntimeObject *list = NewList("BulkList");
    struct Count {
        int32_t set, got;
    } counts[] = {{0, 1}, {65, 64}, {3, 3}};
    for (const Count &c : counts) {
        listColumnCountSetter(list, 0, c.set);
        EXPECT_EQ(listColumnCountGetter(list, 0), c.got) << c.set;
    }
    listSetCell(list, -1, -1, Lit("a\tb\tc\r\nd\te\tf\ng"));
    EXPECT_EQ(listCountGetter(list, 0), 3);
    EXPECT_EQ(Text(listGetCell(list, -1, -1)), "a\tb\tc\rd\te\tf\rg\t\t");
    EXPECT_EQ(Text(listGetCell(list, 1, -1)), "d\te\tf");
    EXPECT_EQ(Text(listGetCell(list, -1, 1)), "b\re\r");
    listSetCell(list, -1, 2, Lit("x\ry"));
    EXPECT_EQ(Text(listGetCell(list, 1, 2)), "y");
    listSetHeading(list, -1, Lit("One\t\tThree"));
    EXPECT_EQ(Text(listGetHeading(list, 1)), "1") << "an empty heading reads as its number";
    EXPECT_EQ(Text(listGetHeading(list, -1)), "One\t1\tThree");
    listSetCell(list, -1, -1, Lit(""));
    EXPECT_EQ(listCountGetter(list, 0), 0);
    RuntimeUnlockObject(list);
}

// A receiver of the language: an object whose class implements
// actionNotificationReceiver, with a tag to tell receivers apart.
struct ReceiverRecord {
    RuntimeObject object;
    int64_t tag;
};
void Perform(RuntimeObject *me) {
    Events().push_back("Perform " + std::to_string(reinterpret_cast<ReceiverRecord *>(me)->tag));
}
RuntimeObject *NewReceiver(int64_t tag) {
    static RuntimeClass *klass = [] {
        RuntimeClass *c = MakeClass(nullptr, "lbReceiver", sizeof(ReceiverRecord), 0, 1);
        RuntimeClass *iface = RuntimeLookupClass(Lit("actionNotificationReceiver"));
        c->interfaceTable[0] = {iface, 1, RuntimeNewVtable(1)};
        c->interfaceTable[0].methodTable[0].code = reinterpret_cast<void *>(&Perform);
        return c;
    }();
    RuntimeObject *r = RuntimeNewObject(klass);
    reinterpret_cast<ReceiverRecord *>(r)->tag = tag;
    return r;
}

TEST(ListBoxRows, BoundPartsFollowTheSelection) {
    Events().clear();
    RuntimeObject *list = NewList("BoundList");
    listColumnCountSetter(list, 0, 2);
    listSetCell(list, -1, -1, Lit("a\tx\rb\ty"));
    RuntimeObject *column = listGetBoundPart(list, Lit("columnValueProvider_1"));
    RuntimeObject *selection = listGetBoundPart(list, Lit("getSelectionProvider"));
    ASSERT_NE(column, nullptr);
    ASSERT_NE(selection, nullptr);
    EXPECT_EQ(listGetBoundPart(list, Lit("noSuchPart")), nullptr);
    RuntimeObject *r1 = NewReceiver(1), *r2 = NewReceiver(2);
    lcvpAddDataNotificationReceiver(column, r1);
    listSelectionAddDataNotificationReceiver(selection, r2);
    listAddLSNR(list, column);
    listAddLSNR(list, selection);
    struct State {
        bool available;
        std::string value;
        bool selected;
    };
    auto state = [&] {
        return State{lcvpDataAvailable(column) != 0, Text(lcvpGetString(column)),
                     listSelectionGetBoolean(selection) != 0};
    };
    State before = state();
    EXPECT_FALSE(before.available || before.selected);
    listSelectionSetter(list, 0, 1);
    State after = state();
    EXPECT_TRUE(after.available && after.selected);
    EXPECT_EQ(after.value, "y");
    lcvpSetString(column, Lit("z"));
    EXPECT_EQ(Text(listGetCell(list, 1, 1)), "z");
    listSelectionSetBoolean(selection, 0);
    EXPECT_EQ(listSelectionGetter(list, 0), -1);
    EXPECT_EQ(Events(),
              (std::vector<std::string>{"Perform 1", "Perform 2", "Perform 1", "Perform 2"}));
    listRemoveLSNR(list, column);
    listRemoveLSNR(list, selection);
    for (RuntimeObject *o : {column, selection, r1, r2, list})
        RuntimeUnlockObject(o);
}

// ExpandRow adds two children, one of them a folder; the log shows the
// events of the folders.
RuntimeObject *gTree;
void AddChildren(RuntimeObject *, int32_t row) {
    Events().push_back("ExpandRow " + std::to_string(row));
    RuntimeListAddRow(gTree, Lit("leaf " + std::to_string(row)));
    RuntimeListAddParent(gTree, Lit("inner " + std::to_string(row)));
}
void NoteCollapse(RuntimeObject *, int32_t row) {
    Events().push_back("CollapseRow " + std::to_string(row));
    RuntimeRemoveRow(gTree, row); // a second removal of the same row does nothing
}

TEST(ListBoxRows, FoldersOpenThroughTheProgramAndSortWithTheirChildren) {
    Events().clear();
    gTree =
        NewList("TreeList", {{"ExpandRow", H(&AddChildren)}, {"CollapseRow", H(&NoteCollapse)}});
    listHierarchicalSetter(gTree, 0, 1);
    for (const char *name : {"b folder", "a folder"})
        RuntimeListAddParent(gTree, Lit(name));
    listSetExpanded(gTree, 0, 1);
    listSetExpanded(gTree, 2, 1); // "inner 0"
    listSetExpanded(gTree, 5, 1); // "a folder"
    std::vector<std::string> rows;
    auto read = [&] {
        rows.clear();
        for (int32_t i = 0; i < listCountGetter(gTree, 0); ++i)
            rows.push_back(Text(RuntimeGetRow(gTree, i)));
        return rows;
    };
    EXPECT_EQ(read(), (std::vector<std::string>{"b folder", "leaf 0", "inner 0", "leaf 2",
                                                "inner 2", "a folder", "leaf 5", "inner 5"}));
    listColumnSortDirectionSetter(gTree, 0, -1);
    listSortedColumnSetter(gTree, 0, 0);
    RuntimeListResort(gTree);
    EXPECT_EQ(read(), (std::vector<std::string>{"b folder", "leaf 0", "inner 0", "leaf 2",
                                                "inner 2", "a folder", "leaf 5", "inner 5"}))
        << "descending: each group of siblings in order, children behind their folder";
    listColumnSortDirectionSetter(gTree, 0, 1);
    RuntimeListResort(gTree);
    EXPECT_EQ(read(), (std::vector<std::string>{"a folder", "inner 5", "leaf 5", "b folder",
                                                "inner 0", "inner 2", "leaf 2", "leaf 0"}));
    listSetExpanded(gTree, 0, 0); // the handler removes the folder itself
    EXPECT_EQ(read(),
              (std::vector<std::string>{"b folder", "inner 0", "inner 2", "leaf 2", "leaf 0"}));
    EXPECT_EQ(Raised([] { listSetSelected(gTree, 5, 1); }), "OutOfBoundsException")
        << "a closed folder has no rows behind it";
    EXPECT_EQ(Events(), (std::vector<std::string>{"ExpandRow 0", "ExpandRow 2", "ExpandRow 5",
                                                  "CollapseRow 0"}));
    RuntimeUnlockObject(gTree);
}

// InsertRow's indent in an open folder "F" with children "leaf 0" and the
// closed folder "inner 0", before the top-level "G": where "m" lands shows
// in the store's order after a sort, and in what closing "F" takes away.
TEST(ListBoxRows, InsertRowPutsTheRowAtTheIndentTheRowsAroundAllow) {
    using Rows = std::vector<std::string>;
    const Rows child = {"F", "inner 0", "leaf 0", "m", "G"},
               top = {"F", "inner 0", "leaf 0", "G", "m"};
    struct {
        int32_t at, indent;
        Rows sorted, closed;
    } cases[] = {
        {3, 1, child, {"F", "G"}},    {3, 0, top, {"F", "G", "m"}},
        {3, 5, child, {"F", "G"}},    // no deeper than a sibling of the closed folder
        {1, 0, child, {"F", "G"}},    // not above "leaf 0", which would become its child
        {4, 1, top, {"F", "G", "m"}}, // "G" is no folder
    };
    for (const auto &c : cases) {
        gTree = NewList("IndentList", {{"ExpandRow", H(&AddChildren)}});
        listHierarchicalSetter(gTree, 0, 1);
        RuntimeListAddParent(gTree, Lit("F"));
        listSetExpanded(gTree, 0, 1);
        RuntimeListAddRow(gTree, Lit("G"));
        RuntimeListInsertRow(gTree, c.at, Lit("m"), c.indent);
        auto read = [] {
            Rows rows;
            for (int32_t i = 0; i < listCountGetter(gTree, 0); ++i)
                rows.push_back(Text(RuntimeGetRow(gTree, i)));
            return rows;
        };
        listSortedColumnSetter(gTree, 0, 0);
        RuntimeListResort(gTree);
        EXPECT_EQ(read(), c.sorted) << c.at << "," << c.indent;
        listSetExpanded(gTree, 0, 0);
        EXPECT_EQ(read(), c.closed) << c.at << "," << c.indent;
        RuntimeUnlockObject(gTree);
    }
}

} // namespace
} // namespace kelp::test
