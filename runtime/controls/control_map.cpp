// The window's map of controls: adding under a name or an array element,
// finding, binding each control to its pane, and closing.  Arrays stay
// dense: closing element i moves every later element down by one.
#include "controls/control_map.h"

#include "controls/control.h"
#include "controls/embedded.h"
#include "controls/paged.h"

#include "base/fatal_report.h"
#include "objects/object_model.h"
#include "objects/text.h"
#include "strings/kstring.h"
#include "windows/runtime_view.h"

#include "kelp/controls.h"
#include "kelp/objects.h"

#include <algorithm>
#include <map>
#include <unordered_map>

namespace kelp {
namespace {

constexpr const char *kFile = "runtime/controls/control_map.cpp";

struct ViewControls {
    std::map<std::string, RuntimeObject *> byKey; // counted, one per entry
    std::vector<RuntimeObject *> order;           // the same objects, as added
    bool controlsMade = false;                    // CreateControls has ended
};

std::unordered_map<RuntimeObject *, ViewControls> &Views() {
    static auto *views = new std::unordered_map<RuntimeObject *, ViewControls>();
    return *views;
}

ViewControls *Find(RuntimeObject *view) {
    auto it = Views().find(view);
    return it == Views().end() ? nullptr : &it->second;
}

// Objects of the map need not be controls: a timer has no pane.
ControlPane *ControlPaneOf(RuntimeObject *object) {
    return IsControl(object) ? PaneOf(object) : nullptr;
}

std::string UpperKey(std::string key) {
    for (char &c : key)
        c = static_cast<char>(kUpperCaseTable[static_cast<uint8_t>(c)]);
    return key;
}

// Binds one control: CreatePane, then the record's state into the pane.
void Bind(ViewControls &controls, RuntimeObject *object) {
    RuntimeControl *control = Ctl(object);
    if (control->pane)
        return;
    CallEvent(object, CreatePaneHook());
    auto *pane = static_cast<ControlPane *>(control->pane);
    if (!pane)
        return; // no pane appeared: the control stays unbound
    pane->BindControl(object);
    pane->panelIndex = control->tabPanelIndex + 1;
    if (!control->visible)
        pane->SetVisible(false);
    if (!control->enabled)
        pane->SetEnabled(false, true);
    // A control placed over a hidden or disabled one goes with it.
    for (RuntimeObject *other : controls.order) {
        ControlPane *outer = ControlPaneOf(other);
        if (other == object || !outer || !outer->Encloses(pane))
            continue;
        if (!outer->enabled && pane->enabled)
            pane->SetEnabled(false, true);
        if (!outer->visible && pane->visible)
            pane->SetVisible(false);
    }
    if (control->helpTag && pane->GetWidget())
        gtk_widget_set_tooltip_text(pane->GetWidget(),
                                    std::string(objtext::View(control->helpTag)).c_str());
}

void FireOpen(RuntimeObject *object) {
    auto *pane = ControlPaneOf(object);
    if (!pane || !pane->LockForEvent())
        return;
    CallEvent(object, OpenHook());
    pane->UnlockAfterEvent();
}

// Takes the key out of the map and closes an array up behind it.
void RemoveKey(ViewControls &controls, RuntimeObject *object) {
    RuntimeControl *control = Ctl(object);
    std::string name(objtext::View(control->name));
    bool inArray = control->index != KELP_NOT_IN_ARRAY;
    std::string key = UpperKey(ControlKey(name, control->index));
    auto it = controls.byKey.find(key);
    if (it == controls.byKey.end() || it->second != object) {
        // Not under its own key (renamed since): search by object.
        it = std::find_if(controls.byKey.begin(), controls.byKey.end(),
                          [&](const auto &row) { return row.second == object; });
        if (it == controls.byKey.end())
            return;
        inArray = false;
    }
    controls.byKey.erase(it);
    controls.order.erase(std::remove(controls.order.begin(), controls.order.end(), object),
                         controls.order.end());
    if (inArray && control->index >= 0) {
        // A bounded walk: at most every entry of the map moves down once.
        for (int64_t i = int64_t(control->index) + 1; i <= INT32_MAX; ++i) {
            auto next = controls.byKey.find(UpperKey(ControlKey(name, int32_t(i))));
            if (next == controls.byKey.end())
                break;
            RuntimeObject *moved = next->second;
            controls.byKey.erase(next);
            if (IsControl(moved))
                Ctl(moved)->index = int32_t(i - 1);
            controls.byKey[UpperKey(ControlKey(name, int32_t(i - 1)))] = moved;
        }
    }
    control->view = nullptr;
}

// A container leaves its window: the pane of the control standing for it
// closes, and its own controls go.
void DetachContainer(RuntimeObject *view) {
    RuntimeObject *embedded = EmbeddedControlOf(view);
    if (!embedded)
        return;
    if (auto *pane = static_cast<ControlPane *>(Ctl(embedded)->pane)) {
        Ctl(embedded)->pane = nullptr;
        pane->Close();
    }
    Ctl(embedded)->view = nullptr;
    Ctl(embedded)->paneWindow = nullptr;
    reinterpret_cast<ContainerRecord *>(view)->anchored = 0;
    ReleaseViewControls(reinterpret_cast<ViewRecord *>(view));
}

} // namespace

void ContainersOfView(ViewRecord *view, std::vector<ViewRecord *> &out) {
    static int depth = 0; // containers nest; a loop must not recurse forever
    if (depth > 32)
        return;
    ++depth;
    for (RuntimeObject *object : ControlsOfView(&view->object))
        if (IsContainerView(object)) {
            out.push_back(reinterpret_cast<ViewRecord *>(object));
            ContainersOfView(reinterpret_cast<ViewRecord *>(object), out);
        }
    --depth;
}

void CloseContainer(ViewRecord *record) {
    RuntimeObject *view = &record->object;
    RuntimeObject *embedded = EmbeddedControlOf(view);
    ViewControls *host = embedded && Ctl(embedded)->view ? Find(Ctl(embedded)->view) : nullptr;
    if (!host)
        return;
    RuntimeLockObject(view);
    if (SubPane *focus = FocusPane(), *pane = ControlPaneOf(embedded);
        focus && pane && pane->Contains(focus))
        SetFocus(nullptr);
    FireViewControlsClose(record);
    FireViewEvent(record, ViewEvent::kClose);
    if ((host = Ctl(embedded)->view ? Find(Ctl(embedded)->view) : nullptr)) {
        auto it = std::find_if(host->byKey.begin(), host->byKey.end(),
                               [&](const auto &row) { return row.second == view; });
        if (it != host->byKey.end()) {
            host->byKey.erase(it);
            host->order.erase(std::remove(host->order.begin(), host->order.end(), view),
                              host->order.end());
            RuntimeUnlockObject(view); // the map's reference
        }
    }
    DetachContainer(view);
    RuntimeUnlockObject(view);
}

std::string ControlKey(const std::string &name, int32_t index) {
    if (index == KELP_NOT_IN_ARRAY)
        return name;
    return name + "$" + std::to_string(index);
}

std::vector<RuntimeObject *> ControlsOfView(RuntimeObject *view) {
    ViewControls *controls = view ? Find(view) : nullptr;
    return controls ? controls->order : std::vector<RuntimeObject *>();
}

RuntimeObject *EnclosingControl(RuntimeControl *control) {
    auto *pane = static_cast<ControlPane *>(control ? control->pane : nullptr);
    if (!pane)
        return nullptr;
    for (SubPane *p = pane->Parent(); p; p = p->Parent())
        if (auto *cp = dynamic_cast<ControlPane *>(p); cp && cp->Control())
            return cp->Control();
    return nullptr;
}

void BindViewControls(ViewRecord *view) {
    RuntimeObject *object = &view->object;
    ViewControls &controls = Views()[object];
    controls.controlsMade = true;
    std::vector<RuntimeObject *> order = controls.order;
    for (RuntimeObject *c : order)
        RuntimeLockObject(c);
    // A container binds whole, its own controls and Open events with it,
    // so that its controls follow it in the tab order.
    for (RuntimeObject *c : order) {
        if (!HostWindowOf(object))
            break;
        if (IsControl(c))
            Bind(Views()[object], c);
        else if (IsContainerView(c))
            BindContainer(c);
    }
    // Children of pages not shown go out of sight before anything opens.
    for (RuntimeObject *c : order)
        if (auto *panel = dynamic_cast<PagedPane *>(ControlPaneOf(c)))
            panel->ApplyPages();
    // Open goes out children first: the last made lies on top.
    for (auto it = order.rbegin(); it != order.rend(); ++it)
        if (IsControl(*it) && HostWindowOf(object))
            FireOpen(*it);
    for (RuntimeObject *c : order)
        RuntimeUnlockObject(c);
}

void BindContainer(RuntimeObject *view) {
    RuntimeObject *control = EmbeddedControlOf(view);
    ViewControls *host = control && Ctl(control)->view ? Find(Ctl(control)->view) : nullptr;
    if (!host || Ctl(control)->pane)
        return;
    Bind(*host, control);
    ControlPane *pane = ControlPaneOf(control);
    if (!pane)
        return;
    auto *container = reinterpret_cast<ContainerRecord *>(view);
    if (!container->anchored) {
        // Laid out relative to the container; from now on in the window's
        // coordinates, like every other control there.
        ShiftViewControls(view, Ctl(control)->bounds.left, Ctl(control)->bounds.top);
        container->anchored = 1;
    }
    RuntimeLockObject(view);
    BindViewControls(&container->view);
    // The controls came after the pane was hidden or disabled.
    for (SubPane *child : std::vector<SubPane *>(pane->Children())) {
        if (!pane->visible)
            child->SetVisible(false);
        if (!pane->enabled)
            child->SetEnabled(false, true);
    }
    if (ControlPaneOf(control) && pane->LockForEvent()) {
        FireViewEvent(&container->view, ViewEvent::kOpen);
        pane->UnlockAfterEvent();
    }
    RuntimeUnlockObject(view);
}

void FireViewControlsClose(ViewRecord *view) {
    std::vector<RuntimeObject *> order = ControlsOfView(&view->object);
    for (RuntimeObject *c : order)
        RuntimeLockObject(c);
    for (auto it = order.rbegin(); it != order.rend(); ++it) {
        if (IsContainerView(*it)) {
            auto *inner = reinterpret_cast<ViewRecord *>(*it);
            FireViewControlsClose(inner);
            FireViewEvent(inner, ViewEvent::kClose);
            continue;
        }
        ControlPane *pane = ControlPaneOf(*it);
        if (!pane)
            continue;
        if (SubPane *focus = FocusPane(); focus && (focus == pane || pane->Contains(focus)))
            SetFocus(nullptr);
        if (pane->LockForEvent()) {
            CallEvent(*it, CloseHook());
            pane->UnlockAfterEvent();
        }
    }
    for (RuntimeObject *c : order)
        RuntimeUnlockObject(c);
}

void ReleaseViewControls(ViewRecord *view) {
    auto it = Views().find(&view->object);
    if (it == Views().end())
        return;
    ViewControls controls = std::move(it->second);
    Views().erase(it);
    for (RuntimeObject *object : controls.order) {
        DetachContainer(object);
        if (IsControl(object)) {
            RuntimeControl *control = Ctl(object);
            if (auto *pane = static_cast<ControlPane *>(control->pane)) {
                control->pane = nullptr;
                pane->Close();
            }
            control->view = nullptr;
            control->paneWindow = nullptr;
        }
    }
    for (auto &row : controls.byKey)
        RuntimeUnlockObject(row.second);
}

} // namespace kelp

using namespace kelp;

extern "C" void WindowAddControl(RuntimeObject *view, KelpString name, RuntimeObject *object) {
    if (!object || !view)
        return;
    ViewControls &controls = Views()[view];
    std::string base(objtext::View(name));
    bool isControl = IsControl(object);
    int32_t index = isControl ? Ctl(object)->index : KELP_NOT_IN_ARRAY;
    if (controls.controlsMade && isControl) {
        // Added while the window runs: the first free element number.
        index = 0;
        while (controls.byKey.contains(UpperKey(ControlKey(base, index))) && index < INT32_MAX)
            ++index;
        Ctl(object)->index = index;
    }
    // A container lies in the window through the control standing for it,
    // at the place its Layout gave it.
    RuntimeObject *embedded = EmbeddedControlOf(object);
    if (embedded) {
        auto *record = reinterpret_cast<ViewRecord *>(object);
        Ctl(embedded)->bounds =
            KelpRect{int16_t(record->top), int16_t(record->left),
                     int16_t(record->top + record->height), int16_t(record->left + record->width)};
    }
    if (RuntimeObject *target = isControl ? object : embedded) {
        RuntimeControl *control = Ctl(target);
        control->view = view;
        control->paneWindow = HostWindowOf(view);
        if (!control->name || control->name->length == 0)
            StoreString(control->name, name);
        // Inside a container placed already: from its corner.
        auto [dx, dy] = ViewOrigin(view);
        control->bounds =
            KelpRect{int16_t(control->bounds.top + dy), int16_t(control->bounds.left + dx),
                     int16_t(control->bounds.bottom + dy), int16_t(control->bounds.right + dx)};
    }
    std::string key = UpperKey(ControlKey(base, index));
    auto [it, fresh] = controls.byKey.emplace(key, object);
    if (!fresh) {
        // The key was taken: the newer control replaces the older one.
        KELP_ASSERT(fresh, kFile, "fresh", "A control of this name and index exists already");
        controls.order.erase(std::remove(controls.order.begin(), controls.order.end(), it->second),
                             controls.order.end());
        RuntimeUnlockObject(it->second);
        it->second = object;
    }
    RuntimeLockObject(object);
    controls.order.push_back(object);
    if (controls.controlsMade && embedded && HostWindowOf(view)) {
        BindContainer(object);
    } else if (controls.controlsMade && isControl && HostWindowOf(view)) {
        Bind(controls, object);
        if (auto *pane = ControlPaneOf(object)) {
            FireOpen(object);
            pane->Invalidate(true);
        }
    }
}

extern "C" RuntimeObject *RuntimeControlFetch(RuntimeObject *view, KelpString name) {
    ViewControls *controls = view ? Find(view) : nullptr;
    if (!controls)
        return nullptr;
    auto it = controls->byKey.find(UpperKey(std::string(objtext::View(name))));
    return it == controls->byKey.end() ? nullptr : it->second;
}

extern "C" RuntimeObject *RuntimeControlReference(RuntimeObject *view, KelpString name) {
    RuntimeObject *object = RuntimeControlFetch(view, name);
    RuntimeLockObject(object);
    return object;
}

extern "C" void ControlClose(RuntimeObject *object) {
    if (!object || !IsControl(object))
        return;
    RuntimeControl *control = Ctl(object);
    ViewControls *controls = control->view ? Find(control->view) : nullptr;
    KELP_ASSERT(controls != nullptr, kFile, "ctl->m_view");
    if (!controls)
        return;
    ControlPane *pane = ControlPaneOf(object);
    // The control last, after every control inside it, innermost first.
    std::vector<RuntimeObject *> closing;
    if (pane)
        for (RuntimeObject *other : controls->order)
            if (other != object && ControlPaneOf(other) && pane->Contains(ControlPaneOf(other)))
                closing.push_back(other);
    std::sort(closing.begin(), closing.end(), [](RuntimeObject *a, RuntimeObject *b) {
        return ControlPaneOf(a)->Contains(ControlPaneOf(b)); // deeper ones close first
    });
    closing.push_back(object);
    for (RuntimeObject *c : closing)
        RuntimeLockObject(c);
    for (RuntimeObject *c : closing) {
        ControlPane *p = ControlPaneOf(c);
        if (p) {
            if (SubPane *focus = FocusPane(); focus && (focus == p || p->Contains(focus)))
                SetFocus(nullptr);
            if (p->LockForEvent()) {
                CallEvent(c, CloseHook());
                p->UnlockAfterEvent();
            }
        }
        // The handler may have closed it already.
        if (ControlPane *still = ControlPaneOf(c)) {
            Ctl(c)->pane = nullptr;
            still->SetVisible(false);
            still->Close();
        }
        if (ViewControls *now = Ctl(c)->view ? Find(Ctl(c)->view) : nullptr) {
            bool held = std::find(now->order.begin(), now->order.end(), c) != now->order.end();
            RemoveKey(*now, c);
            if (held)
                RuntimeUnlockObject(c); // the map's reference
        }
    }
    for (RuntimeObject *c : closing)
        RuntimeUnlockObject(c);
}
