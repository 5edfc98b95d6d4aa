// Control flags of plug-ins in a real window: a control with 0x08 inside a
// container control answers Left and Top in window coordinates, and one
// with 0x20 keeps the pointer shape it set while the pointer moves over it.
#include "controls/control_fixture.h"
#include "test_plugins.h"

#include "panes/pane.h"

namespace kelp::test {
namespace {

RuntimeObject *gPad = nullptr, *gButton = nullptr;

void ContainerLayout(RuntimeObject *self) {
    auto *v = reinterpret_cast<ViewRecord *>(self);
    v->left = 60, v->top = 50, v->width = 200, v->height = 90;
}

void ContainerControls(RuntimeObject *self) {
    gPad = ControlFixture::Add(self, "Pad", "Pad1", [](MassData &m) { Box(m, 10, 10, 40, 40); });
    gButton = ControlFixture::Add(self, "PushButton", "Plain",
                                  [](MassData &m) { Box(m, 80, 10, 80, 24); });
}

class ControlFlagsTest : public ControlFixture {
protected:
    void SetUp() override {
        ControlFixture::SetUp();
        if (IsSkipped())
            return;
        plugins::LoadTestPlugins();
    }
    RuntimeObject *Window() {
        return MakeWindow(320, 200, [](RuntimeObject *view) {
            RuntimeClass *klass = MakeSubclass("ContainerControl", "ccPad");
            SetEventHandler(klass, "Layout", H(&ContainerLayout));
            SetEventHandler(klass, "CreateControls", H(&ContainerControls));
            RuntimeObject *cc = RuntimeNewObject(klass);
            KelpString key = MakeText("Holder");
            WindowAddControl(view, key, cc);
            objtext::Release(key);
            RuntimeUnlockObject(cc);
        });
    }
    // Moves the pointer there by real X input, in steps, and lets the events
    // through.
    void MoveTo(RuntimeObject *w, int x, int y) {
        int ox = 0, oy = 0;
        gdk_window_get_origin(Fixed(w)->window, &ox, &oy);
        for (int step = 2; step >= 0; --step) { // a person's pointer moves in steps
            ASSERT_TRUE(XDoTool("mousemove " + std::to_string(ox + x - step) + " " +
                                std::to_string(oy + y)));
            Settle(40);
        }
    }
    // The pointer shape of the window the pad's widget lies in.
    static GdkCursorType Shape() {
        GdkCursor *c = gdk_window_get_cursor(gtk_widget_get_parent_window(Widget(gPad)));
        return c ? gdk_cursor_get_cursor_type(c) : GDK_LAST_CURSOR;
    }
};

TEST_F(ControlFlagsTest, StoredPositionAndOwnCursor) {
    RuntimeObject *w = Window();
    ASSERT_NE(gPad, nullptr);
    struct Case {
        RuntimeObject *control;
        const char *property;
        int32_t value;
    } reads[] = {
        {gPad, "Left", 70}, {gPad, "Top", 60}, {gButton, "Left", 80}, {gButton, "Top", 10}};
    for (const Case &c : reads) {
        int32_t v = -1;
        EXPECT_TRUE(KELPGetPropValueInt(c.control, c.property, &v)) << c.property;
        EXPECT_EQ(v, c.value) << NameOf(c.control) << " " << c.property;
    }
    EXPECT_EQ(KELPGetWindowHandle(w), gtk_widget_get_toplevel(Fixed(w)));
    EXPECT_EQ(KELPGetWindowHandle(gPad), nullptr);       // a control is no window
    ASSERT_TRUE(KELPSetPropValueInt(gPad, "Left", 100)); // window coordinates again
    EXPECT_EQ(Ctl(gPad)->bounds.left, 100);

    GdkCursor *cross = gdk_cursor_new(GDK_CROSSHAIR);
    SetGlobalPaneCursor(cross);
    gdk_cursor_unref(cross);
    struct Step {
        int x, y;
        GdkCursorType shape;
    } steps[] = {{20, 180, GDK_CROSSHAIR}, // the window's choice
                 {110, 70, GDK_HAND2},     // the pad set its hand on entering
                 {120, 80, GDK_HAND2},     // and keeps it while the pointer moves
                 {20, 180, GDK_CROSSHAIR}};
    for (const Step &s : steps) {
        MoveTo(w, s.x, s.y);
        EXPECT_EQ(Shape(), s.shape) << s.x << "," << s.y;
    }
    SetGlobalPaneCursor(nullptr);
}

} // namespace
} // namespace kelp::test
