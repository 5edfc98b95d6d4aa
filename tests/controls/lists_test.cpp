// PopupMenu and ComboBox: rows from the layout and from code, the chosen
// row, Change only for a row, typing into a ComboBox.
#include "control_fixture.h"

namespace kelp::test {
namespace {

void LogTextChanged(RuntimeObject *me) { Events().push_back("TextChanged " + NameOf(me)); }

std::string TextOf(RuntimeObject *control) {
    KelpString text = RuntimeComboBoxTextGetter(control, 0);
    std::string s = Str(text);
    objtext::Release(text);
    return s;
}

class ListsTest : public ControlFixture {};

TEST_F(ListsTest, PopupMenuRowsAndTheChosenRow) {
    RuntimeObject *w = MakeWindow(300, 120, [](RuntimeObject *view) {
        Add(view, "PopupMenu", "Colour",
            [](MassData &m) { Box(m, 10, 10, 150, 26).Text("InitialValue", "Red\rGreen\r\nBlue"); },
            {{"Change", H(&LogChange)}});
    });
    RuntimeObject *menu = Find(w, "Colour");
    EXPECT_EQ(RuntimeComboBoxListCount(menu, 0), 3);
    EXPECT_EQ(RuntimeComboBoxListIndexGetter(menu, 0), -1);
    RuntimeComboBoxListIndexSetter(menu, 0, 1);
    EXPECT_EQ(TextOf(menu), "Green");
    EXPECT_FALSE(gtk_editable_get_editable(GTK_EDITABLE(GTK_COMBO(Widget(menu))->entry)));
    RuntimeComboBoxInsertRow(menu, 0, Lit("Black"));
    EXPECT_EQ(RuntimeComboBoxListIndexGetter(menu, 0), 2) << "the chosen row moved down";
    EXPECT_EQ(TextOf(menu), "Green");
    RuntimeComboBoxRemoveRow(menu, 2);
    EXPECT_EQ(RuntimeComboBoxListIndexGetter(menu, 0), -1);
    EXPECT_EQ(Events(), (std::vector<std::string>{"Change Colour"}));
    EXPECT_EQ(Raised([&] { RuntimeComboBoxListIndexSetter(menu, 0, 3); }), "OutOfBoundsException");
    EXPECT_EQ(Raised([&] { RuntimeComboBoxRemoveRow(menu, 3); }), "OutOfBoundsException");
    EXPECT_EQ(Raised([&] { RuntimeComboBoxInsertRow(menu, 3, Lit("End")); }), "");
    KelpString last = RuntimeComboBoxList(menu, 3);
    EXPECT_EQ(Str(last), "End");
    objtext::Release(last);
}

TEST_F(ListsTest, AComboBoxTakesTypedTextAndChosenRows) {
    RuntimeObject *w = MakeWindow(300, 120, [](RuntimeObject *view) {
        Add(view, "ComboBox", "Name",
            [](MassData &m) { Box(m, 10, 10, 200, 28).Text("InitialValue", "Ann\rBob"); },
            {{"Change", H(&LogChange)}, {"TextChanged", H(&LogTextChanged)}});
    });
    RuntimeObject *combo = Find(w, "Name");
    GtkWidget *entry = gtk_bin_get_child(GTK_BIN(Widget(combo)));
    Focus(w);
    ASSERT_TRUE(ClickAt(entry, 10, 10));
    Settle(60);
    Events().clear();
    Key("c");
    Key("y");
    EXPECT_EQ(TextOf(combo), "cy");
    EXPECT_EQ(Events(), (std::vector<std::string>{"TextChanged Name", "TextChanged Name"}));
    Events().clear();
    RuntimeComboBoxListIndexSetter(combo, 0, 1);
    EXPECT_EQ(TextOf(combo), "Bob");
    EXPECT_EQ(Events().front(), "Change Name");
}

} // namespace
} // namespace kelp::test
