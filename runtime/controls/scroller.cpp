// ScrollBar and Slider: one pane on a GtkRange, a scroll bar or a scale
// without its value text, upright when the control is taller than wide.
// A range whose Maximum is not above its Minimum can't exist in the
// toolkit: the pane keeps the value pending and shows disabled until the
// range is sound again.
#include "controls/control.h"

#include "controls/classes.h"
#include "objects/definitions.h"

#include "kelp/controls.h"
#include "kelp/objects.h"

#include <algorithm>
#include <cstddef>

namespace kelp {
namespace {

struct ScrollerRecord {
    RuntimeControl control;
    int32_t minimum, value, maximum, lineStep, pageStep;
    uint8_t liveScroll, busy;
};

ScrollerRecord *Record(RuntimeObject *o) { return reinterpret_cast<ScrollerRecord *>(o); }

struct ScrollerHooks {
    ObjectHook *valueChanged, *gotFocus, *lostFocus, *mouseDown, *mouseDrag, *mouseUp;
};
ScrollerHooks gScrollBar, gSlider;

class ScrollerPane : public ControlPane {
public:
    ScrollerPane(ScrollerRecord *record, bool slider, const ScrollerHooks *hooks)
        : ControlPane(&record->control), mHooks(hooks) {
        const bool upright = height > width;
        GtkWidget *w = slider
                           ? (upright ? gtk_vscale_new(nullptr) : gtk_hscale_new(nullptr))
                           : (upright ? gtk_vscrollbar_new(nullptr) : gtk_hscrollbar_new(nullptr));
        if (slider)
            gtk_scale_set_draw_value(GTK_SCALE(w), FALSE);
        gtk_range_set_update_policy(GTK_RANGE(w), record->liveScroll ? GTK_UPDATE_CONTINUOUS
                                                                     : GTK_UPDATE_DISCONTINUOUS);
        gtk_range_set_range(GTK_RANGE(w), 0, 100);
        gtk_range_set_increments(GTK_RANGE(w), 1, 20);
        SetWidget(w);
        ConnectCommonSignals();
        SetMinimum(record->minimum);
        SetMaximum(record->maximum);
        SetSteps(record->lineStep, record->pageStep);
        SetValue(record->value);
        mLast = GetValue();
        g_signal_connect(w, "value-changed", G_CALLBACK(OnValueChanged), this);
        gtk_widget_show(w);
    }

    GtkAdjustment *Adjustment() const { return gtk_range_get_adjustment(GTK_RANGE(mWidget)); }
    int32_t GetValue() const { return int32_t(gtk_range_get_value(GTK_RANGE(mWidget))); }
    void SetValue(int32_t v) { gtk_range_set_value(GTK_RANGE(mWidget), v); }
    int32_t Minimum() const { return mMinPending ? mMin : int32_t(Adjustment()->lower); }
    int32_t Maximum() const { return mMaxPending ? mMax : int32_t(Adjustment()->upper); }

    void SetMinimum(int32_t v) {
        mMin = v;
        Apply(v, Maximum(), true);
    }
    void SetMaximum(int32_t v) {
        mMax = v;
        Apply(Minimum(), v, false);
        if (!mMaxPending && GetValue() > v)
            SetValue(v);
    }
    void SetSteps(int32_t line, int32_t page) {
        gtk_range_set_increments(GTK_RANGE(mWidget), line, page);
    }

    bool MouseDown(int32_t x, int32_t y, int32_t) override {
        return enabled && !closing && FireMouseDown(mHooks->mouseDown, x, y);
    }
    void MouseUp(int32_t x, int32_t y) override { FireMouseUp(mHooks->mouseUp, x, y); }
    void GainFocus() override { FireFocus(mHooks->gotFocus); }
    void LoseFocus() override { FireFocus(mHooks->lostFocus); }

private:
    // A range the toolkit can hold is applied; otherwise the asked value
    // waits and the pane shows disabled.
    void Apply(int32_t min, int32_t max, bool minimumAsked) {
        if (min >= max) {
            (minimumAsked ? mMinPending : mMaxPending) = true;
            SetEnabled(false, true);
            return;
        }
        mMinPending = mMaxPending = false;
        gtk_range_set_range(GTK_RANGE(mWidget), min, max);
        if (mRunControl ? Ctl(mRunControl)->enabled : true)
            SetEnabled(true, true);
    }

    // The router: one ValueChanged per new value; changes made while one
    // runs fire nothing.
    static void OnValueChanged(GtkRange *, gpointer data) {
        auto *pane = static_cast<ScrollerPane *>(data);
        int32_t v = pane->GetValue();
        if (v == pane->mLast || !pane->mRunControl || pane->closing)
            return;
        pane->mLast = v;
        ScrollerRecord *record = Record(pane->mRunControl);
        record->value = v;
        if (record->busy)
            return;
        RuntimeObject *control = pane->mRunControl;
        RuntimeLockObject(control);
        record->busy = 1;
        bool alive;
        pane->FireLocked(pane->mHooks->valueChanged, &alive);
        record->busy = 0;
        RuntimeUnlockObject(control);
    }

    const ScrollerHooks *mHooks;
    int32_t mMin = 0, mMax = 100, mLast = 0;
    bool mMinPending = false, mMaxPending = false;
};

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" void ScrollBarCreatePane(RuntimeObject *self) {
    MakePane<ScrollerPane, ScrollerRecord>(self, false, &gScrollBar);
}

extern "C" void SliderCreatePane(RuntimeObject *self) {
    MakePane<ScrollerPane, ScrollerRecord>(self, true, &gSlider);
}

// Selectors 0 Minimum, 1 Value, 2 Maximum, 3 LineStep, 4 PageStep.
extern "C" int32_t scrollerPropGetter(RuntimeObject *self, int32_t selector) {
    if (!self)
        return 0;
    ScrollerRecord *r = Record(self);
    ScrollerPane *pane = PaneOf<ScrollerPane>(self);
    switch (selector) {
    case 0: return pane ? pane->Minimum() : r->minimum;
    case 1: return pane ? pane->GetValue() : r->value;
    case 2: return pane ? pane->Maximum() : r->maximum;
    case 3: return pane ? int32_t(pane->Adjustment()->step_increment) : r->lineStep;
    case 4: return pane ? int32_t(pane->Adjustment()->page_increment) : r->pageStep;
    default: return 0;
    }
}

extern "C" void scrollerPropSetter(RuntimeObject *self, int32_t selector, int32_t value) {
    if (!self || selector < 0 || selector > 4)
        return;
    ScrollerRecord *r = Record(self);
    int32_t *fields[] = {&r->minimum, &r->value, &r->maximum, &r->lineStep, &r->pageStep};
    *fields[selector] = value;
    ScrollerPane *pane = PaneOf<ScrollerPane>(self);
    if (!pane)
        return;
    switch (selector) {
    case 0: pane->SetMinimum(value); break;
    case 1: pane->SetValue(value); break;
    case 2: pane->SetMaximum(value); break;
    default: pane->SetSteps(r->lineStep, r->pageStep); break;
    }
}

extern "C" void ScrollerLiveScrollSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (self)
        Record(self)->liveScroll = value != 0;
}

extern "C" void ScrollerInitializer(RuntimeObject *self) {
    if (!self)
        return;
    ScrollerRecord *r = Record(self);
    r->maximum = 100, r->lineStep = 1, r->pageStep = 20;
}

namespace kelp {
namespace {

// One definition per class, each with rows of its own: the hooks differ.
template <ScrollerHooks *hooks, void (*createPane)(RuntimeObject *)>
ObjectDefinition *ScrollerDefinition(const char *name) {
    static const PropertyRow properties[] = {
        {0, "Minimum", &kTypeInteger, KELP_ENTRY(scrollerPropGetter),
         KELP_ENTRY(scrollerPropSetter), 0},
        {0, "Value", &kTypeInteger, KELP_ENTRY(scrollerPropGetter), KELP_ENTRY(scrollerPropSetter),
         1},
        {0, "Maximum", &kTypeInteger, KELP_ENTRY(scrollerPropGetter),
         KELP_ENTRY(scrollerPropSetter), 2},
        {0, "LineStep", &kTypeInteger, KELP_ENTRY(scrollerPropGetter),
         KELP_ENTRY(scrollerPropSetter), 3},
        {0, "PageStep", &kTypeInteger, KELP_ENTRY(scrollerPropGetter),
         KELP_ENTRY(scrollerPropSetter), 4},
        {0, "LiveScroll", &kTypeBoolean, KELP_ENTRY(boolGetter),
         KELP_ENTRY(ScrollerLiveScrollSetter), offsetof(ScrollerRecord, liveScroll)},
    };
    static const EventRow events[] = {
        {"ValueChanged", "", nullptr, &hooks->valueChanged},
        {"GotFocus", "", nullptr, &hooks->gotFocus},
        {"LostFocus", "", nullptr, &hooks->lostFocus},
        {"MouseDown", "X As Integer, Y As Integer", "Boolean", &hooks->mouseDown},
        {"MouseDrag", "X As Integer, Y As Integer", nullptr, &hooks->mouseDrag},
        {"MouseUp", "X As Integer, Y As Integer", nullptr, &hooks->mouseUp},
    };
    static const HookInstanceRow hook[] = {{"CreatePane", reinterpret_cast<void *>(createPane)}};
    static const ClassDescription description = {
        .name = name,
        .super = RectControlDefinition,
        .instanceSize = sizeof(ScrollerRecord),
        .initializer = KELP_ENTRY(ScrollerInitializer),
        .properties = properties,
        .events = events,
        .hookInstances = hook,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace

ObjectDefinition *ScrollBarDefinition() {
    return ScrollerDefinition<&gScrollBar, &ScrollBarCreatePane>("ScrollBar");
}

ObjectDefinition *SliderDefinition() {
    return ScrollerDefinition<&gSlider, &SliderCreatePane>("Slider");
}

} // namespace kelp
