// The receivers of a control's action, told before or after its Action
// event as each class says, by real clicks; and the fonts of the tab
// panel's captions and of the popup menu's text, as the widgets show them.
#include "control_fixture.h"

#include "support/class_kit.h"

namespace kelp::test {
namespace {

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
        RuntimeClass *c = MakeClass(nullptr, "rcvLog", sizeof(ReceiverRecord), 0, 1);
        RuntimeClass *iface = RuntimeLookupClass(Lit("actionNotificationReceiver"));
        c->interfaceTable[0] = {iface, 1, RuntimeNewVtable(1)};
        c->interfaceTable[0].methodTable[0].code = reinterpret_cast<void *>(&Perform);
        return c;
    }();
    RuntimeObject *r = RuntimeNewObject(klass);
    reinterpret_cast<ReceiverRecord *>(r)->tag = tag;
    return r;
}

using ReceiversAndFontsTest = ControlFixture;

TEST_F(ReceiversAndFontsTest, ReceiversHearEachSideOfAControlsActionInOrder) {
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "PushButton", "Push", [](MassData &m) { Box(m, 10, 10, 90, 24); },
            {{"Action", H(&LogAction)}});
        Add(view, "CheckBox", "Check", [](MassData &m) { Box(m, 10, 50, 120, 24); },
            {{"Action", H(&LogAction)}});
        Add(view, "RadioButton", "RadioA", [](MassData &m) { Box(m, 10, 90, 120, 24); },
            {{"Action", H(&LogAction)}});
        Add(view, "RadioButton", "RadioB", [](MassData &m) { Box(m, 10, 120, 120, 24); },
            {{"Action", H(&LogAction)}});
    });
    RuntimeObject *r1 = NewReceiver(1), *r2 = NewReceiver(2), *r3 = NewReceiver(3);
    RuntimeObject *push = Find(w, "Push"), *check = Find(w, "Check");
    RuntimeObject *radioA = Find(w, "RadioA"), *radioB = Find(w, "RadioB");
    pbAddActionNotificationReceiver(push, r1);
    pbAddActionNotificationReceiver(push, r2);
    pbAddActionNotificationReceiver(push, r3);
    pbRemoveActionNotificationReceiver(push, r3);
    pbAddActionNotificationReceiver(push, w); // a window is no receiver: left out
    KelpString on = MakeText("getCheckedAction"), off = MakeText("getUncheckedAction");
    KelpString bad = MakeText("getSomethingElse");
    RuntimeObject *checkOn = checkBoxGetBoundPart(check, on),
                  *checkOff = checkBoxGetBoundPart(check, off);
    RuntimeObject *radioAOff = radioGetBoundPart(radioA, off),
                  *radioBOn = radioGetBoundPart(radioB, on);
    EXPECT_EQ(radioGetBoundPart(radioA, bad), nullptr);
    cbaAddActionNotificationReceiver(checkOn, r1);
    cbaAddActionNotificationReceiver(checkOff, r2);
    rbaAddActionNotificationReceiver(radioAOff, r3);
    rbaAddActionNotificationReceiver(radioBOn, r2);
    // The parts may go: the control keeps its receivers.
    for (RuntimeObject *part : {checkOn, checkOff, radioAOff, radioBOn})
        RuntimeUnlockObject(part);
    for (KelpString s : {on, off, bad})
        objtext::Release(s);

    struct Case {
        RuntimeObject *control;
        std::vector<std::string> events;
    };
    const Case cases[] = {
        // Newest receiver first, all before the button's Action.
        {push, {"Perform 2", "Perform 1", "Action Push"}},
        // A toggle's receivers come after its Action, by the side it went to.
        {check, {"Action Check", "Perform 1"}},
        {check, {"Action Check", "Perform 2"}},
        {radioA, {"Action RadioA"}},
        // A leaves the group's choice: its unchecked side hears of it.
        {radioB, {"Perform 3", "Action RadioB", "Perform 2"}},
    };
    for (const Case &c : cases) {
        Events().clear();
        Click(w, c.control);
        EXPECT_EQ(Events(), c.events) << NameOf(c.control);
    }
    for (RuntimeObject *r : {r1, r2, r3})
        RuntimeUnlockObject(r);
}

TEST_F(ReceiversAndFontsTest, TabCaptionsAndPopupTextTakeTheirFont) {
    RuntimeObject *w = MakeWindow(320, 220, [](RuntimeObject *view) {
        Add(view, "TabPanel", "Tabs", [](MassData &m) {
            Box(m, 10, 10, 300, 120).Text("TabDefinition", "One\rTwo").Int("TextSize", 18);
        });
        Add(view, "PopupMenu", "Popup", [](MassData &m) {
            Box(m, 10, 150, 150, 28).Text("InitialValue", "Red\rGreen").Int("TextSize", 16);
        });
    });
    RuntimeObject *tabs = Find(w, "Tabs"), *popup = Find(w, "Popup");
    tabPanelStyleSetter(tabs, 0, 1); // Bold
    KelpString three = MakeText("Three");
    PagePanelAppendPage(tabs, three); // a later tab takes the font too
    objtext::Release(three);
    RuntimeComboBoxStyleSetter(popup, 1, 1); // Italic
    RuntimeComboBoxTextSizeSetter(popup, 0, 20);
    Settle(40);
    auto font = [](GtkWidget *widget) { return gtk_widget_get_style(widget)->font_desc; };
    GtkNotebook *book = GTK_NOTEBOOK(Widget(tabs));
    ASSERT_EQ(gtk_notebook_get_n_pages(book), 3);
    for (int i = 0; i < 3; ++i) {
        GtkWidget *label = gtk_notebook_get_tab_label(book, gtk_notebook_get_nth_page(book, i));
        // The language's sizes are pixels.
        EXPECT_EQ(pango_font_description_get_size(font(label)), 18 * PANGO_SCALE) << i;
        EXPECT_TRUE(pango_font_description_get_size_is_absolute(font(label))) << i;
        EXPECT_EQ(pango_font_description_get_weight(font(label)), PANGO_WEIGHT_BOLD) << i;
    }
    GtkWidget *entry = GTK_COMBO(Widget(popup))->entry;
    EXPECT_EQ(pango_font_description_get_size(font(entry)), 20 * PANGO_SCALE);
    EXPECT_EQ(pango_font_description_get_style(font(entry)), PANGO_STYLE_ITALIC);
}

} // namespace
} // namespace kelp::test
