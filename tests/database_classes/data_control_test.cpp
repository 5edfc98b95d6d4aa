// DataControl in a real window: its buttons, clicked with real X input,
// move through the rows of a real database file, a bound StaticText shows
// the current row, and the bar's new, update and delete reach the file.
#include "controls/control_fixture.h"

#include "kelp/database.h"

#include <filesystem>

namespace kelp::test {
namespace {

std::string Take(KelpString s) {
    std::string out = Str(s);
    RuntimeUnlockString(s);
    return out;
}

class DataControlTest : public ControlFixture {
protected:
    void TearDown() override {
        ControlFixture::TearDown();
        std::filesystem::remove_all(mFolder);
    }
    // Clicks the bar's button `index` (0 "|<", 1 "<", 2 ">", 3 ">|").
    void ClickButton(RuntimeObject *w, RuntimeObject *bar, int index) {
        GList *children = gtk_container_get_children(GTK_CONTAINER(Widget(bar)));
        GtkWidget *button = GTK_WIDGET(g_list_nth_data(children, index < 2 ? index : index + 1));
        g_list_free(children);
        ASSERT_TRUE(GTK_IS_BUTTON(button));
        GtkAllocation a = button->allocation;
        ASSERT_TRUE(ClickAt(Fixed(w), a.x + a.width / 2, a.y + a.height / 2));
        Settle(80);
    }
    std::string mFolder = [] {
        char name[] = "/tmp/kelp-dbdc-XXXXXX";
        return std::string(mkdtemp(name));
    }();
};

TEST_F(DataControlTest, ButtonsMoveRowsAndTheBarWritesTheFile) {
    RuntimeObject *file = RuntimeGetFolderItem(Lit(mFolder + "/bar.kdb"), 0);
    RuntimeObject *db = newKELPDatabase(file);
    RuntimeUnlockObject(file);
    ASSERT_NE(db, nullptr);
    databaseSQLExecute(db, Lit("create table kids (id integer, name varchar(20))"));
    for (const char *row : {"(1, 'Ann')", "(2, 'Bob')", "(3, 'Cy')"})
        databaseSQLExecute(db, Lit(std::string("insert into kids (id, name) values ") + row));

    RuntimeObject *w = MakeWindow(320, 100, [](RuntimeObject *view) {
        Add(view, "DataControl", "Bar", [](MassData &m) { Box(m, 10, 10, 300, 28); });
        Add(view, "StaticText", "Shown", [](MassData &m) { Box(m, 10, 60, 200, 20); });
        Add(view, "StaticText", "Id", [](MassData &m) { Box(m, 220, 60, 80, 20); });
    });
    RuntimeObject *bar = Find(w, "Bar");
    RuntimeObject *shown = Find(w, "Shown");
    RuntimeObject *id = Find(w, "Id");
    ASSERT_TRUE(bar && shown && id && Widget(bar));
    DataControlDBSetter(bar, 0, db);
    DataControlTableNameSetter(bar, 0, Lit("kids"));
    DataControlQuerySetter(bar, 0, Lit("select id, name from kids order by id"));
    DataControlControlBindSetter(bar, Lit("name"), shown);
    DataControlControlBindSetter(bar, Lit("ID"), id);
    DataControlRunQuery(bar);
    auto text = [&] { return Take(staticTextTextGetter(shown, 0)); };
    EXPECT_EQ(text(), "Ann");
    EXPECT_EQ(Take(staticTextTextGetter(id, 0)), "1");

    struct Step {
        int button;
        const char *shows;
    } steps[] = {{2, "Bob"}, {3, "Cy"}, {2, "Cy"}, {1, "Bob"}, {0, "Ann"}, {1, "Ann"}};
    for (const Step &s : steps) {
        ClickButton(w, bar, s.button);
        EXPECT_EQ(text(), s.shows) << "after button " << s.button;
    }

    staticTextTextSetter(shown, 0, Lit("Anne"));
    DataControlUpdateRecord(bar);
    DataControlNewRecord(bar);
    EXPECT_EQ(text(), "");
    EXPECT_EQ(Take(staticTextTextGetter(id, 0)), "");
    staticTextTextSetter(shown, 0, Lit("Dee"));
    staticTextTextSetter(id, 0, Lit("4"));
    DataControlAddNewRecord(bar);
    EXPECT_EQ(DataControlRowCount(bar), 4);
    EXPECT_EQ(DataControlRow(bar), 3);
    RuntimeObject *back = DataControlGetBoundPart(bar, Lit("getPrevAction"));
    DataControlActionPerformAction(back);
    RuntimeUnlockObject(back);
    EXPECT_EQ(Take(DataControlGetField(bar, Lit("NAME"))), "Cy");
    DataControlDeleteRecord(bar); // Cy
    DataControlReadOnlySetter(bar, 0, true);
    DataControlDeleteRecord(bar); // refused
    EXPECT_EQ(DataControlRowCount(bar), 3);
    EXPECT_EQ(DataControlGetBoundPart(bar, Lit("getNothing")), nullptr);

    RuntimeObject *rs = databaseSQLSelect(db, Lit("select name from kids order by id"));
    std::string rows;
    for (; !cursorEOFGetter(rs, 0); cursorMoveNext(rs)) {
        RuntimeObject *f = cursorGetFieldByIndex(rs, 1);
        rows += Take(cursorFieldStringValueGetter(f, 0)) + ";";
        RuntimeUnlockObject(f);
    }
    EXPECT_EQ(rows, "Anne;Bob;Dee;");
    RuntimeUnlockObject(rs);
    DataControlClearBoundControls(bar);
    databaseClose(db);
    RuntimeUnlockObject(db);
}

} // namespace
} // namespace kelp::test
