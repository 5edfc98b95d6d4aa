// Frame types as the toolkit sees them, and the state-only MDIWindow.
#include "windows/mdi_window.h"
#include "windows/runtime_view.h"

#include "objects/definitions.h"
#include "objects/text.h"
#include "runloop/main_loop.h"
#include "support/language_class.h"
#include "support/xvfb.h"

#include "kelp/objects.h"
#include "kelp/windows.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <gtk/gtk.h>

#include <cstddef>

namespace kelp {
namespace {

TEST(Frames, KindsAndDefaultPlacementsFollowTheFrame) {
    EXPECT_EQ(KindForFrame(0), 8);  // document
    EXPECT_EQ(KindForFrame(2), 2);  // modal
    EXPECT_EQ(KindForFrame(9), 8);  // metal is a document window here
    EXPECT_EQ(KindForFrame(10), 1); // a drawer floats
    EXPECT_EQ(DefaultPlacementForFrame(0), kPlacementStagger);
    EXPECT_EQ(DefaultPlacementForFrame(1), kPlacementMainScreen);
    EXPECT_EQ(DefaultPlacementForFrame(3), kPlacementDefault);
    EXPECT_TRUE(IsModalKind(2));
    EXPECT_TRUE(IsModalKind(5));
    EXPECT_FALSE(IsModalKind(4));
    EXPECT_EQ(LayerOfKind(1), 0);
    EXPECT_EQ(LayerOfKind(3), 1);
    EXPECT_EQ(LayerOfKind(8), 2);
}

int gFrame = 0;
void FrameLayout(RuntimeObject *self) {
    reinterpret_cast<ViewRecord *>(self)->frame = gFrame;
    windowPosSetter(self, offsetof(ViewRecord, width), 120);
    windowPosSetter(self, offsetof(ViewRecord, height), 80);
}

TEST(Frames, ModalAndPlainFramesReachTheToolkit) {
    if (!test::RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    RuntimeClass *klass = test::MakeSubclass("Window", "wFrames");
    ASSERT_TRUE(test::SetEventHandler(klass, "Layout", reinterpret_cast<void *>(&FrameLayout)));
    struct Case {
        int frame;
        bool modal, decorated;
    } cases[] = {{0, false, true}, {1, true, true},  {2, true, true},
                 {3, false, true}, {4, true, false}, {5, true, false}};
    for (const Case &c : cases) {
        gFrame = c.frame;
        RuntimeObject *w = RuntimeNewObject(klass);
        GtkWidget *top = reinterpret_cast<ViewRecord *>(w)->pane->GtkWin();
        EXPECT_EQ(gtk_window_get_modal(GTK_WINDOW(top)) != 0, c.modal) << "frame " << c.frame;
        EXPECT_EQ(gtk_window_get_decorated(GTK_WINDOW(top)) != 0, c.decorated)
            << "frame " << c.frame;
        EXPECT_EQ(WindowHandleGetter(w, 0), reinterpret_cast<intptr_t>(top));
        RuntimeCloseWindow(w);
        EXPECT_EQ(WindowHandleGetter(w, 0), 0);
        RuntimeUnlockObject(w);
    }
}

TEST(Frames, PropertiesReachABuiltWindowOrWaitForTheNextBuild) {
    if (!test::RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    RuntimeClass *klass = test::MakeSubclass("Window", "wProps");
    ASSERT_TRUE(test::SetEventHandler(klass, "Layout", reinterpret_cast<void *>(&FrameLayout)));
    gFrame = 0;
    RuntimeObject *w = RuntimeNewObject(klass);
    GtkWindow *top = GTK_WINDOW(reinterpret_cast<ViewRecord *>(w)->pane->GtkWin());
    KelpString title = test::MakeText("Results");
    windowTitleSetter(w, 0, title);
    KelpString back = windowTitleGetter(w, 0);
    EXPECT_STREQ(test::TextOf(back), "Results");
    EXPECT_STREQ(gtk_window_get_title(top), "Results");
    windowGrowIconSetter(w, 0, 0);
    EXPECT_FALSE(gtk_window_get_resizable(top));
    EXPECT_EQ(windowGrowIconGetter(w, 0), 0);
    windowCloseBoxSetter(w, 0, 0);
    EXPECT_FALSE(gtk_window_get_deletable(top));
    windowFrameSetter(w, 0, 2);
    EXPECT_EQ(windowFrameGetter(w, 0), 2);
    EXPECT_FALSE(gtk_window_get_modal(top)); // the frame waits for the next build
    windowLiveResizeSetter(w, 0, 1);
    EXPECT_EQ(windowLiveResizeGetter(w, 0), 0);
    windowMinMaxWidthHeightSetter(w, offsetof(ViewRecord, minWidth), -5);
    EXPECT_EQ(windowMinMaxWidthHeightGetter(w, offsetof(ViewRecord, minWidth)), 0);
    RuntimeCloseWindow(w);
    windowFrameSetter(w, 0, 0);
    RuntimeShowWindow(w); // a closed window builds a new pane from the same view
    ASSERT_NE(reinterpret_cast<ViewRecord *>(w)->pane, nullptr);
    EXPECT_STREQ(
        gtk_window_get_title(GTK_WINDOW(reinterpret_cast<ViewRecord *>(w)->pane->GtkWin())),
        "Results");
    RuntimeCloseWindow(w);
    objtext::Release(title);
    objtext::Release(back);
    RuntimeUnlockObject(w);
}

TEST(MDIWindow, KeepsStateAndMakesNoWindow) {
    RuntimeInitExternalClasses();
    RuntimeObject *mdi = NewObjectOfDefinition(MDIWindowDefinition());
    ASSERT_NE(mdi, nullptr);
    auto *record = reinterpret_cast<MDIWindowRecord *>(mdi);
    EXPECT_EQ(record->minWidth, 64);
    EXPECT_EQ(record->maxHeight, 32000);
    EXPECT_EQ(record->visible, 1);
    EXPECT_EQ(record->width, 0);
    int before = getWindowCount();
    MDIWindowMaximize(mdi);
    MDIWindowMinimize(mdi);
    MDIWindowRestore(mdi);
    EXPECT_EQ(getWindowCount(), before);
    EXPECT_EQ(MDIWindowTitleGetter(mdi, 0), nullptr);
    EXPECT_EQ(MDIWindowHandleGetter(mdi, 0), 0);
    RuntimeUnlockObject(mdi);
}

} // namespace
} // namespace kelp
