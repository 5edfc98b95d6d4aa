// A focused field and the standard Edit items of a real menu bar: which
// items the cycle leaves on, who hears EnableMenuItems in which order, and
// the items, chosen with the mouse, moving text through the X clipboard.
#include "controls/control_fixture.h"
#include "field_text.h"
#include "run_aside.h"

#include "menus/menu.h"
#include "menus/window_bars.h"

#include "kelp/edit_fields.h"
#include "kelp/menus.h"
#include "kelp/runloop.h"
#include "kelp/windows.h"

namespace kelp::test {
namespace {

void FieldEnable(RuntimeObject *) { Events().push_back("Field"); }
void WindowEnable(RuntimeObject *) { Events().push_back("Window"); }
void AppEnable(RuntimeObject *) { Events().push_back("App"); }

const char *const kNames[] = {"EditCut", "EditCopy", "EditPaste", "EditClear", "EditSelectAll"};

class EditMenuTest : public ControlFixture {
protected:
    void SetUp() override {
        ControlFixture::SetUp();
        if (IsSkipped())
            return;
        RuntimeClass *appClass = MakeSubclass("Application", "App");
        SetEventHandler(appClass, "EnableMenuItems", H(&AppEnable));
        mApp = RuntimeNewObject(appClass);
        RuntimeRegisterAppObject(mApp);
        mBar = RuntimeNewObject(RuntimeLookupClass(Lit("MenuBar")));
        mEdit = RuntimeNewObject(RuntimeLookupClass(Lit("MenuItem")));
        RuntimeMenuItemTextSetter(mEdit, 0, Lit("Edit"));
        RuntimeMenuItemAppend(mBar, mEdit);
        for (const char *name : kNames) {
            RuntimeObject *item = RuntimeNewObject(RuntimeLookupClass(Lit("MenuItem")));
            RuntimeMenuItemNameSetter(item, 0, Lit(name));
            RuntimeMenuItemTextSetter(item, 0, Lit(name + 4));
            RuntimeMenuItemAppend(mEdit, item);
            mItems.push_back(item);
        }
    }

    void TearDown() override {
        ControlFixture::TearDown();
        if (!mApp)
            return;
        ReleaseRegisteredApplication();
        for (RuntimeObject *o : mItems)
            RuntimeUnlockObject(o);
        RuntimeUnlockObject(mEdit);
        RuntimeUnlockObject(mBar);
        RuntimeUnlockObject(mApp);
    }

    // A window showing the bar, with one focused field `F` holding `text`.
    RuntimeObject *Field(const std::function<void(MassData &)> &properties, const char *text) {
        mView = MakeWindow(360, 160,
                           [&](RuntimeObject *view) {
                               Add(view, "EditField", "F",
                                   [&](MassData &m) {
                                       Box(m, 10, 10, 300, 60);
                                       properties(m);
                                   },
                                   {{"EnableMenuItems", H(&FieldEnable)}});
                           },
                           {{"EnableMenuItems", H(&WindowEnable)}});
        WindowMenuBarSetter(mView, 0, mBar);
        Settle(150);
        Focus(mView);
        RuntimeObject *f = Find(mView, "F");
        KelpString s = Utf8(text);
        editTextSetter(f, 0, s);
        objtext::Release(s);
        Click(mView, f, 20);
        return f;
    }

    void Select(RuntimeObject *f, int32_t start, int32_t length) {
        editSelStartSetter(f, 0, start);
        editSelLengthSetter(f, 0, length);
    }

    // A press on the Edit title runs the cycle and opens the menu.
    void OpenEdit() {
        XMenuGTK *title = WindowBarClone(View(mView)->pane)->Native(0);
        GtkWidget *widget = title->ItemWidget();
        ASSERT_TRUE(ClickAt(widget, widget->allocation.width / 2, widget->allocation.height / 2));
        ASSERT_TRUE(SettleUntil([&] { return GTK_WIDGET_MAPPED(title->MenuWidget()); }));
        Settle(80);
    }
    void Choose(int item) {
        OpenEdit();
        GtkWidget *widget =
            WindowBarClone(View(mView)->pane)->Native(0)->Native(item)->ItemWidget();
        ASSERT_TRUE(ClickAt(widget, widget->allocation.width / 2, widget->allocation.height / 2));
        Settle(150);
    }
    std::vector<std::string> EnabledItems() {
        std::vector<std::string> on;
        for (size_t i = 0; i < mItems.size(); ++i)
            if (RuntimeMenuItemEnabledGetter(mItems[i], 0))
                on.push_back(kNames[i] + 4);
        return on;
    }

    RuntimeObject *mApp = nullptr, *mBar = nullptr, *mEdit = nullptr, *mView = nullptr;
    std::vector<RuntimeObject *> mItems;
};

TEST_F(EditMenuTest, TheFocusedFieldEnablesWhatItCanServeBeforeItsHoldersHear) {
    struct Case {
        const char *what;
        bool multiLine, password, readOnly, textOnClipboard;
        int32_t selLength;
        std::vector<std::string> enabled;
    } cases[] = {
        {"no selection", false, false, false, true, 0, {"Paste", "SelectAll"}},
        {"a selection",
         false,
         false,
         false,
         true,
         5,
         {"Cut", "Copy", "Paste", "Clear", "SelectAll"}},
        {"password", false, true, false, true, 5, {"Paste", "Clear", "SelectAll"}},
        // Several lines show their text even with Password set.
        {"password, several lines",
         true,
         true,
         false,
         true,
         5,
         {"Cut", "Copy", "Paste", "Clear", "SelectAll"}},
        {"read-only", false, false, true, true, 5, {"Cut", "Copy", "Clear", "SelectAll"}},
        {"a picture on the clipboard",
         false,
         false,
         false,
         false,
         5,
         {"Cut", "Copy", "Clear", "SelectAll"}},
    };
    for (const Case &c : cases) {
        if (c.textOnClipboard)
            RunAside("printf outside | xclip -selection clipboard -i");
        else
            RunAside("printf '\\211PNG' | xclip -selection clipboard -t image/png -i");
        RuntimeObject *f = Field(
            [&](MassData &m) {
                m.Bool("MultiLine", c.multiLine).Bool("Password", c.password);
                m.Bool("ReadOnly", c.readOnly);
            },
            "hello world");
        Select(f, 0, c.selLength);
        Events().clear();
        OpenEdit();
        EXPECT_EQ(EnabledItems(), c.enabled) << c.what;
        EXPECT_EQ(Events(), (std::vector<std::string>{"Field", "Window", "App"})) << c.what;
        Key("Escape");
        RuntimeCloseWindow(mView);
        Settle(50);
    }
}

TEST_F(EditMenuTest, ChosenItemsMoveTextThroughTheRealClipboard) {
    RunAside("printf outside | xclip -selection clipboard -i");
    RuntimeObject *f = Field([](MassData &) {}, "hello world");
    struct Case {
        int item; // in kNames
        int32_t selStart, selLength;
        const char *text, *clipboard, *selected;
    } cases[] = {
        {2, 11, 0, "hello worldoutside", "outside", ""}, // from another program
        {1, 6, 5, "hello worldoutside", "world", "world"},
        {2, 0, 5, "world worldoutside", "world", ""},
        {0, 0, 6, "worldoutside", "world ", ""},
        {3, 5, 7, "world", "world ", ""},
        {4, 0, 0, "world", "world ", "world"},
    };
    for (const Case &c : cases) {
        Select(f, c.selStart, c.selLength);
        Choose(c.item);
        EXPECT_EQ(Taken(editTextGetter(f, 0)), c.text) << kNames[c.item];
        EXPECT_EQ(RunAside("xclip -selection clipboard -o"), c.clipboard) << kNames[c.item];
        EXPECT_EQ(Taken(editSelTextGetter(f, 0)), c.selected) << kNames[c.item];
    }
}

} // namespace
} // namespace kelp::test
