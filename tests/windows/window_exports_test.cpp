// Exports of the window, application and generic-accessor families, reached
// by name as an image binds them, and what each does to the objects.
#include "window_fixture.h"

#include "panes/pane.h"

#include "kelp/arrays.h"
#include "kelp/image.h"
#include "kelp/runloop.h"
#include "kelp/startup.h"
#include "kelp/windows.h"

#include <cstddef>

namespace kelp {
namespace {

class WindowExportsTest : public test::WindowFixture {
protected:
    void SetUp() override { SetUpWindowClass("wExports", {}); }
    // A counted object to store: a timer stands in for a picture or cursor.
    RuntimeObject *NewStandIn() {
        static RuntimeClass *standIn = test::MakeSubclass("Timer", "StandInObject");
        return RuntimeNewObject(standIn);
    }
};

template <typename F> void *Code(F *function) { return reinterpret_cast<void *>(function); }

TEST_F(WindowExportsTest, EachNameBindsToItsFunction) {
    const struct {
        const char *name;
        void *code;
    } rows[] = {
        {"windowMouseXGetter", Code(&windowMouseXGetter)},
        {"windowMouseYGetter", Code(&windowMouseYGetter)},
        {"formSetFocus", Code(&formSetFocus)},
        {"windowBackdropGetter", Code(&windowBackdropGetter)},
        {"windowBackdropSetter", Code(&windowBackdropSetter)},
        {"formMouseCursorSetter", Code(&formMouseCursorSetter)},
        {"windowBalloonHelpSetter", Code(&windowBalloonHelpSetter)},
        {"WindowForceUpdateFrontBuffer", Code(&WindowForceUpdateFrontBuffer)},
        {"windowHWNDGetter", Code(&windowHWNDGetter)},
        {"windowWindowPtrGetter", Code(&windowWindowPtrGetter)},
        {"WindowToWindowPtr", Code(&WindowToWindowPtr)},
        {"paneIntGetter", Code(&paneIntGetter)},
        {"paneIntSetter", Code(&paneIntSetter)},
        {"paneShortGetter", Code(&paneShortGetter)},
        {"paneShortSetter", Code(&paneShortSetter)},
        {"ApplicationOpenDocument", Code(&ApplicationOpenDocument)},
        {"AppBalloonHelpVisibleGetter", Code(&AppBalloonHelpVisibleGetter)},
        {"AppBalloonHelpVisibleSetter", Code(&AppBalloonHelpVisibleSetter)},
        {"appMouseCursorSetter", Code(&appMouseCursorSetter)},
        {"AppMenuBarGetter", Code(&AppMenuBarGetter)},
        {"AppMenuBarSetter", Code(&AppMenuBarSetter)},
        {"arrayGetter", Code(&arrayGetter)},
        {"arraySetter", Code(&arraySetter)},
    };
    for (const auto &row : rows)
        EXPECT_EQ(LookupExport(row.name), row.code) << row.name;
}

TEST_F(WindowExportsTest, CountedFieldsHoldOneReferenceWhileStored) {
    RuntimeObject *w = MakeWith([](RuntimeObject *) {});
    RuntimeRegisterAppObject(nullptr);
    RuntimeObject *app = getAppObject();
    ASSERT_NE(app, nullptr);
    RuntimeObject *object = NewStandIn();
    const int32_t base = object->referenceCount;
    using Setter = void (*)(RuntimeObject *, int32_t, RuntimeObject *);
    const struct {
        const char *what;
        RuntimeObject *owner;
        Setter set;
        RuntimeObject *(*get)(RuntimeObject *, int32_t);
    } cases[] = {
        {"backdrop", w, &windowBackdropSetter, &windowBackdropGetter},
        {"window cursor", w, &formMouseCursorSetter, nullptr},
        {"application cursor", app, &appMouseCursorSetter, nullptr},
        {"menu bar", app, &AppMenuBarSetter, &AppMenuBarGetter},
    };
    for (const auto &c : cases) {
        c.set(c.owner, 0, object);
        c.set(c.owner, 0, object); // the same again takes no second reference
        EXPECT_EQ(object->referenceCount, base + 1) << c.what;
        if (c.get) {
            RuntimeObject *got = c.get(c.owner, 0);
            EXPECT_EQ(got, object) << c.what;
            RuntimeUnlockObject(got);
        }
        c.set(c.owner, 0, nullptr);
        EXPECT_EQ(object->referenceCount, base) << c.what;
    }
    RuntimeUnlockObject(object);
    ReleaseRegisteredApplication();
}

TEST_F(WindowExportsTest, FlagsPaneFieldsArraysFocusAndPointer) {
    RuntimeObject *w = MakeWith([](RuntimeObject *self) {
        windowPosSetter(self, offsetof(ViewRecord, width), 120);
        windowPosSetter(self, offsetof(ViewRecord, height), 80);
    });
    Settle(100);
    ViewRecord *view = View(w);
    ASSERT_NE(view->pane, nullptr);

    windowBalloonHelpSetter(w, 0, 7);
    EXPECT_EQ(view->balloonHelp, 1);
    RuntimeRegisterAppObject(nullptr);
    AppBalloonHelpVisibleSetter(nullptr, 0, 1);
    EXPECT_EQ(AppBalloonHelpVisibleGetter(nullptr, 0), 1);
    ReleaseRegisteredApplication();

    paneIntSetter(w, offsetof(ViewRecord, minWidth), 77);
    EXPECT_EQ(view->minWidth, 77);
    EXPECT_EQ(paneIntGetter(w, offsetof(ViewRecord, minWidth)), 77);
    paneIntSetter(w, 100000, 5); // outside the object: nothing
    EXPECT_EQ(paneIntGetter(w, 100000), 0);
    paneShortSetter(w, offsetof(ViewRecord, frame), 3);
    EXPECT_EQ(paneShortGetter(w, offsetof(ViewRecord, frame)), 3);

    // An array in a pointer-sized field of the window's object: one
    // reference while stored.
    RuntimeArray *array = CreateArray(1, 0, 3);
    const int32_t offset = offsetof(ViewRecord, backdrop); // a pointer-sized field
    RuntimeObject *oldBackdrop = view->backdrop;
    view->backdrop = nullptr;
    arraySetter(w, offset, array);
    EXPECT_EQ(array->referenceCount, 2u);
    RuntimeArray *got = arrayGetter(w, offset);
    EXPECT_EQ(got, array);
    RuntimeUnlockArray(got);
    arraySetter(w, offset, nullptr);
    EXPECT_EQ(array->referenceCount, 1u);
    RuntimeUnlockArray(array);
    view->backdrop = oldBackdrop;

    SetFocus(nullptr);
    formSetFocus(w);
    EXPECT_EQ(FocusPane(), view->pane);
    SetFocus(nullptr);

    const Rect content = view->pane->CurrentScreenBounds();
    Display *display = GDK_DISPLAY_XDISPLAY(gdk_display_get_default());
    XWarpPointer(display, 0, DefaultRootWindow(display), 0, 0, 0, 0, content.left + 33,
                 content.top + 21);
    XSync(display, 0);
    EXPECT_EQ(windowMouseXGetter(w, 0), 33);
    EXPECT_EQ(windowMouseYGetter(w, 0), 21);
    WindowForceUpdateFrontBuffer(w);

    const intptr_t handle = WindowHandleGetter(w, 0);
    EXPECT_NE(handle, 0);
    EXPECT_EQ(windowHWNDGetter(w, 0), handle);
    EXPECT_EQ(windowWindowPtrGetter(w, 0), handle);
    EXPECT_EQ(WindowToWindowPtr(w), handle);
}

} // namespace
} // namespace kelp
