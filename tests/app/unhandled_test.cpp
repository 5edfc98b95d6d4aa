// The standard handler of exceptions that no code took: the application's
// event first, then the notice, then the end of the run; an EndException
// closes the windows quietly.
#include "app/application.h"
#include "app/unhandled_exceptions.h"
#include "exceptions/raise.h"
#include "exceptions/unhandled.h"
#include "process/display.h"
#include "process/quit.h"
#include "support/class_kit.h"
#include "support/language_class.h"
#include "support/x_input.h"
#include "support/xvfb.h"
#include "windows/window.h"

#include "kelp/runloop.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

// X's own header defines names (None, Bool) that others use: it comes last.
#include <gdk/gdkx.h>

using namespace kelp::test;

namespace {

class Unhandled : public ::testing::Test {
protected:
    void SetUp() override {
        mPrevious = kelp::SetUnhandledHandler(&kelp::StandardUnhandledHandler);
        kelp::ClearQuitRequest();
    }
    void TearDown() override {
        kelp::ReleaseRegisteredApplication();
        kelp::SetUnhandledHandler(mPrevious);
        kelp::ClearQuitRequest();
    }
    kelp::UnhandledHandler mPrevious = nullptr;
};

TEST_F(Unhandled, WithoutADisplayTheTextGoesToStandardErrorAndTheRunEnds) {
    if (kelp::DisplayAvailable())
        GTEST_SKIP() << "a display was brought up earlier in this process";
    testing::internal::CaptureStderr();
    kelp::RaiseWithMessage("OutOfBoundsException", "Index 9 of 3", 0);
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(err, "An exception of class OutOfBoundsException was not handled.  The application "
                   "must shut down.\nException Message: Index 9 of 3\r\n");
    EXPECT_TRUE(kelp::QuitRequested());

    // Once the run is ending, a further exception says nothing more.
    testing::internal::CaptureStderr();
    kelp::RaiseNilObject();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

int gEventCalls = 0;
bool gEventAnswer = false;
bool gInEventSeen = false;
uint8_t OnUnhandled(RuntimeObject *, RuntimeObject *) {
    ++gEventCalls;
    gInEventSeen = kelp::InUnhandledExceptionEvent();
    return gEventAnswer ? 1 : 0;
}

// Registers an application whose UnhandledException event is OnUnhandled.
void RegisterApplication() {
    RuntimeClass *klass = MakeSubclass("Application", "UnhandledApp");
    ASSERT_NE(klass, nullptr);
    ASSERT_TRUE(
        SetEventHandler(klass, "UnhandledException", reinterpret_cast<void *>(&OnUnhandled)));
    RuntimeObject *app = RuntimeNewObject(klass);
    RuntimeRegisterAppObject(app);
    RuntimeUnlockObject(app); // the registration holds its own reference
}

TEST_F(Unhandled, AnApplicationEventThatDealsWithItKeepsTheRunGoing) {
    RegisterApplication();
    gEventCalls = 0;
    gEventAnswer = true;
    testing::internal::CaptureStderr();
    kelp::RaiseOutOfBounds();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(gEventCalls, 1);
    EXPECT_TRUE(gInEventSeen);
    EXPECT_FALSE(kelp::InUnhandledExceptionEvent());
    EXPECT_FALSE(kelp::QuitRequested());

    gEventAnswer = false;
    testing::internal::CaptureStderr();
    kelp::RaiseOutOfBounds();
    EXPECT_NE(testing::internal::GetCapturedStderr().find("OutOfBoundsException"),
              std::string::npos);
    EXPECT_EQ(gEventCalls, 2);
    EXPECT_TRUE(kelp::QuitRequested());
}

TEST_F(Unhandled, EndExceptionClosesTheWindowsQuietly) {
    RegisterApplication();
    gEventCalls = 0;
    new kelp::Window("one", 0, true, kelp::RectFromXYWH(10, 60, 100, 80));
    new kelp::Window("two", 0, true, kelp::RectFromXYWH(30, 80, 100, 80));
    ASSERT_EQ(kelp::WindowList().size(), 2u);
    testing::internal::CaptureStderr();
    RuntimeObject *e = RuntimeNewObject(RuntimeLookupClass(Lit("EndException")));
    RuntimeRaiseException(e);
    RuntimeUnlockObject(e);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(gEventCalls, 0) << "EndException does not reach the application's event";
    EXPECT_TRUE(kelp::WindowList().empty());
    EXPECT_TRUE(kelp::QuitRequested());
}

struct SeenDialog {
    std::string text, secondary, icon;
    int count = 0;
};
SeenDialog gSeen;

void ReadParts(GtkWidget *w) {
    if (GTK_IS_LABEL(w))
        (gSeen.text.empty() ? gSeen.text : gSeen.secondary) = gtk_label_get_text(GTK_LABEL(w));
    if (GTK_IS_IMAGE(w) && gtk_image_get_storage_type(GTK_IMAGE(w)) == GTK_IMAGE_STOCK) {
        gchar *stock = nullptr;
        gtk_image_get_stock(GTK_IMAGE(w), &stock, nullptr);
        gSeen.icon = stock ? stock : "";
    }
    if (GTK_IS_CONTAINER(w) && !GTK_IS_BUTTON(w)) {
        GList *children = gtk_container_get_children(GTK_CONTAINER(w));
        for (GList *c = children; c; c = c->next)
            ReadParts(GTK_WIDGET(c->data));
        g_list_free(children);
    }
}

// Reads the first modal window on screen and answers it with Return, as a
// user would.
gboolean AnswerDialog(gpointer) {
    GList *tops = gtk_window_list_toplevels();
    bool answered = false;
    for (GList *l = tops; l; l = l->next) {
        GtkWidget *w = GTK_WIDGET(l->data);
        if (!gtk_window_get_modal(GTK_WINDOW(w)) || !gtk_widget_get_visible(w) || !w->window)
            continue;
        gSeen.text.clear();
        gSeen.secondary.clear();
        ReadParts(w);
        ++gSeen.count;
        answered = kelp::test::XDoTool("key --window " + std::to_string(GDK_WINDOW_XID(w->window)) +
                                       " Return");
        break;
    }
    g_list_free(tops);
    return answered ? FALSE : TRUE; // keep looking until the dialog is up
}

TEST_F(Unhandled, WithADisplayAStopDialogShowsTheText) {
    if (!kelp::test::RequireToolkitDisplay())
        GTEST_SKIP() << "no X server could be started";
    gSeen = {};
    g_timeout_add(20, &AnswerDialog, nullptr);
    kelp::RaiseWithMessage("UnsupportedFormatException", "Not a picture", 7);
    EXPECT_EQ(gSeen.count, 1);
    EXPECT_EQ(gSeen.text, "An exception of class UnsupportedFormatException was not handled.  "
                          "The application must shut down.");
    EXPECT_EQ(gSeen.secondary, "Exception Message: Not a picture\rException Error Number: 7");
    EXPECT_EQ(gSeen.icon, "gtk-dialog-error");
    EXPECT_TRUE(kelp::QuitRequested());
}

} // namespace
