// The pointer shape over a control: the control's MouseCursor, set before or
// after its pane exists, over the window's own; nil gives the window's back.
#include "control_fixture.h"

#include "cursors/mouse_cursor.h"
#include "panes/pane.h"
#include "windows/window.h"

#include "kelp/cursors.h"

namespace kelp::test {
namespace {

using MouseCursorTest = ControlFixture;

TEST_F(MouseCursorTest, AControlsCursorShowsOverItOnly) {
    RuntimeObject *cursors = GetCursorsClass();
    RuntimeObject *wait = GetWaitCursor(cursors, 0), *beam = GetTheIBeamCursor(cursors, 0);
    RuntimeObject *w = MakeWindow(300, 200, [&](RuntimeObject *view) {
        RuntimeObject *early =
            Add(view, "Rectangle", "Early", [](MassData &m) { Box(m, 10, 10, 60, 40); });
        controlMouseCursorSetter(early, 0, wait); // before the pane is made
        Add(view, "Oval", "Late", [](MassData &m) { Box(m, 100, 10, 60, 60); });
    });
    RuntimeObject *late = Find(w, "Late");
    controlMouseCursorSetter(late, 0, beam);
    auto *window = static_cast<PaneRoot *>(View(w)->pane);
    const struct Row {
        int x, y;
        GdkCursor *shown;
    } rows[] = {
        {30, 30, HolderOf(wait)->cursor},
        {130, 40, HolderOf(beam)->cursor},
        {200, 150, window->cursor},
    };
    for (const Row &row : rows)
        EXPECT_EQ(ChooseCursor(window, row.x, row.y), row.shown) << row.x << ", " << row.y;
    controlMouseCursorSetter(late, 0, nullptr);
    EXPECT_EQ(ChooseCursor(window, 130, 40), window->cursor);
    EXPECT_EQ(objGetter(late, offsetof(RuntimeControl, mouseCursor)), nullptr);
    RuntimeUnlockObject(wait);
    RuntimeUnlockObject(beam);
}

} // namespace
} // namespace kelp::test
