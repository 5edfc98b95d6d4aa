// Edit fields on a real X server: keys typed by xdotool, the events' log,
// masks and limits, selection and the clipboard as xclip sees it, styles
// through their byte form.
#include "controls/control_fixture.h"
#include "field_text.h"
#include "run_aside.h"

#include "edit_fields/edit_pane.h"
#include "edit_fields/mask.h"
#include "edit_fields/styled_text.h"
#include "strings/kstring.h"

#include "kelp/edit_fields.h"

#include <cstring>
#include <filesystem>
#include <fstream>

namespace kelp::test {
namespace {

void LogGotFocus(RuntimeObject *me) { Events().push_back("GotFocus " + NameOf(me)); }
void LogLostFocus(RuntimeObject *me) { Events().push_back("LostFocus " + NameOf(me)); }
void LogTextChange(RuntimeObject *) { Events().push_back("TextChange"); }
void LogSelChange(RuntimeObject *) { Events().push_back("SelChange"); }
// Swallows "x", so it never reaches the text.
uint8_t FilterKey(RuntimeObject *, KelpString key) {
    std::string k(objtext::View(key));
    Events().push_back("KeyDown " + k);
    return k == "x";
}
void LogInvalid(RuntimeObject *, KelpString text, int32_t at) {
    Events().push_back("ValidationError " + std::string(objtext::View(text)) + " " +
                       std::to_string(at));
}

std::string Text(RuntimeObject *field) { return Taken(editTextGetter(field, 0)); }

void SetText(RuntimeObject *field, std::string_view text) {
    KelpString s = Utf8(text);
    editTextSetter(field, 0, s);
    objtext::Release(s);
}

class EditFieldTest : public ControlFixture {
protected:
    // A window with one field `F` of the given properties and a second
    // field to take the focus away.
    RuntimeObject *Field(const std::function<void(MassData &)> &properties,
                         std::initializer_list<Handler> handlers = {}) {
        mView = MakeWindow(360, 220, [&](RuntimeObject *view) {
            Add(
                view, "EditField", "F",
                [&](MassData &m) {
                    Box(m, 10, 10, 300, 120);
                    properties(m);
                },
                handlers);
            Add(view, "EditField", "G", [](MassData &m) { Box(m, 10, 150, 300, 24); });
        });
        Focus(mView);
        return Find(mView, "F");
    }
    void ClickField(RuntimeObject *field) { Click(mView, field, 20); }
    void Type(const std::string &text) {
        ASSERT_TRUE(XDoTool("type --delay 30 '" + text + "'"));
        Settle(120);
    }
    RuntimeObject *mView = nullptr;
};

TEST(EditMask, WalksInputAgainstTheMask) {
    struct Case {
        const char *input, *mask;
        MaskResult result;
        const char *text, *tail;
    } cases[] = {
        {"", "(###)", MaskResult::kAccepted, "", "("},
        {"(12", "(###)", MaskResult::kAccepted, "(12", ""},
        {"(123", "(###)", MaskResult::kAccepted, "(123", ")"},
        {"1", "(###)", MaskResult::kRejected, "", ""}, // a digit where "(" is due
        {"(1a", "(###)", MaskResult::kRejected, "(1", ""},
        {"12", "99#", MaskResult::kAccepted, "12", ""}, // "9" may stay empty
        {"a1", "a#", MaskResult::kAccepted, "a1", ""},
        {"-", "a#", MaskResult::kRejected, "", ""},
        {"abc", "??", MaskResult::kRejected, "ab", ""},         // longer than the mask
        {"abcDEF", ">??", MaskResult::kAccepted, "ABCDEF", ""}, // case forcing takes the rest
        {"ÄB", "<??", MaskResult::kAccepted, "äb", ""},
        {"1", "\\##", MaskResult::kRejected, "", ""},
        {"#1", "\\##", MaskResult::kAccepted, "#1", ""},
        {"1", "#\\", MaskResult::kAccepted, "1", ""},
        {"12", "#\\", MaskResult::kRejected, "1", ""},             // a trailing backslash fails
        {"\xff\xfe", "&&", MaskResult::kAccepted, "\xff\xfe", ""}, // bad bytes, one each
        {"\x01", "C", MaskResult::kRejected, "", ""},
        {"1", "~#", MaskResult::kInvalidMask, "", ""},
    };
    for (const Case &c : cases) {
        MaskOutcome out = ApplyMask(c.input, c.mask);
        EXPECT_EQ(out.result, c.result) << c.input << " / " << c.mask;
        EXPECT_EQ(out.text, c.text) << c.input << " / " << c.mask;
        EXPECT_EQ(out.tail, c.tail) << c.input << " / " << c.mask;
    }
}

TEST_F(EditFieldTest, TypingFiresKeyDownTextChangeAndSelChangeInOrder) {
    RuntimeObject *f = Field([](MassData &) {}, {{"KeyDown", H(&FilterKey)},
                                                 {"TextChange", H(&LogTextChange)},
                                                 {"SelChange", H(&LogSelChange)},
                                                 {"GotFocus", H(&LogGotFocus)},
                                                 {"LostFocus", H(&LogLostFocus)}});
    // The window gave F the focus when it came up.
    ClickField(f);
    Type("axb");
    Key("Tab");
    EXPECT_EQ(Text(f), "ab");
    std::vector<std::string> expected = {"GotFocus F", "KeyDown a",  "TextChange", "SelChange",
                                         "KeyDown x",  "KeyDown b",  "TextChange", "SelChange",
                                         "KeyDown \t", "LostFocus F"};
    EXPECT_EQ(Events(), expected);
}

TEST_F(EditFieldTest, MasksAndLimitsShapeTypedText) {
    struct Case {
        const char *mask;
        int32_t limit;
        const char *typed, *text;
        std::vector<std::string> log;
    } cases[] = {
        {"(###)", 0, "12a3", "(123)", {"ValidationError (12a 4"}},
        {">??9", 0, "ab3", "AB3", {}},
        {"##", 0, "123", "12", {"ValidationError 123 3"}},
        {"", 4, "abcdef", "abcd", {}},
    };
    for (const Case &c : cases) {
        RuntimeObject *f = Field(
            [&](MassData &m) {
                m.Bool("MultiLine", false).Int("LimitText", c.limit);
                if (*c.mask)
                    m.Text("Mask", c.mask);
            },
            {{"ValidationError", H(&LogInvalid)}});
        ClickField(f);
        Events().clear();
        Type(c.typed);
        EXPECT_EQ(Text(f), c.text) << c.mask;
        EXPECT_EQ(Events(), c.log) << c.mask;
        if (*c.mask) { // Backspace is an edit through the mask as well
            Key("BackSpace");
            EXPECT_EQ(Text(f), std::string(c.text).substr(0, strlen(c.text) - 1)) << c.mask;
        }
        RuntimeCloseWindow(mView);
        Settle(30);
    }
}

TEST_F(EditFieldTest, SelectionAndClipboardKeysMeetTheRealClipboard) {
    RuntimeObject *f =
        Field([](MassData &m) { m.Bool("MultiLine", true); }, {{"SelChange", H(&LogSelChange)}});
    SetText(f, "hello\rworld");
    ClickField(f);
    // Negative and huge values are clamped, not passed on.
    struct Sel {
        int32_t start, length;
        const char *text;
    } sels[] = {{6, 5, "world"}, {-5, 3, "hel"}, {2, -4, ""}, {9, 1000, "ld"}};
    for (const Sel &s : sels) {
        editSelStartSetter(f, 0, s.start);
        editSelLengthSetter(f, 0, s.length);
        KelpString sel = editSelTextGetter(f, 0);
        EXPECT_EQ(objtext::View(sel), s.text) << s.start << "," << s.length;
        objtext::Release(sel);
        // The selection as a Range holds the clamped span, not the asked one.
        RuntimeObject *range = TextRangeGetter(f, 0);
        ASSERT_NE(range, nullptr);
        const auto *r = reinterpret_cast<const RangeRecord *>(range);
        EXPECT_EQ(r->startPos, editSelStartGetter(f, 0));
        EXPECT_EQ(r->length, static_cast<int32_t>(std::strlen(s.text)));
        RuntimeUnlockObject(range);
    }
    editSelStartSetter(f, 0, 6);
    editSelLengthSetter(f, 0, 5);
    Key("ctrl+c");
    EXPECT_EQ(RunAside("xclip -selection clipboard -o"), "world");
    Key("ctrl+End");
    Key("ctrl+v");
    EXPECT_EQ(Text(f), "hello\rworldworld");
    Key("ctrl+a");
    Key("ctrl+x");
    EXPECT_EQ(Text(f), "");
    EXPECT_EQ(RunAside("xclip -selection clipboard -o"), "hello\nworldworld");
    // 200 KB from another program, pasted whole.
    std::string big;
    for (int i = 0; big.size() < (200 << 10); ++i)
        big += "line " + std::to_string(i) + "\n";
    std::ofstream("big.txt") << big;
    RunAside("xclip -selection clipboard -i big.txt");
    Key("ctrl+v");
    EXPECT_EQ(Text(f).size(), big.size());
}

TEST_F(EditFieldTest, BadTextAndPasswordsStayInTheField) {
    RuntimeObject *f =
        Field([](MassData &m) { m.Bool("Password", true).Bool("MultiLine", false); });
    // Bytes that are no UTF-8 are shown replaced, never handed to the toolkit.
    KelpString bad = string::FromBytes("ab\xff\xfe"
                                       "c",
                                       5, kEncodingUTF8)
                         .ExtractStringStorage();
    editTextSetter(f, 0, bad);
    objtext::Release(bad);
    EXPECT_EQ(Text(f), "ab\xef\xbf\xbd\xef\xbf\xbd"
                       "c");
    EXPECT_FALSE(gtk_entry_get_visibility(GTK_ENTRY(Widget(f))));
    RunAside("printf before | xclip -selection clipboard -i");
    editSelectAll(f);
    editCopyToClipboard(f);
    EXPECT_EQ(RunAside("xclip -selection clipboard -o"), "before");
}

void CloseOwnWindow(RuntimeObject *me) {
    Events().push_back("TextChange, closing");
    RuntimeCloseWindow(Ctl(me)->view);
}

// A handler that closes the field's window while a paste inserts: the
// field finishes its key without touching what is gone.
TEST_F(EditFieldTest, PasteIntoAFieldWhoseHandlerClosesItsWindow) {
    RuntimeObject *f =
        Field([](MassData &m) { m.Bool("MultiLine", true); }, {{"TextChange", H(&CloseOwnWindow)}});
    RunAside("printf pasted | xclip -selection clipboard -i");
    ClickField(f);
    Key("ctrl+v");
    Settle(50);
    EXPECT_EQ(Events(), std::vector<std::string>{"TextChange, closing"});
    EXPECT_EQ(View(mView)->pane, nullptr);
}

// What each property does to the widget, read back from the toolkit.
TEST_F(EditFieldTest, PropertiesReachTheWidgets) {
    struct Case {
        bool multiLine;
        std::function<void(RuntimeObject *)> set;
        std::function<bool(GtkWidget *)> holds;
        const char *what;
    } cases[] = {
        {false, [](RuntimeObject *f) { editReadOnlySetter(f, 0, 1); },
         [](GtkWidget *w) { return !gtk_editable_get_editable(GTK_EDITABLE(w)); }, "ReadOnly"},
        {false, [](RuntimeObject *f) { EditAlignmentSetter(f, 0, 2); },
         [](GtkWidget *w) { return gtk_entry_get_alignment(GTK_ENTRY(w)) == 1.0f; }, "Alignment"},
        {false, [](RuntimeObject *f) { editLimitTextSetter(f, 0, 7); },
         [](GtkWidget *w) { return gtk_entry_get_max_length(GTK_ENTRY(w)) == 7; }, "LimitText"},
        {true, [](RuntimeObject *f) { EditAlignmentSetter(f, 0, 1); },
         [](GtkWidget *w) {
             GtkTextView *v = GTK_TEXT_VIEW(gtk_bin_get_child(GTK_BIN(w)));
             return gtk_text_view_get_justification(v) == GTK_JUSTIFY_CENTER;
         },
         "Alignment, several lines"},
        {true, [](RuntimeObject *f) { editScrollBarSetter(f, 0, 0); },
         [](GtkWidget *w) {
             GtkPolicyType h, v;
             gtk_scrolled_window_get_policy(GTK_SCROLLED_WINDOW(w), &h, &v);
             return v == GTK_POLICY_NEVER;
         },
         "ScrollBar"},
        {true, [](RuntimeObject *f) { editTextColorSetter(f, 0, 0x00ff00); },
         [](GtkWidget *w) {
             GtkWidget *v = gtk_bin_get_child(GTK_BIN(w));
             return gtk_widget_get_style(v)->text[GTK_STATE_NORMAL].green == 0xffff &&
                    gtk_widget_get_style(v)->text[GTK_STATE_NORMAL].red == 0;
         },
         "TextColor"},
    };
    for (const Case &c : cases) {
        RuntimeObject *f = Field([&](MassData &m) { m.Bool("MultiLine", c.multiLine); });
        c.set(f);
        Settle(30);
        EXPECT_TRUE(c.holds(Widget(f))) << c.what;
        RuntimeCloseWindow(mView);
        Settle(30);
    }
}

// Lines and scrolling of a long text, and where a click position lands.
TEST_F(EditFieldTest, LinesPositionsAndScrolling) {
    RuntimeObject *f = Field([](MassData &m) { m.Bool("MultiLine", true).Int("TextSize", 12); });
    std::string text;
    for (int i = 0; i < 100; ++i)
        text += "row " + std::to_string(i) + (i < 99 ? "\r" : "");
    SetText(f, text);
    Settle(100);
    struct Case {
        int32_t line, pos; // CharPosAtLineNum(line) == pos, LineNumAtCharPos(pos) == line
    } cases[] = {{0, 0}, {1, 6}, {10, 60}, {99, 683}};
    for (const Case &c : cases) {
        EXPECT_EQ(editCharPosAtLineNum(f, c.line), c.pos) << c.line;
        EXPECT_EQ(editLineNumAtCharPos(f, c.pos), c.line) << c.pos;
    }
    EXPECT_EQ(editCharPosAtLineNum(f, 500), static_cast<int32_t>(text.size()));
    EXPECT_EQ(editCharPosAtXY(f, 2, 2), 0);
    editScrollPositionSetter(f, 0, 50);
    Settle(100);
    EXPECT_EQ(editScrollPositionGetter(f, 0), 50);
    EXPECT_EQ(editLineNumAtCharPos(f, editCharPosAtXY(f, 5, 5)), 50);
}

// Format shows in the field only while it has no focus; Text stays raw.
TEST_F(EditFieldTest, FormatShowsOnlyWithoutTheFocus) {
    RuntimeObject *f =
        Field([](MassData &m) { m.Bool("MultiLine", false).Text("Format", "#,##0.00"); });
    auto shown = [&] { return std::string(gtk_entry_get_text(GTK_ENTRY(Widget(f)))); };
    Click(mView, Find(mView, "G"), 20); // the window gave F the focus first
    SetText(f, "1234.5");
    EXPECT_EQ(shown(), "1,234.50");
    EXPECT_EQ(Text(f), "1234.5");
    ClickField(f);
    EXPECT_EQ(shown(), "1234.5");
    Key("End");
    Type("9");
    Key("Tab");
    EXPECT_EQ(shown(), "1,234.59");
    EXPECT_EQ(Text(f), "1234.59");
}

TEST_F(EditFieldTest, StyleDataRoundTripsThroughTheBuffer) {
    RuntimeObject *f = Field([](MassData &m) {
        m.Bool("MultiLine", true)
            .Bool("Styled", true)
            .Text("TextFont", "Arial")
            .Int("TextSize", 12);
    });
    SetText(f, "abc");
    editSelStartSetter(f, 0, 0);
    editSelLengthSetter(f, 0, 1);
    editSelBoldSetter(f, 0, 1);
    KelpString data = editTextStyleDataGetter(f, 0);
    // flags, name, size for "a"; flags and size for "b" and "c".
    EXPECT_EQ(std::string(objtext::View(data)), std::string("\x09\x05"
                                                            "Arial\x0c\x00\x0c\x00\x0c",
                                                            12));
    // A red, 20-point, italic "b", then back through SetTextAndStyle.
    std::string style("\x09\x05"
                      "Arial\x0c\x12\xff\x00\x00\x14\x00\x0c",
                      15);
    KelpString text = Utf8("abc"),
               bytes = string::FromBytes(style.data(), 15, kEncodingUnknown).ExtractStringStorage();
    editSetTextAndStyle(f, text, bytes);
    KelpString back = editTextStyleDataGetter(f, 0);
    EXPECT_EQ(std::string(objtext::View(back)), style);
    struct Sel {
        int32_t start, length;
        uint8_t bold;
        int32_t size, color;
    } sels[] = {{0, 1, 1, 12, 0}, {1, 1, 0, 20, 0xff0000}, {0, 3, 0, -1, -1}};
    for (const Sel &s : sels) {
        editSelStartSetter(f, 0, s.start);
        editSelLengthSetter(f, 0, s.length);
        EXPECT_EQ(editSelBoldGetter(f, 0), s.bold) << s.start;
        EXPECT_EQ(editSelTextSizeGetter(f, 0), s.size) << s.start;
        EXPECT_EQ(editSelTextColorGetter(f, 0), s.color) << s.start;
    }
    // A run given the field's own size shows as the field's text does.
    SetText(f, "abc");
    GtkTextView *view = GTK_TEXT_VIEW(gtk_bin_get_child(GTK_BIN(Widget(f))));
    auto cRect = [&] {
        GtkTextIter c;
        gtk_text_buffer_get_iter_at_offset(gtk_text_view_get_buffer(view), &c, 2);
        GdkRectangle r;
        gtk_text_view_get_iter_location(view, &c, &r);
        return std::pair(r.width, r.height);
    };
    const auto plain = cRect();
    editSelStartSetter(f, 0, 2);
    editSelLengthSetter(f, 0, 1);
    editSelTextSizeSetter(f, 0, 12);
    EXPECT_EQ(cRect(), plain);
    // A style string cut short styles what it covers and stops.
    KelpString cut = string::FromBytes(style.data(), 9, kEncodingUnknown).ExtractStringStorage();
    editSetTextAndStyle(f, text, cut);
    editSelStartSetter(f, 0, 0);
    editSelLengthSetter(f, 0, 1);
    EXPECT_EQ(editSelBoldGetter(f, 0), 1);
    EXPECT_EQ(Text(f), "abc");
    Settle(100);
    std::filesystem::create_directories("screenshots");
    EXPECT_TRUE(SaveScreenshot(Fixed(mView), "screenshots/edit_field_styles.png"));
    for (KelpString s : {data, text, bytes, back, cut})
        objtext::Release(s);
}

} // namespace
} // namespace kelp::test
