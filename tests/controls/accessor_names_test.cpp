// The per-class accessor names, called the way an image binds them: found
// by name in the export table, then called on real controls, with what the
// widgets show read back from the toolkit.
#include "control_fixture.h"

#include "controls/embedded.h"

#include "exports/export_table.h"

#include <cstddef>
#include <cstring>
#include <sstream>

namespace kelp::test {
namespace {

// An export by name, as the function type the image calls it with.
template <typename Fn> Fn Bound(const char *name) {
    const RelocEntry *row = FindExport(name);
    EXPECT_NE(row, nullptr) << name;
    return row ? reinterpret_cast<Fn>(row->code) : nullptr;
}
using SetText = void (*)(RuntimeObject *, int32_t, KelpString);
using GetText = KelpString (*)(RuntimeObject *, int32_t);
using SetInt = void (*)(RuntimeObject *, int32_t, int32_t);
using GetInt = int32_t (*)(RuntimeObject *, int32_t);
using SetFlag = void (*)(RuntimeObject *, int32_t, uint8_t);
using GetFlag = uint8_t (*)(RuntimeObject *, int32_t);

std::string LabelText(GtkWidget *widget) {
    if (GTK_IS_FRAME(widget))
        widget = gtk_frame_get_label_widget(GTK_FRAME(widget));
    else if (GTK_IS_BIN(widget))
        widget = gtk_bin_get_child(GTK_BIN(widget));
    return widget && GTK_IS_LABEL(widget) ? gtk_label_get_text(GTK_LABEL(widget)) : "";
}

// The font the label of a captioned widget was given.
const PangoFontDescription *LabelFont(GtkWidget *widget) {
    if (GTK_IS_FRAME(widget))
        widget = gtk_frame_get_label_widget(GTK_FRAME(widget));
    else if (GTK_IS_BIN(widget))
        widget = gtk_bin_get_child(GTK_BIN(widget));
    GtkRcStyle *style = widget ? gtk_widget_get_modifier_style(widget) : nullptr;
    return style ? style->font_desc : nullptr;
}

std::string TextOf(KelpString s) {
    std::string text(objtext::View(s));
    objtext::Release(s);
    return text;
}

using AccessorNamesTest = ControlFixture;

TEST(AccessorNames, EveryNameOfTheControlFamiliesIsInTheExportTable) {
    const std::string names = R"(
pushButtonTitleGetter pushButtonTitleSetter pushButtonBoldGetter pushButtonItalicSetter
pushButtonTextFontGetter pushButtonTextSizeSetter pushButtonUnderlineGetter
pushButtonDefaultGetter pushButtonCancelGetter pushButtonPush PushButtonDestructor
radioTitleGetter radioTitleSetter radioBoldSetter radioTextFontSetter radioTextSizeGetter
radioUnderlineSetter radioDestructor checkBoxTitleGetter checkBoxTitleSetter
checkBoxItalicGetter checkBoxTextFontGetter checkBoxTextSizeSetter checkBoxDestructor
groupCaptionGetter groupCaptionSetter groupBoldGetter groupTextFontSetter
groupTextSizeGetter groupUnderlineSetter groupBoxDestructor staticCaptionSetter
StaticTextMultilineSetter StaticTextSetString StaticTextDestructor LineCreatePane
RectCreatePane OvalCreatePane RoundRectCreatePane progressValueGetter progressValueSetter
progressMaximumGetter progressMaximumSetter SliderLiveScrollSetter scrollBarDestructor
sliderDestructor tabPanelDestructor tabPanelValueGetter tabPanelValueSetter
tabPanelCaptionGetter tabPanelCaptionSetter TabPanelAppendTab TabPanelInsertTab
TabPanelRemoveTab RuntimeComboBoxCountGetter RuntimeComboBoxEmpty RuntimeComboBoxGetRow
RuntimeComboBoxGetString RuntimeComboBoxSelectionGetter RuntimeComboBoxSelectionSetter
RuntimeComboBoxBoldGetter RuntimeComboBoxItalicGetter RuntimeComboBoxUnderlineGetter
RuntimeComboBoxTextFontGetter RuntimeComboBoxTextSizeGetter controlAutoDeactivateGetter
controlLockLeftGetter controlLockLeftSetter controlLockTopGetter controlLockTopSetter
controlLockRightGetter controlLockRightSetter controlLockBottomGetter
controlLockBottomSetter controlMouseCursorSetter ControlPanelIndexGetter
ControlPanelIndexSetter RectControlDefaultConstructor RuntimeControlRefreshRect
NilCreatePane clearFocus RuntimeControlArrayItemReference windowControl
windowControlCountGetter WindowMove WindowDefaultConstructor WindowAllocateObject
paneBoolGetter paneBoolSetter paneObjGetter paneObjSetter paneStringGetter paneStringSetter
doublePercentGetter doublePercentSetter formDrawBackground WindowDockItemGetter
eWindowAutoDeactivateSetter eWindowBoolPassThroughGetter eWindowBoolPassThroughSetter
eWindowContainingWindowGettter eWindowControlGetter eWindowDisabledBalloonHelpSetter
eWindowEnabledSetter eWindowHelpTagSetter eWindowInitialParentSetter
eWindowIntPassThroughGetter eWindowParentGetter eWindowParentSetter
eWindowStringPassThroughGetter eWindowTabPanelIndexSetter StaticTextDataSourceGetter
StaticTextDataSourceSetter StaticTextDataFieldSetter CheckBoxDataSourceGetter
CheckBoxDataSourceSetter CheckBoxDataFieldSetter PopupDataSourceGetter
PopupDataSourceSetter PopupDataFieldSetter checkBoxGetBoolean checkBoxSetBoolean
checkBoxAddDataNotificationReceiver checkBoxRemoveDataNotificationReceiver popupAddDNR
popupRemoveDNR popupDataAvailable popupGetBoundPart popupRowTagAddDNR popupRowTagRemoveDNR
popupRowTagDataChanged popupRowTagDataAvailable popupRowTagGetString popupRowTagDestructor
getPopupRowTag setPopupRowTag enablingBinderBind enablingBinderReload stringBinderBind
stringBinderReload actionBinderBind)";
    std::istringstream words(names);
    std::vector<std::string> missing;
    for (std::string name; words >> name;)
        if (!FindExport(name))
            missing.push_back(name);
    EXPECT_TRUE(missing.empty()) << missing.size() << " missing, first " << missing.front();
}

TEST_F(AccessorNamesTest, CaptionsAndFontsSetByNameShowInTheWidgets) {
    RuntimeObject *w = MakeWindow(420, 200, [](RuntimeObject *view) {
        Add(view, "PushButton", "Push", [](MassData &m) { Box(m, 10, 10, 120, 28); });
        Add(view, "RadioButton", "Radio", [](MassData &m) { Box(m, 10, 50, 120, 24); });
        Add(view, "CheckBox", "Check", [](MassData &m) { Box(m, 10, 80, 120, 24); });
        Add(view, "GroupBox", "Group", [](MassData &m) { Box(m, 200, 10, 200, 150); });
    });
    struct Case {
        const char *control, *prefix, *caption, *shown;
    };
    const Case cases[] = {
        {"Push", "pushButton", "Go &now", "Go now"},
        {"Radio", "radio", "A && B", "A & B"},
        {"Check", "checkBox", "under_score", "under_score"},
        {"Group", "group", "&Answers", "Answers"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.control);
        RuntimeObject *control = Find(w, c.control);
        std::string p = c.prefix, title = p == "group" ? "Caption" : "Title";
        KelpString caption = MakeText(c.caption), font = MakeText("Liberation Serif");
        Bound<SetText>((p + title + "Setter").c_str())(control, 0, caption);
        Bound<SetText>((p + "TextFontSetter").c_str())(control, 0, font);
        Bound<SetInt>((p + "TextSizeSetter").c_str())(control, 0, 17);
        Bound<SetFlag>((p + "BoldSetter").c_str())(control, 0, 1);
        Bound<SetFlag>((p + "ItalicSetter").c_str())(control, 0, 1);
        Bound<SetFlag>((p + "UnderlineSetter").c_str())(control, 0, 1);
        Bound<SetFlag>((p + "ItalicSetter").c_str())(control, 0, 0);
        objtext::Release(caption), objtext::Release(font);

        EXPECT_EQ(LabelText(Widget(control)), c.shown);
        EXPECT_EQ(TextOf(Bound<GetText>((p + title + "Getter").c_str())(control, 0)), c.caption);
        EXPECT_EQ(TextOf(Bound<GetText>((p + "TextFontGetter").c_str())(control, 0)),
                  "Liberation Serif");
        EXPECT_EQ(Bound<GetInt>((p + "TextSizeGetter").c_str())(control, 0), 17);
        EXPECT_EQ(Bound<GetFlag>((p + "BoldGetter").c_str())(control, 0), 1);
        EXPECT_EQ(Bound<GetFlag>((p + "ItalicGetter").c_str())(control, 0), 0);
        EXPECT_EQ(Bound<GetFlag>((p + "UnderlineGetter").c_str())(control, 0), 1);
        const PangoFontDescription *shown = LabelFont(Widget(control));
        ASSERT_NE(shown, nullptr);
        EXPECT_EQ(pango_font_description_get_weight(shown), PANGO_WEIGHT_BOLD);
        EXPECT_EQ(pango_font_description_get_style(shown), PANGO_STYLE_NORMAL);
        // The size in the mapping's units for 17 points.
        FontSpec spec;
        spec.name = "Liberation Serif", spec.size = 17, spec.style = kStyleBold;
        PangoFontDescription *expected = MakeFontDescription(spec);
        EXPECT_EQ(pango_font_description_get_size(shown),
                  pango_font_description_get_size(expected));
        pango_font_description_free(expected);
        EXPECT_STREQ(pango_font_description_get_family(shown), "Liberation Serif");
    }
    RuntimeObject *push = Find(w, "Push");
    pushButtonDefaultSetter(push, 0, 1);
    EXPECT_EQ(Bound<GetFlag>("pushButtonDefaultGetter")(push, 0), 1);
    EXPECT_TRUE(GTK_WIDGET_CAN_DEFAULT(Widget(push)));
}

TEST_F(AccessorNamesTest, PanelsProgressAndListsAnswerToTheirOwnNames) {
    RuntimeObject *w = MakeWindow(420, 260, [](RuntimeObject *view) {
        Add(view, "TabPanel", "Tabs",
            [](MassData &m) { Box(m, 10, 10, 300, 150).Text("TabDefinition", "One\rTwo"); });
        Add(view, "CheckBox", "OnTab", [](MassData &m) { Box(m, 30, 60, 100, 24); });
        Add(view, "ProgressBar", "Bar",
            [](MassData &m) { Box(m, 10, 170, 200, 20).Int("Maximum", 60); });
        Add(view, "PopupMenu", "Popup",
            [](MassData &m) { Box(m, 10, 200, 150, 26).Text("InitialValue", "Red\rGreen\rBlue"); });
    });
    RuntimeObject *tabs = Find(w, "Tabs"), *onTab = Find(w, "OnTab"), *bar = Find(w, "Bar");
    RuntimeObject *popup = Find(w, "Popup");
    GtkNotebook *book = GTK_NOTEBOOK(Widget(tabs));
    auto tabText = [&](int page) {
        GtkWidget *label = gtk_notebook_get_tab_label(book, gtk_notebook_get_nth_page(book, page));
        return std::string(label ? gtk_label_get_text(GTK_LABEL(label)) : "");
    };
    KelpString three = MakeText("Three"), zero = MakeText("Zero");
    Bound<void (*)(RuntimeObject *, KelpString)>("TabPanelAppendTab")(tabs, three);
    Bound<void (*)(RuntimeObject *, int32_t, KelpString)>("TabPanelInsertTab")(tabs, 0, zero);
    objtext::Release(three), objtext::Release(zero);
    EXPECT_EQ(gtk_notebook_get_n_pages(book), 4);
    EXPECT_EQ(tabText(0), "Zero");
    EXPECT_EQ(TextOf(Bound<GetText>("tabPanelCaptionGetter")(tabs, 3)), "Three");
    Bound<void (*)(RuntimeObject *, int32_t)>("TabPanelRemoveTab")(tabs, 2);
    EXPECT_EQ(gtk_notebook_get_n_pages(book), 3);
    EXPECT_EQ(tabText(2), "Three");

    // The check box moves to the second tab: hidden while the first is up.
    Bound<SetInt>("tabPanelValueSetter")(tabs, 0, 0);
    Bound<SetInt>("ControlPanelIndexSetter")(onTab, 0, 1);
    Settle(40);
    EXPECT_EQ(Bound<GetInt>("ControlPanelIndexGetter")(onTab, 0), 1);
    EXPECT_FALSE(GTK_WIDGET_VISIBLE(Widget(onTab)));
    Bound<SetInt>("tabPanelValueSetter")(tabs, 0, 1);
    Settle(40);
    EXPECT_EQ(gtk_notebook_get_current_page(book), 1);
    EXPECT_EQ(Bound<GetInt>("tabPanelValueGetter")(tabs, 0), 1);
    EXPECT_TRUE(GTK_WIDGET_VISIBLE(Widget(onTab)));

    Bound<SetInt>("progressValueSetter")(bar, 0, 15);
    EXPECT_DOUBLE_EQ(gtk_progress_bar_get_fraction(GTK_PROGRESS_BAR(Widget(bar))), 0.25);
    EXPECT_EQ(Bound<GetInt>("progressValueGetter")(bar, 0), 15);
    EXPECT_EQ(Bound<GetInt>("progressMaximumGetter")(bar, 0), 60);

    Bound<SetInt>("RuntimeComboBoxSelectionSetter")(popup, 0, 2);
    GtkWidget *entry = GTK_COMBO(Widget(popup))->entry;
    EXPECT_STREQ(gtk_entry_get_text(GTK_ENTRY(entry)), "Blue");
    EXPECT_EQ(Bound<GetInt>("RuntimeComboBoxSelectionGetter")(popup, 0), 2);
    EXPECT_EQ(TextOf(Bound<KelpString (*)(RuntimeObject *)>("RuntimeComboBoxGetString")(popup)),
              "Blue");
    EXPECT_EQ(TextOf(Bound<GetText>("RuntimeComboBoxGetRow")(popup, 1)), "Green");
    RuntimeComboBoxStyleSetter(popup, 0, 1);
    EXPECT_EQ(Bound<GetFlag>("RuntimeComboBoxBoldGetter")(popup, 0), 1);
    EXPECT_EQ(pango_font_description_get_weight(gtk_widget_get_modifier_style(entry)->font_desc),
              PANGO_WEIGHT_BOLD);
    Bound<void (*)(RuntimeObject *)>("RuntimeComboBoxEmpty")(popup);
    EXPECT_EQ(Bound<GetInt>("RuntimeComboBoxCountGetter")(popup, 0), 0);
    EXPECT_STREQ(gtk_entry_get_text(GTK_ENTRY(entry)), "");
}

TEST_F(AccessorNamesTest, LockedControlsFollowTheWindowsEdges) {
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "PushButton", "Free", [](MassData &m) { Box(m, 10, 10, 80, 24); });
        Add(view, "PushButton", "Corner", [](MassData &m) { Box(m, 200, 160, 80, 24); });
        Add(view, "StaticText", "Wide", [](MassData &m) { Box(m, 10, 60, 280, 20); });
        Add(view, "GroupBox", "Frame", [](MassData &m) { Box(m, 10, 90, 150, 60); });
        Add(view, "CheckBox", "InFrame", [](MassData &m) { Box(m, 20, 110, 60, 24); });
    });
    struct Case {
        const char *control, *locks; // L, T, R, B
        int left, top, width, height;
    };
    const Case cases[] = {
        {"Free", "", 10, 10, 80, 24},       {"Corner", "RB", 260, 200, 80, 24},
        {"Wide", "LR", 10, 60, 340, 20},    {"Frame", "LTRB", 10, 90, 210, 100},
        {"InFrame", "RB", 80, 150, 60, 24}, // follows the frame's own growth
    };
    for (const Case &c : cases)
        for (char side : std::string(c.locks)) {
            std::string name = std::string("controlLock") + (side == 'L'   ? "Left"
                                                             : side == 'T' ? "Top"
                                                             : side == 'R' ? "Right"
                                                                           : "Bottom");
            Bound<SetFlag>((name + "Setter").c_str())(Find(w, c.control), 0, 1);
            EXPECT_EQ(Bound<GetFlag>((name + "Getter").c_str())(Find(w, c.control), 0), 1);
        }
    Bound<void (*)(RuntimeObject *, int32_t, int32_t, int32_t, int32_t)>("WindowMove")(w, 120, 110,
                                                                                       360, 240);
    Settle(300);
    for (const Case &c : cases) {
        SCOPED_TRACE(c.control);
        GtkAllocation a = Widget(Find(w, c.control))->allocation;
        EXPECT_EQ(a.x, c.left);
        EXPECT_EQ(a.y, c.top);
        EXPECT_EQ(a.width, c.width);
        EXPECT_EQ(a.height, c.height);
        EXPECT_EQ(ctlPosGetter(Find(w, c.control), 0), c.left);
        EXPECT_EQ(ctlPosGetter(Find(w, c.control), 2), c.width);
    }
}

void ContainerLayout(RuntimeObject *self) {
    auto *v = reinterpret_cast<ViewRecord *>(self);
    v->left = 40, v->top = 30, v->width = 150, v->height = 80;
}

TEST_F(AccessorNamesTest, TheWindowsControlsByNumberByArrayAndThroughAContainer) {
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        for (int i = 0; i < 2; ++i)
            Add(view, "PushButton", "Opt",
                [i](MassData &m) { Box(m, 10 + 100 * i, 150, 80, 24).Int("Index", i); });
        RuntimeClass *klass = MakeSubclass("ContainerControl", "ccPlain");
        SetEventHandler(klass, "Layout", H(&ContainerLayout));
        RuntimeObject *cc = RuntimeNewObject(klass);
        KelpString key = MakeText("Box");
        WindowAddControl(view, key, cc);
        objtext::Release(key);
        RuntimeUnlockObject(cc);
    });
    EXPECT_EQ(Bound<GetInt>("windowControlCountGetter")(w, 0), 2) << "the container isn't one";
    auto control = Bound<RuntimeObject *(*)(RuntimeObject *, int32_t)>("windowControl");
    RuntimeObject *second = control(w, 1);
    EXPECT_EQ(second, Find(w, "Opt$1"));
    RuntimeUnlockObject(second);
    EXPECT_EQ(Raised([&] { EXPECT_EQ(control(w, 2), nullptr); }), "OutOfBoundsException");
    KelpString opt = MakeText("Opt");
    auto item = Bound<RuntimeObject *(*)(RuntimeObject *, KelpString, int32_t)>(
        "RuntimeControlArrayItemReference");
    RuntimeObject *first = item(w, opt, 0);
    EXPECT_EQ(first, Find(w, "Opt$0"));
    EXPECT_EQ(item(w, opt, 2), nullptr);
    RuntimeUnlockObject(first);
    objtext::Release(opt);

    RuntimeObject *cc = Find(w, "Box");
    auto passInt = Bound<GetInt>("eWindowIntPassThroughGetter");
    EXPECT_EQ(passInt(cc, 0), 40);
    EXPECT_EQ(passInt(cc, 3), 80);
    RuntimeObject *standIn =
        Bound<RuntimeObject *(*)(RuntimeObject *, int32_t)>("eWindowControlGetter")(cc, 0);
    ASSERT_EQ(standIn, EmbeddedControlOf(cc));
    RuntimeUnlockObject(standIn);
    GtkWidget *shown = Widget(standIn);
    ASSERT_NE(shown, nullptr);
    EXPECT_TRUE(GTK_WIDGET_VISIBLE(shown));
    Bound<SetFlag>("eWindowBoolPassThroughSetter")(cc, offsetof(RuntimeControl, visible), 0);
    EXPECT_FALSE(GTK_WIDGET_VISIBLE(shown));
    EXPECT_EQ(Bound<GetFlag>("eWindowBoolPassThroughGetter")(cc, offsetof(RuntimeControl, visible)),
              0);
    RuntimeObject *host = Bound<RuntimeObject *(*)(RuntimeObject *, int32_t)>(
        "eWindowContainingWindowGettter")(cc, 0);
    EXPECT_EQ(host, w);
    RuntimeUnlockObject(host);

    // _DrawBackground paints the back colour through a Graphics of the window.
    windowHasBackColorSetter(w, 0, 1);
    windowBackColorSetter(w, 0, 0x3366cc);
    RuntimeObject *g = windowGraphicsGetter(w, 0);
    Bound<void (*)(RuntimeObject *, RuntimeObject *, int32_t, int32_t)>("formDrawBackground")(w, g,
                                                                                              0, 0);
    gdk_flush();
    EXPECT_EQ(Pixel(w, 280, 20), 0x3366ccu);
    RuntimeUnlockObject(g);

    // An object of the layout made through the window is its child; a
    // percentage is kept as a fraction.
    RuntimeObject *made = Bound<RuntimeObject *(*)(RuntimeObject *, RuntimeClass *)>(
        "WindowAllocateObject")(w, Find(w, "Opt$0")->klass);
    EXPECT_EQ(Ctl(made)->isWindowChild, 1);
    const int32_t at = offsetof(RuntimeControl, bounds); // eight bytes the test may use
    Bound<void (*)(RuntimeObject *, int32_t, double)>("doublePercentSetter")(made, at, 37.5);
    double fraction;
    std::memcpy(&fraction, &Ctl(made)->bounds, sizeof fraction);
    EXPECT_DOUBLE_EQ(fraction, 0.375);
    EXPECT_DOUBLE_EQ(Bound<double (*)(RuntimeObject *, int32_t)>("doublePercentGetter")(made, at),
                     37.5);
    RuntimeUnlockObject(made);

    // ClearFocus takes the keyboard from the focused button, in the
    // toolkit's window as well.
    Focus(w);
    RuntimeSetFocus(Find(w, "Opt$0"));
    Settle(40);
    ASSERT_NE(FocusPane(), nullptr);
    Bound<void (*)()>("clearFocus")();
    EXPECT_EQ(FocusPane(), nullptr);
    EXPECT_EQ(gtk_window_get_focus(GTK_WINDOW(gtk_widget_get_toplevel(Fixed(w)))), nullptr);
}

} // namespace
} // namespace kelp::test
