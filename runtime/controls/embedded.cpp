// ContainerControl and EmbeddedWindowControl: a view shown as a control of
// another window.  The embedded control's pane is an empty GtkFixed that
// paints the view's back colour; the view's controls lie on it, so they are
// hidden, disabled and moved with it, and they take their places in the
// host's tab order right behind it: Tab walks into the container and out
// of it again as if its controls were the host's own.
#include "controls/embedded.h"

#include "controls/classes.h"
#include "controls/control_map.h"

#include "base/fatal_report.h"
#include "graphics/graphics_base.h"
#include "objects/definitions.h"
#include "objects/object_model.h"

#include "kelp/controls.h"
#include "kelp/objects.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace kelp {
namespace {

constexpr const char *kFile = "runtime/controls/embedded.cpp";
// Containers nest; a chain longer than this is a loop, not a layout.
constexpr int kMaxNesting = 32;

ObjectHook *gGotFocus, *gLostFocus;

ContainerRecord *Container(RuntimeObject *view) {
    return reinterpret_cast<ContainerRecord *>(view);
}
EmbeddedRecord *Embedded(RuntimeObject *control) {
    return reinterpret_cast<EmbeddedRecord *>(control);
}

class EmbeddedPane : public ControlPane {
public:
    explicit EmbeddedPane(EmbeddedRecord *record) : ControlPane(&record->control) {
        SetWidget(gtk_fixed_new());
        g_signal_connect(mWidget, "expose-event", G_CALLBACK(OnExpose), this);
        gtk_widget_show(mWidget);
    }

    RuntimeObject *View() const {
        return mRunControl ? Embedded(mRunControl)->templateWindow : nullptr;
    }

    bool HoldsControls() const override { return true; }
    bool PassesClicksThrough() override { return true; }
    bool CanFocus() override { return false; }

    bool MouseDown(int32_t x, int32_t y, int32_t modifiers) override {
        bool native;
        return OfferPressToChildren(x, y, modifiers, &native);
    }
    void MouseDrag(int32_t x, int32_t y) override { DragCapturedChild(x, y); }
    void MouseUp(int32_t x, int32_t y) override { ReleaseCapturedChild(x, y); }

    // The view's back colour, when it has one; the controls paint
    // themselves on top.
    void Draw(Graphics *g) override {
        auto *view = reinterpret_cast<ViewRecord *>(View());
        KELP_ASSERT(view != nullptr, kFile, "tw");
        if (!g || !view || !visible || !panelVisible || !view->hasBackColor)
            return;
        g->SetForeColor(ColorWordToRGB(uint32_t(view->backColor)));
        g->FillRect(bounds);
    }

private:
    static gboolean OnExpose(GtkWidget *, GdkEventExpose *, gpointer data) {
        static_cast<EmbeddedPane *>(data)->Expose();
        return FALSE;
    }
};

// The container views whose embedded panes hold the pane, innermost first.
std::vector<RuntimeObject *> ContainersAround(SubPane *pane) {
    std::vector<RuntimeObject *> views;
    for (SubPane *p = pane ? pane->Parent() : nullptr; p; p = p->Parent())
        if (auto *embedded = dynamic_cast<EmbeddedPane *>(p); embedded && embedded->View())
            views.push_back(embedded->View());
    return views;
}

} // namespace

bool IsContainerView(RuntimeObject *object) {
    static RuntimeClass *container = ClassForDefinition(ContainerControlDefinition());
    return object && ClassInherits(object->klass, container);
}

RuntimeObject *EmbeddedControlOf(RuntimeObject *view) {
    return IsContainerView(view) ? Container(view)->embeddedControl : nullptr;
}

RuntimeObject *TemplateWindowOf(RuntimeObject *control) {
    static RuntimeClass *embedded = ClassForDefinition(EmbeddedWindowControlDefinition());
    return control && ClassInherits(control->klass, embedded) ? Embedded(control)->templateWindow
                                                              : nullptr;
}

Window *HostWindowOf(RuntimeObject *view) {
    for (int depth = 0; view && depth < kMaxNesting; ++depth) {
        RuntimeObject *control = EmbeddedControlOf(view);
        if (!control)
            return reinterpret_cast<ViewRecord *>(view)->pane;
        view = Ctl(control)->view;
    }
    return nullptr;
}

std::pair<int32_t, int32_t> ViewOrigin(RuntimeObject *view) {
    RuntimeObject *control = EmbeddedControlOf(view);
    if (!control || !Container(view)->anchored)
        return {0, 0};
    return {Ctl(control)->bounds.left, Ctl(control)->bounds.top};
}

void ShiftViewControls(RuntimeObject *view, int32_t dx, int32_t dy) {
    static int depth = 0;
    if ((!dx && !dy) || depth >= kMaxNesting)
        return;
    ++depth;
    auto shift = [dx, dy](KelpRect &b) {
        b.left = int16_t(b.left + dx), b.right = int16_t(b.right + dx);
        b.top = int16_t(b.top + dy), b.bottom = int16_t(b.bottom + dy);
    };
    for (RuntimeObject *object : ControlsOfView(view)) {
        if (IsControl(object)) {
            shift(Ctl(object)->bounds);
        } else if (RuntimeObject *control = EmbeddedControlOf(object)) {
            shift(Ctl(control)->bounds);
            if (Container(object)->anchored)
                ShiftViewControls(object, dx, dy);
        }
    }
    --depth;
}

bool MakeEmbeddedControl(ViewRecord *record) {
    RuntimeObject *view = &record->object;
    if (!IsContainerView(view))
        return false;
    if (!Container(view)->embeddedControl) {
        RuntimeObject *control =
            RuntimeNewObject(ClassForDefinition(EmbeddedWindowControlDefinition()));
        if (control)
            Embedded(control)->templateWindow = view;
        Container(view)->embeddedControl = control; // the new object's one reference
    }
    return true;
}

void FollowContainerFocus(SubPane *from, SubPane *to) {
    std::vector<RuntimeObject *> left = ContainersAround(from), entered = ContainersAround(to);
    auto has = [](const std::vector<RuntimeObject *> &views, RuntimeObject *v) {
        return std::find(views.begin(), views.end(), v) != views.end();
    };
    // Held across the events: a handler may close its container.
    std::vector<RuntimeObject *> held = left;
    held.insert(held.end(), entered.begin(), entered.end());
    for (RuntimeObject *v : held)
        RuntimeLockObject(v);
    for (RuntimeObject *v : left) // innermost first
        if (!has(entered, v))
            CallEvent(v, gLostFocus);
    for (auto it = entered.rbegin(); it != entered.rend(); ++it) // outermost first
        if (!has(left, *it))
            CallEvent(*it, gGotFocus);
    for (RuntimeObject *v : held)
        RuntimeUnlockObject(v);
}

} // namespace kelp

// ------------------------------------------------------------- exports

using namespace kelp;

extern "C" void EmbeddedWindowControlInitializer(RuntimeObject *self) {
    if (self)
        Embedded(self)->templateWindow = nullptr;
}

extern "C" void EmbeddedWindowControlFinalizer(RuntimeObject *self) {
    if (self)
        Embedded(self)->templateWindow = nullptr;
}

// The pane takes the container's size at the control's corner.
extern "C" void EmbeddedWindowControlCreatePane(RuntimeObject *self) {
    RuntimeObject *view = TemplateWindowOf(self);
    KELP_ASSERT(view != nullptr, kFile, "templateWindow");
    if (!view)
        return;
    auto *record = reinterpret_cast<ViewRecord *>(view);
    KelpRect &b = Ctl(self)->bounds;
    b.right = int16_t(b.left + record->width);
    b.bottom = int16_t(b.top + record->height);
    MakePane<EmbeddedPane, EmbeddedRecord>(self);
}

extern "C" void ContainerControlFinalizer(RuntimeObject *self) {
    if (!IsContainerView(self))
        return;
    RuntimeObject *control = Container(self)->embeddedControl;
    Container(self)->embeddedControl = nullptr;
    if (!control)
        return;
    KELP_ASSERT(Embedded(control)->templateWindow == self, kFile,
                "templateWindow->mEmbeddedWindowControl");
    Embedded(control)->templateWindow = nullptr;
    if (ControlPane *pane = PaneOf(control)) {
        Ctl(control)->pane = nullptr;
        pane->Close();
    }
    RuntimeUnlockObject(control);
}

// Places the container in a window at run time, at (left, top) of the
// window with the given size; it is bound and opened at once when the
// window is built.  A view that isn't a container, or one placed already,
// is left as it is.
extern "C" void EmbedWithin(RuntimeObject *view, RuntimeObject *parentWindow, int32_t left,
                            int32_t top, int32_t width, int32_t height) {
    RuntimeObject *control = EmbeddedControlOf(view);
    if (!control || !parentWindow || Ctl(control)->view)
        return;
    auto *record = reinterpret_cast<ViewRecord *>(view);
    record->left = left, record->top = top, record->width = width, record->height = height;
    RuntimeClass *klass = GetObjectClass(view);
    WindowAddControl(parentWindow, klass ? klass->name : nullptr, view);
}

// The same inside a control: the place is relative to the control.
extern "C" void EmbedWithinControl(RuntimeObject *view, RuntimeObject *containingControl,
                                   int32_t left, int32_t top, int32_t width, int32_t height) {
    if (!IsControl(containingControl) || !Ctl(containingControl)->view)
        return;
    EmbedWithin(view, Ctl(containingControl)->view, ctlPosGetter(containingControl, 0) + left,
                ctlPosGetter(containingControl, 1) + top, width, height);
}

// The same on a page (0-based) of a tab or page panel.
extern "C" void EmbedWithinPanel(RuntimeObject *view, RuntimeObject *containingPanel, int32_t page,
                                 int32_t left, int32_t top, int32_t width, int32_t height) {
    if (RuntimeObject *control = EmbeddedControlOf(view))
        Ctl(control)->tabPanelIndex = page;
    EmbedWithinControl(view, containingPanel, left, top, width, height);
}

namespace kelp {

ObjectDefinition *EmbeddedWindowControlDefinition() {
    static const HookInstanceRow hooks[] = {
        {"CreatePane", reinterpret_cast<void *>(&EmbeddedWindowControlCreatePane)}};
    static const ClassDescription description = {
        .name = "EmbeddedWindowControl",
        .super = RectControlDefinition,
        .instanceSize = sizeof(EmbeddedRecord),
        .initializer = KELP_ENTRY(EmbeddedWindowControlInitializer),
        .finalizer = KELP_ENTRY(EmbeddedWindowControlFinalizer),
        .hookInstances = hooks,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *ContainerControlDefinition() {
    static const EventRow events[] = {
        {"GotFocus", "", nullptr, &gGotFocus},
        {"LostFocus", "", nullptr, &gLostFocus},
    };
    static const ClassDescription description = {
        .name = "ContainerControl",
        .super = WindowDefinition,
        .instanceSize = sizeof(ContainerRecord),
        .finalizer = KELP_ENTRY(ContainerControlFinalizer),
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
