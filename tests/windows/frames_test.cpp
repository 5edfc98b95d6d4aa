// Frame types as the toolkit sees them, and the state-only MDIWindow.
#include "windows/mdi_window.h"
#include "windows/runtime_view.h"

#include "objects/definitions.h"
#include "objects/text.h"
#include "support/language_class.h"
#include "support/xvfb.h"

#include "kelp/objects.h"
#include "kelp/windows.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <cstddef>

namespace kelp {
namespace {

TEST(Frames, KindsAndDefaultPlacementsFollowTheFrame) {
    // Frame, the kind it builds, its placement when Placement is 0.  Metal
    // (9) builds a document and a drawer (10) a floating window here; a frame
    // outside the constants builds a document.
    const struct {
        int32_t frame, kind, placement;
    } kFrames[] = {{0, 8, 4}, {1, 3, 2},  {2, 2, 2}, {3, 1, 0},  {4, 4, 2},  {5, 5, 2}, {6, 6, 4},
                   {7, 9, 0}, {8, 10, 0}, {9, 8, 4}, {10, 1, 0}, {-1, 8, 4}, {11, 8, 4}};
    for (const auto &row : kFrames) {
        EXPECT_EQ(KindForFrame(row.frame), row.kind) << "frame " << row.frame;
        EXPECT_EQ(DefaultPlacementForFrame(row.frame), row.placement) << "frame " << row.frame;
    }
    // Kind: modal to the window's logic, modal to the toolkit, stagger layer.
    const struct {
        int32_t kind;
        bool modal, toolkitModal;
        int32_t layer;
    } kKinds[] = {{0, false, false, 2}, {1, false, false, 0}, {2, true, true, 1},
                  {3, true, true, 1},   {4, false, true, 1},  {5, true, true, 1},
                  {6, false, false, 2}, {7, false, false, 0}, {8, false, false, 2},
                  {9, false, false, 0}, {10, true, true, 1},  {11, false, false, 2},
                  {12, false, false, 3}};
    for (const auto &row : kKinds) {
        EXPECT_EQ(IsModalKind(row.kind), row.modal) << "kind " << row.kind;
        EXPECT_EQ(IsToolkitModalKind(row.kind), row.toolkitModal) << "kind " << row.kind;
        EXPECT_EQ(LayerOfKind(row.kind), row.layer) << "kind " << row.kind;
    }
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
