// Cursors, screens and tray items on a private X server.
#include "support/class_kit.h"
#include "support/xvfb.h"

#include "cursors/cursor_pictures.h"
#include "cursors/mouse_cursor.h"
#include "cursors/screen_and_tray.h"
#include "objects/definitions.h"
#include "panes/pane.h"
#include "resources/resource_store.h"

#include "kelp/cursors.h"

#include <gtest/gtest.h>

namespace {

using namespace kelp;

class Cursors : public ::testing::Test {
protected:
    void SetUp() override {
        if (!test::RequireToolkitDisplay())
            GTEST_SKIP() << "no X server";
    }
};

TEST_F(Cursors, EveryReadyMadeCursorIsKeptAndDrawnAroundItsHotSpot) {
    using Getter = RuntimeObject *(*)(RuntimeObject *, int32_t);
    struct Row {
        Getter getter;
        CursorKind kind;
        bool toolkitDefault;
    } rows[] = {
        {GetHandOpenCursor, kCursorHandOpen, false},
        {GetHandClosedCursor, kCursorHandClosed, false},
        {GetFingerPointerCursor, kCursorFingerPointer, false},
        {GetEastWestCursor, kCursorArrowEastWest, false},
        {GetNorthSouthCursor, kCursorArrowNorthSouth, false},
        {GetNorthEastSouthWestCursor, kCursorArrowNortheastSouthwest, false},
        {GetNorthWestSouthEastCursor, kCursorArrowNorthwestSoutheast, false},
        {GetAllDirectionsCursor, kCursorArrowAllDirections, false},
        {GetSplitterEastWestCursor, kCursorSplitterEastWest, false},
        {GetSplitterNorthSouthCursor, kCursorSplitterNorthSouth, false},
        {GetStandardPointerCursor, kCursorStandardPointer, true},
        {GetTheIBeamCursor, kCursorIBeam, false},
        {GetWaitCursor, kCursorWait, false},
    };
    RuntimeObject *cursors = GetCursorsClass();
    for (const Row &row : rows) {
        SCOPED_TRACE(int(row.kind));
        RuntimeObject *first = row.getter(cursors, 0);
        RuntimeObject *second = row.getter(cursors, 0);
        ASSERT_NE(first, nullptr);
        EXPECT_EQ(first, second);
        EXPECT_EQ(HolderOf(first)->cursor == nullptr, row.toolkitDefault);
        CursorPicture picture;
        if (BuiltInCursorPicture(row.kind, picture)) {
            const int byte = picture.hotRow * 2 + picture.hotColumn / 8;
            const uint8_t bit = uint8_t(1u << (picture.hotColumn % 8));
            EXPECT_TRUE(picture.mask[byte] & bit) << "the hot spot is on the drawing";
            int black = 0;
            for (uint8_t b : picture.image)
                black += __builtin_popcount(b);
            EXPECT_GT(black, 8);
        }
        RuntimeUnlockObject(first);
        RuntimeUnlockObject(second);
    }
    RuntimeUnlockObject(cursors);
}

TEST_F(Cursors, TheGlobalCursorStandsBetweenPaneAndWindowUntilCleared) {
    RuntimeObject *watch = getWatchCursor();
    RuntimeObject *arrow = getArrowCursor();
    SetGlobalCursor(HolderOf(watch));
    EXPECT_EQ(GlobalPaneCursor(), HolderOf(watch)->cursor);
    RuntimeUnlockObject(watch); // the slot keeps its own reference
    EXPECT_NE(GlobalPaneCursor(), nullptr);
    SetGlobalCursor(HolderOf(arrow)); // no cursor: cleared
    EXPECT_EQ(GlobalPaneCursor(), nullptr);
    RuntimeObject *beam = getIBeamCursor();
    SetGlobalCursor(HolderOf(beam));
    RuntimeUnlockObject(beam);
    ResetGlobalCursor();
    EXPECT_EQ(GlobalPaneCursor(), nullptr);
    EXPECT_EQ(NamedCursor(6604), nullptr);
    GdkCursor *edge = NamedCursor(6601);
    EXPECT_NE(edge, nullptr);
    gdk_cursor_unref(edge);
    RuntimeUnlockObject(arrow);
}

TEST_F(Cursors, ResourceCursorsScreensTrayItemsAndTheBeep) {
    ClearResourcesForTest();
    std::vector<uint8_t> curs(68, 0xFF);
    curs[64] = 0, curs[65] = 3, curs[66] = 0, curs[67] = 5;
    AddResource(kResourceCursor, 9, curs.data(), uint32_t(curs.size()), 0);
    RuntimeObject *fromResource = RuntimeGetCursorFromResourceManager(9);
    ASSERT_NE(fromResource, nullptr);
    EXPECT_NE(HolderOf(fromResource)->cursor, nullptr);
    EXPECT_EQ(HolderOf(fromResource)->id, 9);
    EXPECT_EQ(RuntimeGetCursorFromResourceManager(10), nullptr);
    RuntimeUnlockObject(fromResource);
    ClearResourcesForTest();

    EXPECT_EQ(getScreenCount(), 1);
    EXPECT_EQ(getScreen(1), nullptr);
    RuntimeObject *screen = getScreen(0);
    ASSERT_NE(screen, nullptr);
    const auto *s = reinterpret_cast<const ScreenObject *>(screen);
    EXPECT_EQ(
        std::vector<int32_t>({screenLeftGetter(screen, 0), screenTopGetter(screen, 0),
                              screenWidthGetter(screen, 0), screenHeightGetter(screen, 0),
                              screenDepthGetter(screen, 0), s->availableWidth, s->availableHeight}),
        std::vector<int32_t>({0, 0, 1280, 1024, 24, 1280, 1024}));
    RuntimeUnlockObject(screen);

    test::ReportRecorder reports;
    RuntimeObject *item = RuntimeNewObject(ClassForDefinition(TrayItemDefinition()));
    TrayItemSetHelpTag(item, 0, test::Lit("tip"));
    EXPECT_EQ(test::Str(reinterpret_cast<TrayItemObject *>(item)->helpTag), "tip");
    AddTrayItem(nullptr, item);
    AddTrayItem(nullptr, nullptr);
    EXPECT_TRUE(reports.Reports().empty());
    reinterpret_cast<TrayItemObject *>(item)->mID = 3; // as if in a tray already
    AddTrayItem(nullptr, item);
    EXPECT_TRUE(reports.Has("item->mID == 0"));
    RemoveTrayItem(nullptr, item);
    RuntimeUnlockObject(item);
    RuntimeBeep();
}

} // namespace
