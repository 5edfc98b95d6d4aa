// Message dialogs and MsgBox on the test X server, answered with real keys
// and clicks; what the window shows is read back from its widgets while it
// is up.
#include "support/class_kit.h"
#include "support/person.h"
#include "support/xvfb.h"

#include "dialogs/message_dialog.h"
#include "dialogs/message_window.h"

#include "kelp/kelp.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <algorithm>

namespace kelp {
namespace {

using test::Lit;
using test::Person;

// What the window of `gTitle` shows: button captions left to right, texts.
std::string gTitle;
std::vector<std::string> gButtons, gTexts;
guint gWatch = 0;

void Collect(GtkWidget *w, std::vector<std::pair<int, std::string>> &buttons) {
    if (GTK_IS_BUTTON(w))
        buttons.emplace_back(w->allocation.x, gtk_button_get_label(GTK_BUTTON(w)));
    else if (GTK_IS_LABEL(w))
        gTexts.push_back(gtk_label_get_text(GTK_LABEL(w)));
    if (GTK_IS_CONTAINER(w) && !GTK_IS_BUTTON(w)) {
        GList *children = gtk_container_get_children(GTK_CONTAINER(w));
        for (GList *c = children; c; c = c->next)
            Collect(GTK_WIDGET(c->data), buttons);
        g_list_free(children);
    }
}

gboolean ReadWindow(gpointer) {
    GList *tops = gtk_window_list_toplevels();
    for (GList *t = tops; t; t = t->next) {
        GtkWindow *w = GTK_WINDOW(t->data);
        if (!GTK_WIDGET_VISIBLE(w) || !gtk_window_get_title(w) || gTitle != gtk_window_get_title(w))
            continue;
        std::vector<std::pair<int, std::string>> buttons;
        gTexts.clear();
        Collect(GTK_WIDGET(w), buttons);
        std::sort(buttons.begin(), buttons.end());
        gButtons.clear();
        for (auto &b : buttons)
            gButtons.push_back(b.second);
    }
    g_list_free(tops);
    return TRUE;
}

class Dialogs : public ::testing::Test {
protected:
    void SetUp() override {
        if (!test::RequireToolkitDisplay())
            GTEST_SKIP() << "no X server";
        RuntimeInitExternalClasses();
        gWatch = g_timeout_add(300, &ReadWindow, nullptr);
    }
    void TearDown() override {
        if (gWatch)
            g_source_remove(gWatch);
        gWatch = 0;
    }
    // Each showing gets a title of its own, so no answer reaches another.
    std::string NextTitle() {
        gTitle = "Dialog test " + std::to_string(++mShowings);
        gButtons.clear();
        gTexts.clear();
        return gTitle;
    }
    int mShowings = 0;
};

RuntimeObject *NewDialog(const std::string &title, const std::string &message) {
    KelpString name = Lit("MessageDialog");
    RuntimeObject *d = RuntimeNewObject(RuntimeLookupClass(name));
    RuntimeUnlockString(name);
    auto *record = reinterpret_cast<MessageDialogRecord *>(d);
    record->title = Lit(title); // the dialog's finalizer lets them go
    record->message = Lit(message);
    return d;
}

TEST_F(Dialogs, MessageDialogButtonsKeysAndClicks) {
    struct Case {
        const char *what;
        std::vector<std::string> steps;
        bool cancelVisible, alternateVisible;
        int defaultOn, cancelOn; // the button numbers given Default and Cancel
        std::vector<std::string> shown;
        int answer; // 0 cancel, 1 action, 2 alternate
    } cases[] = {
        // clang-format off
        {"defaults", {"key Return"}, false, false, 1, 0, {"OK"}, 1},
        {"Cancel on the action button", {"key Escape"}, false, false, 1, 1, {"OK"}, 1},
        {"three buttons, Escape", {"key Escape"}, true, true, 1, 0, {"OK", "Alternate Action", "Cancel"}, 0},
        {"default on the cancel button", {"key Return"}, true, false, 0, 0, {"OK", "Cancel"}, 0},
        {"a click on the middle button", {"click"}, true, true, -1, -1, {"OK", "Alternate Action", "Cancel"}, 2},
        {"the hidden cancel button's Escape", {"key Escape"}, false, true, 1, 0, {"OK", "Alternate Action"}, 0},
        // clang-format on
    };
    for (const Case &c : cases) {
        const std::string title = NextTitle();
        RuntimeObject *d = NewDialog(title, "Keep going?");
        RuntimeObject *buttons[3] = {MDButtonGetter(d, 0), MDButtonGetter(d, 1),
                                     MDButtonGetter(d, 2)};
        MDBBooleanSetter(buttons[0], 0, c.cancelVisible);
        MDBBooleanSetter(buttons[2], 0, c.alternateVisible);
        // False stores "none", whichever button it is set on: trues last.
        for (int i = 0; i < 3; ++i) {
            MDBBooleanSetter(buttons[i], 1, false);
            MDBBooleanSetter(buttons[i], 2, false);
        }
        if (c.defaultOn >= 0)
            MDBBooleanSetter(buttons[c.defaultOn], 1, true);
        if (c.cancelOn >= 0)
            MDBBooleanSetter(buttons[c.cancelOn], 2, true);
        std::vector<std::string> steps = c.steps;
        if (steps[0] == "click") {
            // Where the layout puts the alternate button, clicked by a real pointer.
            MessageWindowSpec spec;
            spec.message = "Keep going?";
            spec.cancelVisible = c.cancelVisible;
            spec.alternateVisible = c.alternateVisible;
            const MessageLayout l = LayOutMessage(spec, gdk_screen_width());
            steps[0] = "mousemove --window %1 " + std::to_string(l.buttonLeft[2] + 10) + " " +
                       std::to_string(l.buttonTop + 10) + " click 1";
        }
        RuntimeObject *answer = nullptr;
        {
            Person person(title, steps);
            answer = MessageDialogShowModal(d);
        }
        EXPECT_EQ(gButtons, c.shown) << c.what;
        EXPECT_EQ(answer, buttons[c.answer]) << c.what;
        RuntimeUnlockObject(answer);
        for (RuntimeObject *b : buttons)
            RuntimeUnlockObject(b);
        RuntimeUnlockObject(d);
    }
}

TEST_F(Dialogs, MsgBoxResultsFollowTheFlags) {
    struct Case {
        int32_t flags;
        const char *key;
        std::vector<std::string> shown;
        int32_t result;
    } cases[] = {
        {0, "Return", {"OK"}, 1},
        {0, "Escape", {"OK"}, 2}, // as the close box: the cancel button, hidden or not
        {1, "Escape", {"OK", "Cancel"}, 2},
        {2, "Return", {"Retry", "Ignore", "Abort"}, 3},
        {2 | 0x100, "Return", {"Retry", "Ignore", "Abort"}, 4},
        {2 | 0x200, "Return", {"Retry", "Ignore", "Abort"}, 5},
        {3, "Return", {"Yes", "No", "Cancel"}, 6},
        {3 | 0x100, "Return", {"Yes", "No", "Cancel"}, 7},
        {3 | 0x200 | 0x20, "Return", {"Yes", "No", "Cancel"}, 2},
        {4, "Return", {"Yes", "No"}, 6},
        {5 | 0x100, "Return", {"Retry", "Cancel"}, 2},
        {9 | 0x10, "Return", {"OK"}, 1}, // no such button set: OK alone
    };
    for (const Case &c : cases) {
        const std::string title = NextTitle();
        KelpString text = Lit("First line\nand the rest"), t = Lit(title);
        int32_t result;
        {
            Person person(title, {std::string("key ") + c.key});
            result = VB_RuntimeMsgBox(text, c.flags, t);
        }
        RuntimeUnlockString(text);
        RuntimeUnlockString(t);
        EXPECT_EQ(gButtons, c.shown) << c.flags;
        EXPECT_EQ(result, c.result) << c.flags;
        EXPECT_EQ(gTexts, (std::vector<std::string>{"First line", "and the rest"})) << c.flags;
    }
}

TEST_F(Dialogs, TheWindowWrapsWideTextAndCentresItsButtons) {
    MessageWindowSpec spec;
    spec.message = std::string(400, 'w') + " " + std::string(10, 'x');
    const MessageLayout wide = LayOutMessage(spec, 1000);
    EXPECT_EQ(wide.width, 800) << "80% of the screen";
    spec.message = "Short";
    const MessageLayout narrow = LayOutMessage(spec, 1000);
    EXPECT_GT(wide.messageHeight, narrow.messageHeight) << "the long text wraps";
    EXPECT_EQ(narrow.buttonWidth[kButtonAction], 69) << "a short caption gets the least width";
    EXPECT_EQ(narrow.buttonLeft[kButtonAction], narrow.width / 2 - 69 / 2);
    EXPECT_EQ(narrow.height, 32 + 68) << "the icon's height at least";
    EXPECT_EQ(narrow.buttonTop, narrow.height - 41);

    KelpString name = Lit("MessageDialog");
    RuntimeObject *d = RuntimeNewObject(RuntimeLookupClass(name));
    RuntimeUnlockString(name);
    RuntimeEnterHandlerRegion();
    MDIconSetter(d, 0, 4);
    RuntimeObject *e = RuntimeTakeException();
    RuntimeLeaveHandlerRegion();
    ASSERT_NE(e, nullptr);
    EXPECT_EQ(test::Str(reinterpret_cast<RuntimeExceptionObject *>(e)->message),
              "The integer value 4 is not in the range of enumerated icons for the "
              "MessageDialog class.");
    RuntimeUnlockObject(e);
    RuntimeUnlockObject(d);
}

} // namespace
} // namespace kelp
