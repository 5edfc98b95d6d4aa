// Controls of plug-ins.  The control's class names three fixed functions in
// place of class code (constructor, destructor, CreatePane); the pane they
// make hands every toolkit event to the behaviour table the plug-in gave, and
// a null entry leaves the pane's own handling in place.
#include "plugins/custom_control.h"

#include "plugins/host.h"

#include "base/ascii.h"
#include "base/fatal_report.h"
#include "controls/control.h"
#include "controls/embedded.h"
#include "graphics/graphics_object.h"
#include "objects/object_model.h"
#include "objects/text.h"
#include "runloop/background_task.h"

#include "kelp/controls.h"
#include "kelp/objects.h"

namespace kelp::plugins {
namespace {

RuntimeCustomControl *Custom(RuntimeObject *o) {
    return reinterpret_cast<RuntimeCustomControl *>(o);
}

const KELPcontrolBehaviour *BehaviourOf(RuntimeObject *o) {
    const KELPcontrol *c = ControlRecordOf(o);
    return c ? c->behaviour : nullptr;
}

// Runs the control's idle entry every 10 ticks while its pane lives.
class pluginBackgroundTask : public BackgroundTask {
public:
    explicit pluginBackgroundTask(RuntimeObject *control) : BackgroundTask(10), mControl(control) {}
    void Run() override {
        if (const KELPcontrolBehaviour *b = BehaviourOf(mControl); b && b->backgroundIdle)
            b->backgroundIdle(mControl);
    }

private:
    RuntimeObject *mControl; // held by the pane that owns this task
};

class RuntimeCustomControlPane : public ControlPane {
public:
    explicit RuntimeCustomControlPane(RuntimeObject *object)
        : ControlPane(Ctl(object)), mObject(object), mBehaviour(BehaviourOf(object)) {
        const KELPcontrolBehaviour *b = mBehaviour;
        if (b && b->backgroundIdle)
            mIdle = new pluginBackgroundTask(object);
        if (b && b->open)
            b->open(object);
        GtkWidget *widget = nullptr;
        if (b && b->controlHandleGetter)
            widget = static_cast<GtkWidget *>(b->controlHandleGetter(object));
        if (!widget)
            widget = gtk_drawing_area_new();
        SetWidget(widget);
        if (!GTK_WIDGET_REALIZED(widget) && gtk_widget_get_toplevel(widget) &&
            GTK_WIDGET_TOPLEVEL(gtk_widget_get_toplevel(widget)))
            gtk_widget_realize(widget);
        g_signal_connect(widget, "expose-event", G_CALLBACK(OnExpose), this);
        gtk_widget_show(widget);
    }
    ~RuntimeCustomControlPane() override { CloseBehaviour(); }

    // Controls placed on a plug-in control that is a container (a placard)
    // are its children.
    bool HoldsControls() const override { return true; }
    bool PassesClicksThrough() override { return true; }
    // A control that sets the pointer itself keeps it while under it.
    bool AdjustCursor(int32_t, int32_t) override {
        const KELPcontrol *c = ControlRecordOf(mObject);
        return c && (c->flags & KELP_CONTROL_OWN_CURSOR);
    }
    bool CanFocus() override {
        const KELPcontrol *c = ControlRecordOf(mObject);
        return c && (c->flags & KELP_CONTROL_FOCUSABLE) && ControlPane::CanFocus();
    }

    void Draw(Graphics *g) override {
        if (!g || !visible || !mBehaviour || !mBehaviour->redraw)
            return;
        RuntimeObject *wrapper = NewGraphicsObject(g, false);
        mBehaviour->redraw(mObject, wrapper);
        DetachGraphicsObject(wrapper);
        RuntimeUnlockObject(wrapper);
    }

    // Entries that may fire an event run under the pane's event lock: a
    // handler may close the control, and with it this pane.
    bool MouseDown(int32_t x, int32_t y, int32_t modifiers) override {
        if (!mBehaviour || !mBehaviour->mouseDown)
            return ControlPane::MouseDown(x, y, modifiers);
        bool taken = false;
        if (!Guarded([&] { taken = mBehaviour->mouseDown(mObject, x, y) != 0; }))
            return true; // the pane is gone: nothing else may have the click
        mTracking = taken;
        return taken;
    }
    void MouseDrag(int32_t x, int32_t y) override {
        if (mTracking && mBehaviour->mouseDrag)
            Guarded([&] { mBehaviour->mouseDrag(mObject, x, y); });
    }
    void MouseUp(int32_t x, int32_t y) override {
        const bool tracking = mTracking;
        mTracking = false;
        if (tracking && mBehaviour->mouseUp)
            Guarded([&] { mBehaviour->mouseUp(mObject, x, y); });
    }
    void MouseEnter() override {
        if (mBehaviour && mBehaviour->mouseEnter)
            Guarded([&] { mBehaviour->mouseEnter(mObject); });
    }
    void MouseExit() override {
        if (mBehaviour && mBehaviour->mouseExit)
            Guarded([&] { mBehaviour->mouseExit(mObject); });
    }
    void MouseMove(int32_t x, int32_t y) override {
        if (mBehaviour && mBehaviour->mouseMove)
            Guarded([&] { mBehaviour->mouseMove(mObject, x, y); });
        else
            ControlPane::MouseMove(x, y);
    }
    bool MouseWheel(int32_t x, int32_t y, int32_t delta) override {
        if (!mBehaviour || !mBehaviour->mouseWheel)
            return ControlPane::MouseWheel(x, y, delta);
        bool taken = false;
        return !Guarded([&] { taken = mBehaviour->mouseWheel(mObject, x, y, delta) != 0; }) ||
               taken;
    }
    void GainFocus() override {
        if (mBehaviour && mBehaviour->gainedFocus)
            Guarded([&] { mBehaviour->gainedFocus(mObject); });
    }
    void LoseFocus() override {
        if (mBehaviour && mBehaviour->lostFocus)
            Guarded([&] { mBehaviour->lostFocus(mObject); });
    }
    bool KeyDown(int32_t character, int32_t code, int32_t modifiers) override {
        if (!mBehaviour || !mBehaviour->keyDown)
            return false;
        bool taken = false;
        return !Guarded([&] {
            taken = mBehaviour->keyDown(mObject, character, code, modifiers) != 0;
        }) || taken;
    }
    void Press() override {
        if (mBehaviour && mBehaviour->actionEvent)
            Guarded([&] { mBehaviour->actionEvent(mObject, 0); });
    }
    void SetEnabled(bool flag, bool repaint) override {
        const bool changed = flag != enabled;
        ControlPane::SetEnabled(flag, repaint);
        if (changed && mBehaviour && mBehaviour->stateChanged)
            mBehaviour->stateChanged(mObject, 2);
        if (changed)
            Invalidate(true);
    }
    void Close() override {
        CloseBehaviour();
        ControlPane::Close();
    }

private:
    // Runs `call` under the event lock; false when the pane died in it.
    template <typename F> bool Guarded(F call) {
        if (!LockForEvent())
            return false;
        call();
        return !UnlockAfterEvent();
    }

    // Once: the close entry, and the idle task goes with it.
    void CloseBehaviour() {
        if (mClosed)
            return;
        mClosed = true;
        delete mIdle;
        mIdle = nullptr;
        if (mBehaviour && mBehaviour->close)
            mBehaviour->close(mObject);
    }
    static gboolean OnExpose(GtkWidget *, GdkEventExpose *, gpointer data) {
        static_cast<RuntimeCustomControlPane *>(data)->Expose();
        return FALSE;
    }

    RuntimeObject *mObject; // the control; the pane's binding holds it
    const KELPcontrolBehaviour *mBehaviour;
    pluginBackgroundTask *mIdle = nullptr;
    bool mTracking = false, mClosed = false;
};

// Left (selector 0) and Top (1) as the control's record keeps them.
int32_t StoredPositionGetter(RuntimeObject *self, int32_t selector) {
    if (!self || (selector != 0 && selector != 1))
        return ctlPosGetter(self, selector);
    return selector == 0 ? Ctl(self)->bounds.left : Ctl(self)->bounds.top;
}

// The mirror: the value is in window coordinates, where the ordinary
// setter counts from the container view.
void StoredPositionSetter(RuntimeObject *self, int32_t selector, int32_t value) {
    if (!self || (selector != 0 && selector != 1))
        return ctlPosSetter(self, selector, value);
    auto [dx, dy] = ViewOrigin(Ctl(self)->view);
    ctlPosSetter(self, selector, value - (selector == 0 ? dx : dy));
}

} // namespace

void AnswerStoredPosition(RuntimeClass *control) {
    for (RuntimeClass *c = AllClassesHead(); c && control; c = c->nextClass) {
        if (!ClassInherits(c, control))
            continue;
        for (int32_t i = 0; i < c->propertyCount; ++i) {
            RuntimePropertyRow &row = c->propertyTable[i];
            std::string_view sig = objtext::View(row.signature);
            const std::string_view name = sig.substr(0, sig.find('%'));
            if (row.getter == reinterpret_cast<void *>(&ctlPosGetter) &&
                (AsciiEqualNoCase(name, "Left") || AsciiEqualNoCase(name, "Top"))) {
                row.getter = reinterpret_cast<void *>(&StoredPositionGetter);
                row.setter = reinterpret_cast<void *>(&StoredPositionSetter);
            }
        }
    }
}

const KELPcontrol *ControlRecordOf(RuntimeObject *object) {
    if (!object || !object->klass)
        return nullptr;
    Registered *r = ControlOfClass(object->klass);
    return r ? r->controlRecord : nullptr;
}

} // namespace kelp::plugins

using namespace kelp;
using namespace kelp::plugins;

extern "C" void CustomControlConstructor(RuntimeObject *object) {
    if (!object)
        return;
    Custom(object)->customFlag = 1;
    Registered *r = ControlOfClass(object->klass);
    KELP_ASSERT(r != nullptr, kReportFile, "pdefn");
    if (!r)
        return;
    Custom(object)->definition = r->controlRecord;
    const KELPcontrolBehaviour *b = r->controlRecord->behaviour;
    if (b && b->constructor)
        b->constructor(object);
}

extern "C" void CustomControlDestructor(RuntimeObject *object) {
    if (!object || !Custom(object)->definition)
        return;
    auto *pane = static_cast<ControlPane *>(Ctl(object)->pane);
    if (pane && !pane->IsClosing())
        pane->Close();
    const KELPcontrolBehaviour *b = Custom(object)->definition->behaviour;
    if (b && b->destructor)
        b->destructor(object);
    Ctl(object)->pane = nullptr;
}

extern "C" void CustomControlCreatePane(RuntimeObject *object) {
    if (!object || Ctl(object)->pane || !WindowForControl(Ctl(object)) ||
        !Custom(object)->definition)
        return;
    Ctl(object)->pane = new RuntimeCustomControlPane(object);
}
