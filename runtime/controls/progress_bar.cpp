// ProgressBar: a GtkProgressBar showing Value / Maximum.  A Maximum below
// 1 means no known end: the bar pulses every ten ticks while it is shown.
#include "controls/progress_bar.h"

#include "controls/control.h"

#include "controls/classes.h"
#include "objects/definitions.h"
#include "runloop/background_task.h"

#include "kelp/control_accessors.h"
#include "kelp/controls.h"
#include "kelp/objects.h"

#include <algorithm>
#include <cstddef>
#include <memory>

namespace kelp {
namespace {

ObjectHook *gMouseDown, *gMouseDrag, *gMouseUp;

struct ProgressRecord {
    RuntimeControl control;
    int32_t value, maximum;
};

class ProgressBarPane;

class PulseTask : public BackgroundTask {
public:
    explicit PulseTask(ProgressBarPane *pane) : BackgroundTask(10), mPane(pane) {}
    void Run() override;
    int32_t pulses = 0;

private:
    ProgressBarPane *mPane;
};

class ProgressBarPane : public ControlPane {
public:
    explicit ProgressBarPane(ProgressRecord *record) : ControlPane(&record->control) {
        SetWidget(gtk_progress_bar_new());
        mValue = record->value;
        SetMaximum(record->maximum);
        gtk_widget_show(mWidget);
    }
    ~ProgressBarPane() override { mPulse.reset(); }

    void SetValue(int32_t value) {
        mValue = value;
        if (mMaximum > 0)
            gtk_progress_bar_set_fraction(GTK_PROGRESS_BAR(mWidget),
                                          std::clamp(double(mValue) / mMaximum, 0.0, 1.0));
    }
    void SetMaximum(int32_t maximum) {
        mMaximum = maximum;
        if (maximum > 0) {
            mPulse.reset();
            SetValue(mValue);
        } else if (!mPulse) {
            gtk_progress_bar_set_pulse_step(GTK_PROGRESS_BAR(mWidget), 0.1);
            gtk_progress_bar_pulse(GTK_PROGRESS_BAR(mWidget));
            mPulse = std::make_unique<PulseTask>(this);
        }
    }
    void Pulse() {
        if (visible && !closing)
            gtk_progress_bar_pulse(GTK_PROGRESS_BAR(mWidget));
    }
    int32_t Pulses() const { return mPulse ? mPulse->pulses : -1; }

    bool PassesClicksThrough() override { return true; }
    bool MouseDown(int32_t x, int32_t y, int32_t) override {
        bool alive;
        mMouseHandled = enabled && FireLocked<uint8_t>(gMouseDown, &alive, x, y);
        return mMouseHandled;
    }
    void MouseDrag(int32_t x, int32_t y) override { FireMouseDrag(gMouseDrag, x, y); }
    void MouseUp(int32_t x, int32_t y) override { FireMouseUp(gMouseUp, x, y); }

private:
    int32_t mValue = 0, mMaximum = 0;
    std::unique_ptr<PulseTask> mPulse;
};

void PulseTask::Run() {
    ++pulses;
    mPane->Pulse();
}

} // namespace

int32_t ProgressBarPulses(RuntimeObject *control) {
    ProgressBarPane *pane = PaneOf<ProgressBarPane>(control);
    return pane ? pane->Pulses() : -1;
}

} // namespace kelp

using namespace kelp;

extern "C" void ProgressBarCreatePane(RuntimeObject *self) {
    MakePane<ProgressBarPane, ProgressRecord>(self);
}

extern "C" void progressBarValueSetter(RuntimeObject *self, int32_t, int32_t value) {
    StoreAndShow(self, &ProgressRecord::value, value, &ProgressBarPane::SetValue);
}

extern "C" void progressBarMaximumSetter(RuntimeObject *self, int32_t, int32_t value) {
    StoreAndShow(self, &ProgressRecord::maximum, value, &ProgressBarPane::SetMaximum);
}

// The bar shows what the record holds, so the record answers.
extern "C" int32_t progressValueGetter(RuntimeObject *self, int32_t) {
    return self ? reinterpret_cast<ProgressRecord *>(self)->value : 0;
}

extern "C" int32_t progressMaximumGetter(RuntimeObject *self, int32_t) {
    return self ? reinterpret_cast<ProgressRecord *>(self)->maximum : 0;
}

namespace kelp {

ObjectDefinition *ProgressBarDefinition() {
    static const PropertyRow properties[] = {
        {0, "Value", &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(progressBarValueSetter),
         offsetof(ProgressRecord, value)},
        {0, "Maximum", &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(progressBarMaximumSetter),
         offsetof(ProgressRecord, maximum)},
    };
    static const EventRow events[] = {
        {"MouseDown", "X As Integer, Y As Integer", "Boolean", &gMouseDown},
        {"MouseDrag", "X As Integer, Y As Integer", nullptr, &gMouseDrag},
        {"MouseUp", "X As Integer, Y As Integer", nullptr, &gMouseUp},
    };
    static const HookInstanceRow hooks[] = {
        {"CreatePane", reinterpret_cast<void *>(&ProgressBarCreatePane)},
    };
    static const ClassDescription description = {
        .name = "ProgressBar",
        .super = RectControlDefinition,
        .instanceSize = sizeof(ProgressRecord),
        .properties = properties,
        .events = events,
        .hookInstances = hooks,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
