#include "menus/popup.h"

#include "menus/classes.h"
#include "menus/dispatch.h"
#include "menus/menu.h"

#include "controls/control.h"
#include "exceptions/call_event.h"
#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "objects/text.h"
#include "windows/runtime_view.h"

#include "kelp/controls.h"
#include "kelp/menus.h"
#include "kelp/objects.h"

#include <string>
#include <vector>

namespace kelp {
namespace {

bool gPopupOpen = false;
XMenuGTK *gPopupChoice = nullptr;

void RecordChoice(XMenuGTK *chosen) { gPopupChoice = chosen; }

struct PopupPoint {
    gint x, y;
};

void PlaceAt(GtkMenu *, gint *x, gint *y, gboolean *pushIn, gpointer data) {
    const auto *point = static_cast<const PopupPoint *>(data);
    *x = point->x;
    *y = point->y;
    *pushIn = TRUE;
}

// The top-most control pane under a point of the window, or null.
ControlPane *ControlPaneAt(SubPane *pane, int32_t x, int32_t y) {
    const auto &children = pane->Children();
    for (size_t i = children.size(); i-- > 0;) {
        SubPane *child = children[i];
        if (!child->visible || !child->HitTest(x, y))
            continue;
        if (ControlPane *inner = ControlPaneAt(child, x, y))
            return inner;
        if (auto *control = dynamic_cast<ControlPane *>(child))
            return control;
    }
    return nullptr;
}

// The control under the point and its enclosing controls, innermost first;
// each holds a reference.
std::vector<RuntimeObject *> ControlChain(Window *window, int32_t x, int32_t y) {
    std::vector<RuntimeObject *> chain;
    ControlPane *pane = ControlPaneAt(window, x, y);
    RuntimeObject *control = pane ? pane->Control() : nullptr;
    RuntimeLockObject(control);
    // Bounded: a parent chain longer than the window's panes is a loop.
    const size_t limit = window->PanesInCreationOrder().size() + 1;
    while (control && chain.size() < limit) {
        chain.push_back(control);
        control = ControlParentGetter(control, 0);
    }
    RuntimeUnlockObject(control);
    return chain;
}

} // namespace

void PointerOnScreen(int32_t &x, int32_t &y) {
    gint px = 0, py = 0;
    if (GdkDisplay *display = gdk_display_get_default())
        gdk_display_get_pointer(display, nullptr, &px, &py, nullptr);
    x = px, y = py;
}

RuntimeObject *PopUpAndChoose(RuntimeObject *item, int32_t x, int32_t y) {
    XMenuGTK *imp = MenuImpOf(item);
    if (!imp || gPopupOpen || imp->Count() == 0)
        return nullptr;
    RuntimeLockObject(item);
    gPopupOpen = true;
    gPopupChoice = nullptr;
    RunEnableCycle(false, nullptr);
    SubPane *focus = FocusPane();
    PopupCallback old = imp->GetPopupCallback();
    imp->SetPopupCallback(&RecordChoice);
    guint button = 0;
    if (GdkEvent *event = gtk_get_current_event()) {
        if (event->type == GDK_BUTTON_PRESS)
            button = event->button.button;
        gdk_event_free(event);
    }
    PopupPoint point{x, y};
    GtkWidget *menu = imp->MenuWidget();
    gtk_menu_popup(GTK_MENU(menu), nullptr, nullptr, &PlaceAt, &point, button,
                   gtk_get_current_event_time());
    while (GTK_WIDGET_MAPPED(menu))
        gtk_main_iteration_do(TRUE);
    imp->SetPopupCallback(old);
    if (focus && FocusPane() != focus)
        SetFocus(focus);
    gPopupOpen = false;
    RuntimeObject *chosen = gPopupChoice ? imp->FindObject(gPopupChoice) : nullptr;
    gPopupChoice = nullptr;
    RuntimeLockObject(chosen);
    RuntimeUnlockObject(item);
    return chosen;
}

bool OfferContextualMenu(Window *window, int32_t x, int32_t y) {
    auto *viewWindow = dynamic_cast<RuntimeViewWindow *>(window);
    ViewRecord *view = viewWindow ? viewWindow->View() : nullptr;
    if (!view)
        return false;
    RuntimeObject *viewObject = &view->object;
    RuntimeLockObject(viewObject);
    std::vector<RuntimeObject *> chain = ControlChain(window, x, y);
    RuntimeObject *base = NewObjectOfDefinition(MenuItemDefinition());
    bool built = false;
    for (RuntimeObject *control : chain)
        if (CallBooleanEvent(control, ConstructContextualMenuHook(), base,
                             x - ctlPosGetter(control, 0), y - ctlPosGetter(control, 1))) {
            built = true;
            break;
        }
    if (!built)
        built = CallBooleanEvent(viewObject, ViewConstructContextualMenuHook(), base, x, y);
    if (built && RuntimeMenuItemCount(base) > 0) {
        int32_t px = 0, py = 0;
        PointerOnScreen(px, py);
        if (RuntimeObject *hit = PopUpAndChoose(base, px, py)) {
            bool taken = false;
            for (RuntimeObject *control : chain)
                if ((taken = CallBooleanEvent(control, ContextualMenuActionHook(), hit)))
                    break;
            if (!taken)
                CallBooleanEvent(viewObject, ViewContextualMenuActionHook(), hit);
            RuntimeUnlockObject(hit);
        }
    }
    RuntimeUnlockObject(base);
    for (RuntimeObject *control : chain)
        RuntimeUnlockObject(control);
    RuntimeUnlockObject(viewObject);
    return built;
}

} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *RuntimeMenuItemPopUp(RuntimeObject *self, int32_t x, int32_t y) {
    if (!self) {
        RaiseNilObject();
        return nullptr;
    }
    RuntimeObject *chosen = PopUpAndChoose(self, x, y);
    if (chosen && DispatchMenuItem(chosen, nullptr)) {
        RuntimeUnlockObject(chosen);
        return nullptr; // a handler took it
    }
    return chosen;
}

extern "C" RuntimeObject *RuntimeMenuItemPopUpByCursor(RuntimeObject *self) {
    int32_t x = 0, y = 0;
    PointerOnScreen(x, y);
    return RuntimeMenuItemPopUp(self, x, y);
}
