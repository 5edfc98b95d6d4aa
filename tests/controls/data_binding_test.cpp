// Data binding between real controls: a check box and a popup menu tell
// their receivers (objects of the language) when a person changes them,
// a popup's row-tag part provides the chosen row's tag, and controls bound
// to these sources follow them: a button's Enabled, a label's text.
#include "control_fixture.h"

#include "support/class_kit.h"

namespace kelp::test {
namespace {

// An object of a language class that implements one interface with one
// method: `code`.
RuntimeObject *NewImplementer(const char *klassName, const char *iface, void *code) {
    RuntimeClass *c = MakeClass(nullptr, klassName, sizeof(RuntimeObject) + 8, 0, 1);
    c->interfaceTable[0] = {RuntimeLookupClass(Lit(iface)), 1, RuntimeNewVtable(1)};
    c->interfaceTable[0].methodTable[0].code = code;
    return RuntimeNewObject(c);
}

int gTold = 0;
void DataChanged(RuntimeObject *) { ++gTold; }
KelpString TagText(RuntimeObject *) { return objtext::Make("tagged"); }

using DataBindingTest = ControlFixture;

TEST_F(DataBindingTest, SourcesTellTheirReceiversAndBoundControlsFollow) {
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "CheckBox", "Agree", [](MassData &m) { Box(m, 10, 10, 120, 24); });
        Add(view, "PopupMenu", "Choice",
            [](MassData &m) { Box(m, 10, 50, 150, 26).Text("InitialValue", "Red\rGreen\rBlue"); });
        Add(view, "StaticText", "Shown", [](MassData &m) { Box(m, 10, 90, 200, 20); });
        Add(view, "PushButton", "Next", [](MassData &m) { Box(m, 10, 130, 80, 26); });
    });
    RuntimeObject *agree = Find(w, "Agree"), *choice = Find(w, "Choice");
    RuntimeObject *shown = Find(w, "Shown"), *next = Find(w, "Next");
    RuntimeObject *receiver =
        NewImplementer("dnrCount", "dataNotificationReceiver", H(&DataChanged));
    RuntimeObject *tag = NewImplementer("tagText", "StringProvider", H(&TagText));
    RuntimeComboBoxRowTagSetter(choice, 2, tag);
    checkBoxAddDataNotificationReceiver(agree, receiver);
    popupAddDNR(choice, receiver);
    KelpString rowTag = MakeText("rowTag");
    RuntimeObject *part = popupGetBoundPart(choice, rowTag);
    objtext::Release(rowTag);
    ASSERT_NE(part, nullptr);
    popupRowTagAddDNR(part, receiver);
    enablingBinderBind(next, agree);
    stringBinderBind(shown, part);
    EXPECT_FALSE(GTK_WIDGET_SENSITIVE(Widget(next))) << "the box starts unchecked";

    struct Case {
        const char *what;
        std::function<void()> act;
        int told; // DataChanged calls the act caused
        bool agreed, nextEnabled, available;
        const char *label; // Shown's text
    };
    const Case cases[] = {
        {"a click checks the box", [&] { Click(w, agree); }, 1, true, true, false, ""},
        {"setBoolean unchecks it", [&] { checkBoxSetBoolean(agree, 0); }, 1, false, false, false,
         ""},
        {"a row without a tag", [&] { RuntimeComboBoxListIndexSetter(choice, 0, 0); }, 2, false,
         false, false, ""},
        {"the tagged row", [&] { RuntimeComboBoxListIndexSetter(choice, 0, 2); }, 2, false, false,
         true, "tagged"},
        {"unbound, the button stays",
         [&] {
             enablingBinderBind(next, nullptr);
             checkBoxSetBoolean(agree, 1);
         },
         1, true, false, true, "tagged"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        gTold = 0;
        c.act();
        Settle(40);
        EXPECT_EQ(gTold, c.told);
        EXPECT_EQ(checkBoxGetBoolean(agree), c.agreed);
        EXPECT_EQ(gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(Widget(agree))), c.agreed);
        EXPECT_EQ(GTK_WIDGET_SENSITIVE(Widget(next)), c.nextEnabled);
        EXPECT_EQ(popupRowTagDataAvailable(part), c.available);
        EXPECT_STREQ(gtk_label_get_text(GTK_LABEL(Widget(shown))), c.label);
    }
    KelpString text = popupRowTagGetString(part);
    EXPECT_EQ(objtext::View(text), "tagged");
    objtext::Release(text);

    StaticTextDataSourceSetter(shown, 0, agree);
    RuntimeObject *source = StaticTextDataSourceGetter(shown, 0);
    EXPECT_EQ(source, agree);
    RuntimeUnlockObject(source);
    // Everything goes with the window: the parts, bindings and receivers
    // hold nothing that outlives it (the sanitizer build counts).
    RuntimeUnlockObject(part);
    RuntimeUnlockObject(receiver);
    RuntimeUnlockObject(tag);
}

} // namespace
} // namespace kelp::test
