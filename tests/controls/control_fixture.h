// A fixture for tests of controls on a real X server: a window class whose
// CreateControls makes controls the way compiled code does (a subclass per
// control, one _SetProperties string each, then _AddControl), a log of the
// handlers that ran, and passes of the run loop.
#pragma once

#include "controls/control.h"
#include "windows/runtime_view.h"

#include "app/application.h"
#include "objects/text.h"
#include "runloop/main_loop.h"
#include "support/class_kit.h"
#include "support/language_class.h"
#include "support/mass_data.h"
#include "support/x_input.h"
#include "support/xvfb.h"

#include "kelp/controls.h"
#include "kelp/exceptions.h"
#include "kelp/objects.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace kelp::test {

// What the handlers did, in order: "Action RadioButton1" and the like.
inline std::vector<std::string> &Events() {
    static std::vector<std::string> events;
    return events;
}

inline std::string NameOf(RuntimeObject *control) {
    return std::string(objtext::View(Ctl(control)->name));
}

// A control's place in a layout, and a handler as compiled code holds it.
inline MassData &Box(MassData &m, int left, int top, int width, int height) {
    return m.Int("Left", left).Int("Top", top).Int("Width", width).Int("Height", height);
}
inline void *H(auto fn) { return reinterpret_cast<void *>(fn); }

inline void LogChange(RuntimeObject *me) { Events().push_back("Change " + NameOf(me)); }

// Runs `act` as compiled code would, inside a handler region, and gives the
// class name of the exception it left pending, or "".
inline std::string Raised(const std::function<void()> &act) {
    RuntimeEnterHandlerRegion();
    act();
    RuntimeObject *e = RuntimeTakeException();
    RuntimeLeaveHandlerRegion();
    std::string name = e ? std::string(objtext::View(e->klass->name)) : "";
    RuntimeUnlockObject(e);
    return name;
}

inline void LogAction(RuntimeObject *me) { Events().push_back("Action " + NameOf(me)); }
inline void LogOpen(RuntimeObject *me) { Events().push_back("Open " + NameOf(me)); }
inline void LogClose(RuntimeObject *me) { Events().push_back("Close " + NameOf(me)); }
inline uint8_t TakeMouseDown(RuntimeObject *me, int32_t x, int32_t y) {
    Events().push_back("MouseDown " + NameOf(me) + " " + std::to_string(x) + "," +
                       std::to_string(y));
    return 1;
}
inline void LogMouseUp(RuntimeObject *me, int32_t, int32_t) {
    Events().push_back("MouseUp " + NameOf(me));
}

class ControlFixture : public ::testing::Test {
public:
    using Handler = std::pair<const char *, void *>;
    using Build = std::function<void(RuntimeObject *view)>;

    // Makes a control as compiled code does: a subclass of `base` named
    // after the control, the handlers, the properties, _AddControl.
    static RuntimeObject *Add(RuntimeObject *view, const char *base, const char *name,
                              const std::function<void(MassData &)> &properties,
                              std::initializer_list<Handler> handlers = {});

protected:
    void SetUp() override {
        if (!RequireToolkitDisplay())
            GTEST_SKIP() << "no X server";
        ResetRunState();
        Events().clear();
    }

    void TearDown() override {
        for (RuntimeObject *w : mWindows) {
            if (View(w)->pane)
                RuntimeCloseWindow(w);
            RuntimeUnlockObject(w);
        }
        mWindows.clear();
        Settle(20);
        ResetRunState();
    }

    static ViewRecord *View(RuntimeObject *w) { return reinterpret_cast<ViewRecord *>(w); }

    // A window of width x height at (100, 100) whose CreateControls runs
    // `build`, and whose `handlers` are set on its class.
    RuntimeObject *MakeWindow(int32_t width, int32_t height, Build build,
                              std::initializer_list<Handler> handlers = {}) {
        RuntimeClass *klass = MakeSubclass("Window", "wControls");
        EXPECT_NE(klass, nullptr);
        SetEventHandler(klass, "Layout", reinterpret_cast<void *>(&OnLayout));
        SetEventHandler(klass, "CreateControls", reinterpret_cast<void *>(&OnCreateControls));
        for (const Handler &h : handlers)
            EXPECT_TRUE(SetEventHandler(klass, h.first, h.second)) << h.first;
        Size() = {width, height};
        CreateStep() = std::move(build);
        RuntimeObject *w = RuntimeNewObject(klass);
        CreateStep() = nullptr;
        mWindows.push_back(w);
        Settle(150);
        return w;
    }

    static RuntimeObject *Find(RuntimeObject *view, const char *key) {
        KelpString text = MakeText(key);
        RuntimeObject *control = RuntimeControlFetch(view, text);
        objtext::Release(text);
        return control;
    }

    static GtkWidget *Widget(RuntimeObject *control) {
        return control ? static_cast<GtkWidget *>(controlMacControlHandleGetter(control, 0))
                       : nullptr;
    }
    static GtkWidget *Fixed(RuntimeObject *view) { return View(view)->pane->Fixed(); }

    // Clicks the middle of the control's left part (the indicator and
    // caption of a button), by real X input.
    void Click(RuntimeObject *view, RuntimeObject *control, int dx = 10) {
        ASSERT_TRUE(ClickAt(Fixed(view), ctlPosGetter(control, 0) + dx,
                            ctlPosGetter(control, 1) + ctlPosGetter(control, 3) / 2));
        Settle(80);
    }
    void Key(const char *name) {
        ASSERT_TRUE(PressKey(name));
        Settle(80);
    }
    void Focus(RuntimeObject *view) {
        FocusToplevel(Fixed(view));
        Settle(80);
    }

    // The colour the X server shows at a point of the window.
    static uint32_t Pixel(RuntimeObject *w, int x, int y) {
        GdkPixbuf *p =
            gdk_pixbuf_get_from_drawable(nullptr, Fixed(w)->window, nullptr, x, y, 0, 0, 1, 1);
        if (!p)
            return 0xdeadbeef;
        const guchar *px = gdk_pixbuf_get_pixels(p);
        uint32_t rgb = (px[0] << 16) | (px[1] << 8) | px[2];
        g_object_unref(p);
        return rgb;
    }

    // Runs the loop for `ms`, and past that until every event the X server
    // has sent so far is handled: on a loaded machine the time alone may
    // pass before a click that xdotool has already made arrives.
    void Settle(int ms) {
        guint wake = g_timeout_add(
            5, [](gpointer) -> gboolean { return TRUE; }, nullptr);
        auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
        while (std::chrono::steady_clock::now() < end) {
            MainLoopStep(true);
            gdk_flush();
        }
        gdk_flush(); // a round trip: what the server sent before it is queued here
        for (int i = 0; i < 1000 && gtk_events_pending(); ++i)
            MainLoopStep(true);
        g_source_remove(wake);
    }

    std::vector<RuntimeObject *> mWindows;

private:
    static std::pair<int32_t, int32_t> &Size() {
        static std::pair<int32_t, int32_t> size;
        return size;
    }
    static Build &CreateStep() {
        static Build step;
        return step;
    }
    static void OnLayout(RuntimeObject *self) {
        ViewRecord *v = View(self);
        v->width = Size().first;
        v->height = Size().second;
        v->left = 100;
        v->top = 100;
        v->frame = 4; // a plain box: no frame, so the content is where we put it
        v->placement = 0;
        v->hasBackColor = 1;
        v->backColor = 0xffffff;
    }
    static void OnCreateControls(RuntimeObject *self) {
        if (CreateStep())
            CreateStep()(self);
    }
};

inline RuntimeObject *ControlFixture::Add(RuntimeObject *view, const char *base, const char *name,
                                          const std::function<void(MassData &)> &properties,
                                          std::initializer_list<Handler> handlers) {
    RuntimeClass *klass = MakeSubclass(base, name);
    EXPECT_NE(klass, nullptr) << base;
    for (const Handler &h : handlers)
        EXPECT_TRUE(SetEventHandler(klass, h.first, h.second)) << name << " " << h.first;
    RuntimeObject *control = RuntimeNewObject(klass);
    MassData data(klass);
    properties(data);
    KelpString bytes = data.Make();
    RuntimeMassPropertySetter(control, bytes);
    objtext::Release(bytes);
    KelpString key = MakeText(name);
    WindowAddControl(view, key, control);
    objtext::Release(key);
    RuntimeUnlockObject(control); // the window's map holds it
    return control;
}

} // namespace kelp::test
