// RadioButton: a GtkRadioButton in a group keyed by its parent pane and
// page.  Each group also holds a hidden button that is never shown, so that
// a group can read all false: setting Value false on the active button
// activates the hidden one instead.  A click fires one Action, on the button
// that became active.
//
// Keyboard: Tab stops at the selected button of a group, or at the group's
// first button while none is selected; the arrow keys move among the
// buttons and select as they go, and Space selects the focused one.
#include "controls/captioned.h"

#include "controls/classes.h"
#include "objects/definitions.h"
#include "panes/pane_root.h"

#include "kelp/controls.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace kelp {
namespace {

ObjectHook *gAction, *gMouseDown, *gMouseUp, *gGotFocus, *gLostFocus;

// One group of the process.  Records only grow in number; a record whose
// buttons are all gone keeps no widget.
struct RadioGroupRecord {
    GtkWidget *hiddenButton = nullptr; // counted; null once the group emptied
    const SubPane *parentPane = nullptr;
    int32_t panelIndex = 0;
    int32_t refCount = 0;           // live buttons
    std::vector<SubPane *> members; // in joining order: the first takes Tab
};

std::vector<RadioGroupRecord> &Groups() {
    static auto *groups = new std::vector<RadioGroupRecord>();
    return *groups;
}

class RadioButtonPane : public CaptionedPane {
public:
    explicit RadioButtonPane(CaptionedControl *record) : CaptionedPane(&record->control) {
        RadioGroupRecord &group = Join(Parent(), record->control.tabPanelIndex + 1);
        SetWidget(gtk_radio_button_new_with_label(
            gtk_radio_button_get_group(GTK_RADIO_BUTTON(group.hiddenButton)), ""));
        SetCaption(record->caption);
        SetFont(record->font);
        ConnectCommonSignals();
        g_signal_connect(mWidget, "toggled", G_CALLBACK(OnToggled), this);
        gtk_widget_show(mWidget);
        SetValue(record->value != 0);
    }
    ~RadioButtonPane() override { Leave(); }

    void SetValue(bool flag) override {
        if (!mWidget)
            return;
        if (flag) {
            gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(mWidget), TRUE);
        } else if (GetValue() && mGroup >= 0 && Groups()[mGroup].hiddenButton) {
            gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(Groups()[mGroup].hiddenButton), TRUE);
        }
    }

    // Tab stops at the selected button, or at the first while none is.
    bool CanFocus() override {
        if (!ControlPane::CanFocus())
            return false;
        if (GetValue() || FocusPane() == this)
            return true;
        if (mGroup < 0)
            return false;
        for (SubPane *member : Groups()[mGroup].members) {
            auto *radio = static_cast<RadioButtonPane *>(member);
            if (radio->GetValue())
                return false;
        }
        for (SubPane *member : Groups()[mGroup].members)
            if (member->enabled && member->visible)
                return member == this;
        return false;
    }

    // The arrow keys move the focus through the group in the order the
    // buttons lie (wrapping round).  With a chosen button in the group the
    // move chooses too, as the toolkit's own radio buttons do; with none
    // chosen it only moves, and Space chooses.
    bool KeyDown(int32_t character, int32_t code, int32_t modifiers) override {
        if (character < 28 || character > 31 || mGroup < 0)
            return ControlPane::KeyDown(character, code, modifiers);
        const bool vertical = character >= 30, forward = character == 29 || character == 31;
        std::vector<RadioButtonPane *> order;
        bool anyChosen = false;
        for (SubPane *member : Groups()[mGroup].members) {
            auto *radio = static_cast<RadioButtonPane *>(member);
            anyChosen = anyChosen || radio->GetValue();
            if (radio == this || (radio->enabled && radio->visible && radio->panelVisible))
                order.push_back(radio);
        }
        std::stable_sort(order.begin(), order.end(), [vertical](SubPane *a, SubPane *b) {
            return vertical ? std::pair(a->bounds.top, a->bounds.left) <
                                  std::pair(b->bounds.top, b->bounds.left)
                            : std::pair(a->bounds.left, a->bounds.top) <
                                  std::pair(b->bounds.left, b->bounds.top);
        });
        auto at = std::find(order.begin(), order.end(), this) - order.begin();
        auto n = static_cast<long>(order.size());
        RadioButtonPane *next = order[static_cast<size_t>((at + (forward ? 1 : n - 1)) % n)];
        if (next == this)
            return true;
        if (PaneRoot *root = Root())
            root->SetStoredFocus(next);
        gtk_widget_grab_focus(next->mWidget);
        kelp::SetFocus(next);
        if (anyChosen)
            next->SetValue(true);
        return true;
    }

    bool MouseDown(int32_t x, int32_t y, int32_t) override {
        return enabled && !closing && FireMouseDown(gMouseDown, x, y);
    }
    void MouseUp(int32_t x, int32_t y) override { FireMouseUp(gMouseUp, x, y); }
    void GainFocus() override { FireFocus(gGotFocus); }
    void LoseFocus() override { FireFocus(gLostFocus); }

private:
    RadioGroupRecord &Join(const SubPane *parent, int32_t page) {
        auto &groups = Groups();
        for (size_t i = 0; i < groups.size(); ++i)
            if (groups[i].parentPane == parent && groups[i].panelIndex == page &&
                groups[i].hiddenButton) {
                mGroup = static_cast<int32_t>(i);
                ++groups[i].refCount;
                groups[i].members.push_back(this);
                return groups[i];
            }
        RadioGroupRecord fresh;
        fresh.hiddenButton = gtk_radio_button_new_with_label(nullptr, "");
        g_object_ref_sink(fresh.hiddenButton);
        fresh.parentPane = parent;
        fresh.panelIndex = page;
        fresh.refCount = 1;
        fresh.members.push_back(this);
        groups.push_back(fresh);
        mGroup = static_cast<int32_t>(groups.size() - 1);
        return groups.back();
    }

    void Leave() {
        if (mGroup < 0)
            return;
        RadioGroupRecord &group = Groups()[mGroup];
        mGroup = -1;
        auto &m = group.members;
        m.erase(std::remove(m.begin(), m.end(), static_cast<SubPane *>(this)), m.end());
        if (--group.refCount > 0)
            return;
        // The last button went: the group's hidden button goes with it, and
        // a later button in the same place starts a fresh group.
        GtkWidget *hidden = group.hiddenButton;
        group.hiddenButton = nullptr;
        group.parentPane = nullptr;
        gtk_widget_destroy(hidden);
        g_object_unref(hidden);
    }

    // The router's Checked: store the value, then one Action unless one
    // is running already for this control.
    void Checked() {
        if (!mRunControl)
            return;
        CaptionedControl *record = Captioned(mRunControl);
        record->value = 1;
        if (record->busy)
            return;
        RuntimeObject *control = mRunControl;
        RuntimeLockObject(control);
        record->busy = 1;
        bool alive;
        FireLocked(gAction, &alive);
        PerformActions(record->receivers[0]); // the record outlives a pane that died
        record->busy = 0;
        RuntimeUnlockObject(control);
    }

    // The toolkit tells of both sides: the button that became active, and
    // the one that stopped being it, whose "getUncheckedAction" receivers
    // hear of it.
    static void OnToggled(GtkToggleButton *button, gpointer data) {
        auto *pane = static_cast<RadioButtonPane *>(data);
        bool active = gtk_toggle_button_get_active(button);
        if (pane->mRunControl && !active) {
            Captioned(pane->mRunControl)->value = 0;
            if (!pane->closing)
                PerformActions(Captioned(pane->mRunControl)->receivers[1]);
        }
        if (active && !pane->closing)
            pane->Checked();
    }

    int32_t mGroup = -1;
};

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" void RadioCreatePane(RuntimeObject *self) {
    MakePane<RadioButtonPane, CaptionedControl>(self);
}

extern "C" uint8_t radioValueGetter(RuntimeObject *self, int32_t) { return CaptionedValue(self); }

extern "C" void radioValueSetter(RuntimeObject *self, int32_t, uint8_t value) {
    SetCaptionedValue(self, value);
}

namespace kelp {

ObjectDefinition *RadioButtonDefinition() {
    static const PropertyRow properties[] = {
        {0, "Caption", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(radioCaptionSetter),
         offsetof(CaptionedControl, caption)},
        {0, "Value", &kTypeBoolean, KELP_ENTRY(radioValueGetter), KELP_ENTRY(radioValueSetter),
         offsetof(CaptionedControl, value)},
        KELP_FONT_ROWS(CaptionedControl, font, captionFontSetter, captionSizeSetter,
                       captionStyleSetter),
    };
    static const ParameterRow partParams[] = {{"name", &kTypeString}};
    static const MethodRow methods[] = {
        {"getBoundPart", &kTypePtr, partParams, 1, KELP_ENTRY(radioGetBoundPart)},
    };
    static const EventRow events[] = {
        {"Action", "", nullptr, &gAction},
        {"MouseDown", "X As Integer, Y As Integer", "Boolean", &gMouseDown},
        {"MouseUp", "X As Integer, Y As Integer", nullptr, &gMouseUp},
        {"GotFocus", "", nullptr, &gGotFocus},
        {"LostFocus", "", nullptr, &gLostFocus},
    };
    static const HookInstanceRow hooks[] = {
        {"CreatePane", reinterpret_cast<void *>(&RadioCreatePane)},
    };
    static const ClassDescription description = {
        .name = "RadioButton",
        .super = RectControlDefinition,
        .instanceSize = sizeof(CaptionedControl),
        .finalizer = KELP_ENTRY(CaptionedControlFinalizer),
        .properties = properties,
        .methods = methods,
        .events = events,
        .hookInstances = hooks,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
