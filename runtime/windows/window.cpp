#include "windows/window.h"

#include "base/soft_library.h"
#include "graphics/graphics_gtk.h"
#include "graphics/graphics_target.h"
#include "process/display.h"
#include "runloop/background_task.h"
#include "runloop/clock.h"
#include "runloop/main_loop.h"
#include "windows/window_manager.h"

#include <gdk/gdkkeysyms.h>

#include <algorithm>

namespace kelp {
namespace {

std::vector<Window *> gWindows;     // newest first
std::vector<Window *> gFrontToBack; // front first
MenuKeyOffer gMenuKeyOffer = nullptr;
ContextualMenuOffer gContextualMenuOffer = nullptr;
guint32 gLastPressTime = 0;
bool gLastPressSeen = false;

// Indexed by the Frame constant, kFrameTypeDocument to kFrameTypeDrawer.
constexpr WindowKind kKindOfFrame[kFrameTypeDrawer + 1] = {
    kKindDocument, kKindMovableModal,   kKindModal, kKindFloating, kKindPlainBox, kKindShadowedBox,
    kKindRounded,  kKindGlobalFloating, kKindSheet, kKindMetal,    kKindDrawer};
constexpr Placement kPlacementOfFrame[kFrameTypeDrawer + 1] = {
    kPlacementStagger,    kPlacementMainScreen, kPlacementMainScreen, kPlacementDefault,
    kPlacementMainScreen, kPlacementMainScreen, kPlacementStagger,    kPlacementDefault,
    kPlacementDefault,    kPlacementStagger,    kPlacementDefault};

// The pointer in content coordinates.
void ContentPointer(Window *window, int &x, int &y) {
    gtk_widget_get_pointer(window->GtkWin(), &x, &y);
    y -= MenuBarHeight(window);
}

// --- toolkit signals; all enter at the GtkWindow except expose.

gboolean OnExpose(GtkWidget *, GdkEventExpose *, gpointer data) {
    auto *window = static_cast<Window *>(data);
    window->Expose();
    return FALSE; // native drawing of the children goes on
}

gboolean OnMotion(GtkWidget *, GdkEventMotion *event, gpointer data) {
    auto *window = static_cast<Window *>(data);
    NoteUserEvent();
    SetCurrentModifiers(ModifiersFromState(event->state));
    int x = 0, y = 0;
    ContentPointer(window, x, y);
    AdjustCursorAt(window, x, y);
    if (MouseCapturePane())
        return FALSE;
    if (window->LockForEvent()) {
        window->MouseMove(x, y);
        window->UnlockAfterEvent();
    }
    return FALSE;
}

gboolean OnConfigure(GtkWidget *, GdkEventConfigure *event, gpointer data) {
    auto *window = static_cast<Window *>(data);
    if (window->ToolkitSizeReport(event->width, event->height - MenuBarHeight(window)))
        return FALSE; // closed by its own Resizing: nothing is left to limit
    // Full screen has its own open hints; the window's limits return after.
    if (window->IsFullScreen())
        return FALSE;
    int32_t minW = 0, minH = 0, maxW = 0, maxH = 0;
    window->GetMinMaxSize(minW, minH, maxW, maxH);
    if (!minW && !minH && !maxW && !maxH)
        return FALSE;
    GdkGeometry hints{};
    const int32_t bar = MenuBarHeight(window);
    if (window->resizable) {
        hints.min_width = minW, hints.min_height = minH + bar;
        hints.max_width = maxW ? maxW : 32000, hints.max_height = maxH ? maxH + bar : 32000;
    } else {
        hints.min_width = hints.max_width = window->width;
        hints.min_height = hints.max_height = window->height + bar;
    }
    gtk_window_set_geometry_hints(GTK_WINDOW(window->GtkWin()), nullptr, &hints,
                                  GdkWindowHints(GDK_HINT_MIN_SIZE | GDK_HINT_MAX_SIZE));
    return FALSE;
}

gboolean OnDelete(GtkWidget *, GdkEvent *, gpointer data) {
    return static_cast<Window *>(data)->CloseRequest() ? TRUE : FALSE;
}

int32_t CharacterForKey(guint keyval) {
    switch (keyval) {
    case GDK_Return: return 13;
    case GDK_KP_Enter: return 3;
    case GDK_ISO_Left_Tab:
    case GDK_Tab: return 9;
    case GDK_BackSpace: return 8;
    case GDK_Left:
    case GDK_KP_Left: return 28;
    case GDK_Right:
    case GDK_KP_Right: return 29;
    case GDK_Up:
    case GDK_KP_Up: return 30;
    case GDK_Down:
    case GDK_KP_Down: return 31;
    case GDK_Home:
    case GDK_KP_Home:
    case GDK_KP_Begin: return 1;
    case GDK_End:
    case GDK_KP_End: return 4;
    case GDK_Page_Up:
    case GDK_KP_Page_Up: return 11;
    case GDK_Page_Down:
    case GDK_KP_Page_Down: return 12;
    case GDK_Delete:
    case GDK_KP_Delete: return 127;
    case GDK_KP_Multiply: return '*';
    case GDK_KP_Add: return '+';
    case GDK_KP_Subtract: return '-';
    case GDK_KP_Decimal: return '.';
    case GDK_KP_Divide: return '/';
    case GDK_KP_Equal: return '=';
    case GDK_Escape: return 27;
    default: return static_cast<int32_t>(keyval & 0xff);
    }
}

gboolean OnKeyPress(GtkWidget *, GdkEventKey *event, gpointer data) {
    auto *window = static_cast<Window *>(data);
    NoteUserEvent();
    int32_t modifiers = ModifiersFromState(event->state);
    SetCurrentModifiers(modifiers);
    if (event->keyval >= GDK_Shift_L && event->keyval <= GDK_Shift_Lock)
        return FALSE;
    if (event->keyval == GDK_Alt_L || event->keyval == GDK_Alt_R) {
        SetCurrentModifiers(modifiers | kModOption);
        return FALSE;
    }
    if (!window->LockForEvent())
        return FALSE;
    bool taken = window->KeyPress(event->keyval, event->hardware_keycode, modifiers);
    window->UnlockAfterEvent();
    return taken ? TRUE : FALSE;
}

gboolean OnButtonPress(GtkWidget *, GdkEventButton *event, gpointer data) {
    auto *window = static_cast<Window *>(data);
    if (event->type != GDK_BUTTON_PRESS)
        return FALSE;
    // The same press reaches a native widget's handler and the window.
    if (gLastPressSeen && event->time == gLastPressTime && event->time != 0)
        return FALSE;
    gLastPressSeen = true;
    gLastPressTime = event->time;
    NoteUserEvent();
    int32_t modifiers = ModifiersFromState(event->state);
    SetCurrentModifiers(modifiers);
    int x = 0, y = 0;
    ContentPointer(window, x, y);
    if (!window->LockForEvent())
        return FALSE;
    bool taken = event->button == 3 ? window->ContextualClick(x, y, modifiers)
                                    : window->MouseDown(x, y, modifiers);
    bool native = window->nativeClickPane != nullptr;
    window->UnlockAfterEvent();
    return taken && !native ? TRUE : FALSE;
}

gboolean OnButtonRelease(GtkWidget *, GdkEventButton *, gpointer data) {
    auto *window = static_cast<Window *>(data);
    NoteUserEvent();
    if (SubPane *capture = MouseCapturePane()) {
        int x = 0, y = 0;
        ContentPointer(window, x, y);
        SetMouseCapturePane(nullptr);
        if (capture->LockForEvent()) {
            capture->MouseUp(x, y);
            capture->UnlockAfterEvent();
        }
    }
    return FALSE;
}

// The pointer crossing the window's edge; crossings into and out of a child
// window inside it are no crossing of the window.
gboolean OnEnterNotify(GtkWidget *, GdkEventCrossing *event, gpointer data) {
    auto *window = static_cast<Window *>(data);
    if (event->detail == GDK_NOTIFY_INFERIOR || !window->LockForEvent())
        return FALSE;
    window->MouseEnter();
    window->UnlockAfterEvent();
    return FALSE;
}

gboolean OnLeaveNotify(GtkWidget *, GdkEventCrossing *event, gpointer data) {
    auto *window = static_cast<Window *>(data);
    if (event->detail == GDK_NOTIFY_INFERIOR || !window->LockForEvent())
        return FALSE;
    window->PointerLeft();
    window->UnlockAfterEvent();
    return FALSE;
}

// Shown by the toolkit, whoever asked: the window counts as shown.
void OnShow(GtkWidget *, gpointer data) { static_cast<Window *>(data)->shown = true; }

gboolean OnFocusIn(GtkWidget *, GdkEventFocus *, gpointer data) {
    auto *window = static_cast<Window *>(data);
    BringToFront(window);
    if (window->LockForEvent()) {
        window->Activate();
        window->UnlockAfterEvent();
    }
    return FALSE;
}

gboolean OnFocusOut(GtkWidget *, GdkEventFocus *, gpointer data) {
    auto *window = static_cast<Window *>(data);
    if (window->LockForEvent()) {
        window->Deactivate();
        SubPane *focus = FocusPane();
        if (focus && (focus == window || window->Contains(focus)))
            SetFocus(nullptr);
        window->UnlockAfterEvent();
    }
    return FALSE;
}

gboolean OnScroll(GtkWidget *, GdkEventScroll *event, gpointer data) {
    auto *window = static_cast<Window *>(data);
    int x = 0, y = 0;
    ContentPointer(window, x, y);
    int32_t delta = event->direction == GDK_SCROLL_UP ? -3 : 3;
    if (!window->LockForEvent())
        return FALSE;
    bool taken = window->MouseWheel(x, y, delta);
    window->UnlockAfterEvent();
    return taken ? TRUE : FALSE;
}

gboolean OnWindowState(GtkWidget *, GdkEventWindowState *event, gpointer data) {
    auto *window = static_cast<Window *>(data);
    window->iconified = (event->new_window_state & GDK_WINDOW_STATE_ICONIFIED) != 0;
    window->maximized = (event->new_window_state & GDK_WINDOW_STATE_MAXIMIZED) != 0;
    if ((event->changed_mask & GDK_WINDOW_STATE_FULLSCREEN) &&
        !(event->new_window_state & GDK_WINDOW_STATE_FULLSCREEN))
        window->FullScreenEndedByManager();
    return FALSE;
}

void Connect(GtkWidget *w, const char *signal, GCallback cb, Window *window) {
    g_signal_connect(w, signal, cb, window);
}

} // namespace

void ConnectWidgetPresses(GtkWidget *widget, Window *window) {
    if (!widget || !window)
        return;
    gtk_widget_add_events(widget, GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK);
    Connect(widget, "button-press-event", G_CALLBACK(OnButtonPress), window);
    Connect(widget, "button-release-event", G_CALLBACK(OnButtonRelease), window);
}

namespace {

// The monitor rectangles of the default screen.
std::vector<GdkRectangle> Screens() {
    std::vector<GdkRectangle> screens;
    GdkScreen *screen = DisplayAvailable() ? gdk_screen_get_default() : nullptr;
    if (!screen)
        return screens;
    int n = gdk_screen_get_n_monitors(screen);
    for (int i = 0; i < n; ++i) {
        GdkRectangle r;
        gdk_screen_get_monitor_geometry(screen, i, &r);
        screens.push_back(r);
    }
    return screens;
}

int Overlap(const GdkRectangle &s, const Rect &r) {
    int w = std::min<int>(s.x + s.width, r.right) - std::max<int>(s.x, r.left);
    int h = std::min<int>(s.y + s.height, r.bottom) - std::max<int>(s.y, r.top);
    return w > 0 && h > 0 ? w * h : 0;
}

const GdkRectangle *ScreenShowingMost(const std::vector<GdkRectangle> &screens, const Rect &r) {
    const GdkRectangle *best = nullptr;
    int bestArea = 0;
    for (const auto &s : screens)
        if (int a = Overlap(s, r); a > bestArea)
            best = &s, bestArea = a;
    return best;
}

void MoveTo(Rect &r, int left, int top) {
    int w = r.right - r.left, h = r.bottom - r.top;
    r.left = static_cast<int16_t>(left), r.top = static_cast<int16_t>(top);
    r.right = static_cast<int16_t>(left + w), r.bottom = static_cast<int16_t>(top + h);
}

} // namespace

// ------------------------------------------------------------- kinds

int32_t KindForFrame(int32_t frame) {
    if (frame < kFrameTypeDocument || frame > kFrameTypeDrawer)
        frame = kFrameTypeDocument;
    int32_t kind = kKindOfFrame[frame];
    if (kind == kKindDrawer)
        kind = kKindFloating; // drawers are floating windows here
    if (kind == kKindMetal)
        kind = kKindDocument; // metal is a document window on this platform
    return kind;
}

int32_t DefaultPlacementForFrame(int32_t frame) {
    if (frame < kFrameTypeDocument || frame > kFrameTypeDrawer)
        return kPlacementStagger;
    return kPlacementOfFrame[frame];
}

bool IsModalKind(int32_t kind) {
    return kind == kKindModal || kind == kKindMovableModal || kind == kKindShadowedBox ||
           kind == kKindSheet;
}

bool IsToolkitModalKind(int32_t kind) { return IsModalKind(kind) || kind == kKindPlainBox; }

WindowLayer LayerOfKind(int32_t kind) {
    switch (kind) {
    case kKindFloating:
    case kKindUtility:
    case kKindGlobalFloating: return kLayerFloating;
    case kKindModal:
    case kKindMovableModal:
    case kKindPlainBox:
    case kKindShadowedBox:
    case kKindSheet: return kLayerModal;
    case kKindDrawer: return kLayerDrawer;
    default: return kLayerDocument;
    }
}

Rect PlaceBounds(Rect bounds, int32_t placement, int32_t kind) {
    std::vector<GdkRectangle> screens = Screens();
    if (screens.empty())
        return bounds;
    int w = bounds.right - bounds.left, h = bounds.bottom - bounds.top;
    Window *top = nullptr;
    for (Window *candidate : gFrontToBack)
        if (!candidate->closing && LayerOfKind(candidate->kind) == LayerOfKind(kind)) {
            top = candidate;
            break;
        }
    Rect topRect = top ? top->lastBounds : Rect{};
    if (placement == kPlacementDefault) {
        MoveTo(bounds, bounds.left + 4, bounds.top + 100);
    } else if (placement == kPlacementParent && top) {
        MoveTo(bounds, topRect.left + ((topRect.right - topRect.left) - w) / 2, topRect.top + 30);
    } else if (placement == kPlacementStagger) {
        const GdkRectangle *s = top ? ScreenShowingMost(screens, topRect) : nullptr;
        if (top && s && topRect.right + 20 <= s->x + s->width &&
            topRect.bottom + 20 <= s->y + s->height)
            MoveTo(bounds, topRect.left + 20, topRect.top + 20);
        else
            MoveTo(bounds, 10, 50);
    } else {
        const GdkRectangle *s = &screens[0];
        if (placement == kPlacementParentScreen && top)
            if (const GdkRectangle *most = ScreenShowingMost(screens, topRect))
                s = most;
        int divisor = placement == kPlacementAlertCentre ? 2 : 3;
        MoveTo(bounds, s->x + (s->width - w) / 2, s->y + (s->height - h) / divisor);
    }
    // Keep it on the screen that shows most of it, or the nearest one.
    const GdkRectangle *s = ScreenShowingMost(screens, bounds);
    if (!s) {
        long bestDistance = -1;
        for (const auto &candidate : screens) {
            long dx = candidate.x - bounds.left, dy = candidate.y - bounds.top;
            long d = dx * dx + dy * dy;
            if (bestDistance < 0 || d < bestDistance)
                s = &candidate, bestDistance = d;
        }
    }
    int left = bounds.left, topEdge = bounds.top;
    if (left + w > s->x + s->width - 2)
        left = s->x + s->width - 2 - w;
    if (topEdge + h > s->y + s->height - 2)
        topEdge = s->y + s->height - 2 - h;
    if (left < s->x + 2)
        left = s->x + 2;
    if (topEdge < s->y + 25)
        topEdge = s->y + 25;
    MoveTo(bounds, left, topEdge);
    if (bounds.right > s->x + s->width - 2)
        bounds.right = static_cast<int16_t>(s->x + s->width - 2);
    if (bounds.bottom > s->y + s->height - 2)
        bounds.bottom = static_cast<int16_t>(s->y + s->height - 2);
    return bounds;
}

// ------------------------------------------------------------- Window

Window::Window(const std::string &windowTitle, int32_t windowKind, bool isResizable,
               Rect screenBounds)
    : PaneRoot(nullptr, Rect{0, 0, static_cast<int16_t>(screenBounds.bottom - screenBounds.top),
                             static_cast<int16_t>(screenBounds.right - screenBounds.left)}),
      kind(windowKind), resizable(isResizable), lastBounds(screenBounds), title(windowTitle) {
    gWindows.insert(gWindows.begin(), this);
    if (!RequireDisplay("Window")) {
        gFrontToBack.insert(gFrontToBack.begin(), this);
        return;
    }
    mGtkWindow = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    g_object_ref_sink(mGtkWindow);
    mGtkBox = gtk_vbox_new(FALSE, 0);
    gtk_container_add(GTK_CONTAINER(mGtkWindow), mGtkBox);
    GtkWidget *fixed = gtk_fixed_new();
    gtk_box_pack_end(GTK_BOX(mGtkBox), fixed, TRUE, TRUE, 0);
    mWidget = fixed;
    g_object_ref(fixed);
    gtk_widget_show(mGtkBox);
    gtk_widget_show(fixed);
    gtk_window_set_gravity(GTK_WINDOW(mGtkWindow), GDK_GRAVITY_STATIC);
    gtk_window_set_title(GTK_WINDOW(mGtkWindow), title.c_str());
    gtk_window_move(GTK_WINDOW(mGtkWindow), screenBounds.left, screenBounds.top);
    gtk_window_resize(GTK_WINDOW(mGtkWindow), std::max(1, width), std::max(1, height));
    gtk_window_set_resizable(GTK_WINDOW(mGtkWindow), resizable);
    HoldFixedSize();
    bool modal = IsToolkitModalKind(kind);
    gtk_window_set_modal(GTK_WINDOW(mGtkWindow), modal);
    if (modal && gWindows.size() > 1 && gWindows[1]->mGtkWindow)
        gtk_window_set_transient_for(GTK_WINDOW(mGtkWindow), GTK_WINDOW(gWindows[1]->mGtkWindow));
    if (kind == kKindPlainBox || kind == kKindShadowedBox)
        gtk_window_set_decorated(GTK_WINDOW(mGtkWindow), FALSE);
    gtk_widget_add_events(mGtkWindow, GDK_POINTER_MOTION_MASK | GDK_BUTTON_PRESS_MASK |
                                          GDK_BUTTON_RELEASE_MASK | GDK_ENTER_NOTIFY_MASK |
                                          GDK_LEAVE_NOTIFY_MASK);
    Connect(fixed, "expose-event", G_CALLBACK(OnExpose), this);
    Connect(mGtkWindow, "motion-notify-event", G_CALLBACK(OnMotion), this);
    Connect(mGtkWindow, "show", G_CALLBACK(OnShow), this);
    Connect(mGtkWindow, "configure-event", G_CALLBACK(OnConfigure), this);
    Connect(mGtkWindow, "delete-event", G_CALLBACK(OnDelete), this);
    Connect(mGtkWindow, "key-press-event", G_CALLBACK(OnKeyPress), this);
    Connect(mGtkWindow, "button-press-event", G_CALLBACK(OnButtonPress), this);
    Connect(mGtkWindow, "button-release-event", G_CALLBACK(OnButtonRelease), this);
    Connect(mGtkWindow, "enter-notify-event", G_CALLBACK(OnEnterNotify), this);
    Connect(mGtkWindow, "leave-notify-event", G_CALLBACK(OnLeaveNotify), this);
    Connect(mGtkWindow, "focus-in-event", G_CALLBACK(OnFocusIn), this);
    Connect(mGtkWindow, "focus-out-event", G_CALLBACK(OnFocusOut), this);
    Connect(mGtkWindow, "scroll-event", G_CALLBACK(OnScroll), this);
    Connect(mGtkWindow, "window-state-event", G_CALLBACK(OnWindowState), this);
    gFrontToBack.insert(gFrontToBack.begin(), this);
}

Window::~Window() {
    // Child panes left over go first; they hold widgets inside our fixed.
    while (!mChildren.empty()) {
        SubPane *child = mChildren.back();
        child->Close();
        if (!mChildren.empty() && mChildren.back() == child)
            RemoveChild(child); // still locked by an event: forget it here
    }
    if (mGtkWindow) {
        g_signal_handlers_disconnect_matched(mGtkWindow, G_SIGNAL_MATCH_DATA, 0, 0, nullptr,
                                             nullptr, this);
        g_signal_handlers_disconnect_matched(mWidget, G_SIGNAL_MATCH_DATA, 0, 0, nullptr, nullptr,
                                             this);
        gtk_widget_destroy(mGtkWindow);
        g_object_unref(mGtkWindow);
        g_object_unref(mWidget);
        mWidget = nullptr; // went with the window
    }
    gWindows.erase(std::remove(gWindows.begin(), gWindows.end(), this), gWindows.end());
    gFrontToBack.erase(std::remove(gFrontToBack.begin(), gFrontToBack.end(), this),
                       gFrontToBack.end());
}

GdkWindow *Window::GetDrawable() {
    return mGtkWindow && GTK_WIDGET_REALIZED(mGtkWindow) ? mGtkWindow->window : nullptr;
}

Graphics *Window::NewGraphics() {
    if (!mWidget)
        return nullptr;
    auto *target =
        new WidgetTarget(mWidget, bounds, WidgetTarget::kWindowItself, MenuBarHeight(this));
    target->SetBackColor(hasBackdropColor, backdropColor);
    return new GraphicsGTK(target, true);
}

void Window::Draw(Graphics *g) {
    if (g && hasBackdropColor)
        g->EraseRect(bounds);
    if (g)
        DrawBackdrop(g);
    DrawContents(g);
}

void Window::Invalidate(bool) {
    GdkWindow *drawable = GetDrawable();
    if (!drawable || closing)
        return;
    GdkRectangle r{0, MenuBarHeight(this), width, height};
    gdk_window_invalidate_rect(drawable, &r, TRUE);
}

bool Window::MouseDown(int32_t x, int32_t y, int32_t modifiers) {
    nativeClickPane = nullptr;
    for (size_t i = mChildren.size(); i-- > 0;) {
        if (closing)
            return true;
        if (i >= mChildren.size())
            continue;
        SubPane *child = mChildren[i];
        if (!child->visible || !child->HitTest(x, y))
            continue;
        if (child->MouseDown(x, y, modifiers)) {
            SetMouseCapturePane(child);
            return true;
        }
        if (!child->PassesClicksThrough()) {
            nativeClickPane = child; // the toolkit gives the press to the widget
            return true;
        }
    }
    return false;
}

void Window::PointerLeft() {
    // Every pane the pointer was in is left with the window.
    for (SubPane *pane : std::vector<SubPane *>(PanesInCreationOrder())) {
        if (closing)
            return;
        if (pane->mouseInside && Contains(pane)) {
            pane->mouseInside = false;
            pane->MouseExit();
        }
    }
    if (!closing)
        MouseExit();
}

void Window::Activate() {
    if (kind == kKindFloating || kind == kKindUtility)
        return; // a floating window leaves the focus where it is
    SubPane *target = StoredFocus() && StoredFocus()->visible ? StoredFocus() : nullptr;
    if (!target)
        for (SubPane *pane : PanesInCreationOrder())
            if (pane->CanFocus()) {
                target = pane;
                break;
            }
    SetFocus(target ? target : this);
}

bool Window::KeyPress(guint keyval, int32_t code, int32_t modifiers) {
    SubPane *focus = FocusPane();
    if (!focus || !Contains(focus))
        focus = this;
    if (keyval == GDK_F10 &&
        (modifiers & (256 | kModShift | kModOption | kModControl)) == kModShift &&
        ContextualMenu(focus->bounds.left, focus->bounds.top))
        return true;
    const int32_t character = CharacterForKey(keyval);
    if (gMenuKeyOffer && gMenuKeyOffer(this, character, modifiers))
        return true;
    return !closing && KeyDownWindow(character, code, modifiers);
}

namespace {

SubPane *FirstButton(const std::vector<SubPane *> &panes, bool (SubPane::*is)() const) {
    for (SubPane *pane : panes)
        if (pane->visible && pane->enabled && !pane->closing && (pane->*is)())
            return pane;
    return nullptr;
}

bool IsTextWidget(GtkWidget *widget) {
    return widget && (GTK_IS_ENTRY(widget) || GTK_IS_TEXT_VIEW(widget));
}

} // namespace

SubPane *Window::FindDefaultButton() {
    return FirstButton(PanesInCreationOrder(), &SubPane::IsDefaultButton);
}

SubPane *Window::FindCancelButton() {
    return FirstButton(PanesInCreationOrder(), &SubPane::IsCancelButton);
}

bool Window::KeyDownWindow(int32_t character, int32_t code, int32_t modifiers) {
    SubPane *focus = FocusPane();
    if (focus && focus != this && Contains(focus)) {
        if (focus->KeyDown(character, code, modifiers))
            return true;
        // The text widget gets the key it keeps; the window does not.
        if (!closing && Contains(focus) && IsTextWidget(focus->GetWidget()) &&
            focus->WantsKey(character, modifiers))
            return false;
    }
    if (closing || KeyDown(character, code, modifiers))
        return true;
    if (closing)
        return true;
    SubPane *button = character == 27                     ? FindCancelButton()
                      : character == 13 || character == 3 ? FindDefaultButton()
                                                          : nullptr;
    if (button) {
        button->Press();
        return true;
    }
    // Tab moves the focus through the panes in creation order.
    if (character == 9 && !(modifiers & (256 | kModOption | kModControl))) {
        std::vector<SubPane *> order;
        for (SubPane *p : PanesInCreationOrder())
            if (p->CanFocus())
                order.push_back(p);
        if (order.empty())
            return false;
        auto it = std::find(order.begin(), order.end(), focus);
        bool back = modifiers & kModShift;
        SubPane *next;
        if (it == order.end())
            next = back ? order.back() : order.front();
        else if (back)
            next = it == order.begin() ? order.back() : *(it - 1);
        else
            next = (it + 1) == order.end() ? order.front() : *(it + 1);
        SetStoredFocus(next);
        if (next->GetWidget())
            gtk_widget_grab_focus(next->GetWidget());
        SetFocus(next);
        return true;
    }
    return false;
}

void Window::GetMinMaxSize(int32_t &minW, int32_t &minH, int32_t &maxW, int32_t &maxH) {
    minW = minH = maxW = maxH = 0;
}

void Window::Show() {
    shown = true;
    if (mGtkWindow && GTK_WIDGET_MAPPED(mGtkWindow))
        gtk_window_present(GTK_WINDOW(mGtkWindow));
    // Otherwise the run loop's pre-step maps it.
}

void Window::Hide() {
    shown = false;
    if (mGtkWindow)
        gtk_widget_hide(mGtkWindow);
}

void Window::PrepareModal() {
    placementParent = nullptr;
    PreStep();
}

void Window::Move(int32_t left, int32_t top, bool notify) {
    if (mGtkWindow)
        gtk_window_move(GTK_WINDOW(mGtkWindow), left, top - MenuBarHeight(this));
    // The notice is ours to give; the toolkit's report of this very move,
    // which comes a pass or two later, must not give it again.
    MoveTo(lastBounds, left, top);
    AwaitGeometry();
    if (notify)
        movedPending = true;
}

void Window::Resize(int32_t newWidth, int32_t newHeight, bool notify) {
    if (mGtkWindow) {
        const int32_t bar = MenuBarHeight(this);
        if (!resizable) {
            GdkGeometry hints{};
            hints.min_width = hints.max_width = std::max(1, newWidth);
            hints.min_height = hints.max_height = std::max(1, newHeight) + bar;
            gtk_window_set_geometry_hints(GTK_WINDOW(mGtkWindow), nullptr, &hints,
                                          GdkWindowHints(GDK_HINT_MIN_SIZE | GDK_HINT_MAX_SIZE));
        }
        gtk_window_resize(GTK_WINDOW(mGtkWindow), std::max(1, newWidth),
                          std::max(1, newHeight) + bar);
    }
    bounds = Rect{0, 0, static_cast<int16_t>(newHeight), static_cast<int16_t>(newWidth)};
    width = newWidth;
    height = newHeight;
    lastBounds.right = static_cast<int16_t>(lastBounds.left + std::max(1, newWidth));
    lastBounds.bottom = static_cast<int16_t>(lastBounds.top + std::max(1, newHeight));
    HoldFixedSize();
    AwaitGeometry();
    if (notify)
        resizedPending = true;
}

void Window::HoldFixedSize() {
    // The toolkit sizes a window that can't be resized from what its
    // content asks for, and an empty GtkFixed asks for nothing: without
    // this such a window would shrink to a dot.
    if (!mWidget || !mGtkWindow)
        return;
    if (resizable)
        gtk_widget_set_size_request(mWidget, -1, -1);
    else
        gtk_widget_set_size_request(mWidget, std::max(1, width), std::max(1, height));
}

void Window::SetResizable(bool flag) {
    resizable = flag;
    if (!mGtkWindow)
        return;
    // Equal limits left by an earlier fixed size would still pin it; the
    // window's own limits come back with its next configure.
    if (flag)
        gtk_window_set_geometry_hints(GTK_WINDOW(mGtkWindow), nullptr, nullptr, GdkWindowHints(0));
    gtk_window_set_resizable(GTK_WINDOW(mGtkWindow), flag ? TRUE : FALSE);
    HoldFixedSize();
}

void Window::SetTitle(const std::string &newTitle) {
    title = newTitle;
    if (mGtkWindow)
        gtk_window_set_title(GTK_WINDOW(mGtkWindow), title.c_str());
}

void Window::Maximize() {
    if (mGtkWindow && !maximized)
        gtk_window_maximize(GTK_WINDOW(mGtkWindow));
}

void Window::Minimize() {
    if (mGtkWindow && !iconified)
        gtk_window_iconify(GTK_WINDOW(mGtkWindow));
}

void Window::Restore() {
    if (!mGtkWindow)
        return;
    if (maximized)
        gtk_window_unmaximize(GTK_WINDOW(mGtkWindow));
    else if (iconified)
        gtk_window_deiconify(GTK_WINDOW(mGtkWindow));
}

void Window::SetBackdropColor(bool has, uint32_t color) {
    hasBackdropColor = has;
    if (has)
        backdropColor = color;
}

bool Window::ToolkitSizeReport(int32_t contentWidth, int32_t contentHeight) {
    if (closing)
        return true;
    // Sizes we asked for ourselves are not the user's drag; our own Resize
    // has set the pane's size already, so only a foreign size gets through.
    if (!liveResize || mAwaitingGeometry || contentWidth <= 0 || contentHeight <= 0)
        return false;
    if (contentWidth == width && contentHeight == height)
        return false;
    width = contentWidth;
    height = contentHeight;
    bounds = Rect{0, 0, static_cast<int16_t>(contentHeight), static_cast<int16_t>(contentWidth)};
    if (!LockForEvent())
        return true;
    Resizing();
    return UnlockAfterEvent();
}

namespace {

using WindowStateCall = void (*)(GtkWindow *);

// Older toolkits lack the full-screen calls, so they are looked up rather
// than linked; a window manager that can't do it is treated the same way.
WindowStateCall ToolkitCall(const char *name) {
    return reinterpret_cast<WindowStateCall>(FindLoadedSymbol("libgtk-x11-2.0.so.0", name));
}

} // namespace

void Window::SetFullScreen(bool on) {
    if (on == mFullScreen || !mGtkWindow || closing)
        return;
    GtkWindow *gw = GTK_WINDOW(mGtkWindow);
    if (on) {
        mFullScreen = true;
        mResizableBeforeFullScreen = resizable;
        mBoundsBeforeFullScreen = CurrentScreenBounds();
        if (!resizable)
            SetResizable(true);
        GdkGeometry hints{};
        hints.min_width = hints.min_height = 0;
        hints.max_width = hints.max_height = 32000;
        gtk_window_set_geometry_hints(gw, nullptr, &hints,
                                      GdkWindowHints(GDK_HINT_MIN_SIZE | GDK_HINT_MAX_SIZE));
        WindowStateCall enter = ToolkitCall("gtk_window_fullscreen");
        mFullScreenByManager = enter && WindowManagerDoesFullScreen();
        if (mFullScreenByManager) {
            // Let the new hints reach the manager before the request; the
            // passes may run a handler that closes this very window.
            if (!LockForEvent())
                return;
            for (int i = 0; i < 5; ++i)
                MainLoopStep(false);
            if (UnlockAfterEvent())
                return;
            enter(gw);
            return;
        }
        std::vector<GdkRectangle> screens = Screens();
        if (screens.empty())
            return;
        const GdkRectangle *s = ScreenShowingMost(screens, mBoundsBeforeFullScreen);
        if (!s)
            s = &screens[0];
        Move(s->x, s->y, true);
        Resize(s->width, s->height - MenuBarHeight(this), true);
        return;
    }
    mFullScreen = false;
    WindowStateCall leave = ToolkitCall("gtk_window_unfullscreen");
    Rect r = mBoundsBeforeFullScreen;
    // The open limits go; the window's own come back with its next
    // configure, and a fixed size from SetResizable below.
    gtk_window_set_geometry_hints(gw, nullptr, nullptr, GdkWindowHints(0));
    if (mFullScreenByManager && leave) {
        leave(gw);
        // The manager puts the frame back; the content size is ours.
        width = r.right - r.left;
        height = r.bottom - r.top;
        SetResizable(mResizableBeforeFullScreen);
        return;
    }
    mFullScreenByManager = false;
    Move(r.left, r.top, true);
    Resize(r.right - r.left, r.bottom - r.top, true);
    SetResizable(mResizableBeforeFullScreen);
}

void Window::FullScreenEndedByManager() {
    // The manager's own way out (a key of its own, say): the window is
    // back in its frame, so its limits and fixed size come back too.
    if (!mFullScreen || !mFullScreenByManager || !mGtkWindow)
        return;
    mFullScreen = false;
    gtk_window_set_geometry_hints(GTK_WINDOW(mGtkWindow), nullptr, nullptr, GdkWindowHints(0));
    width = mBoundsBeforeFullScreen.right - mBoundsBeforeFullScreen.left;
    height = mBoundsBeforeFullScreen.bottom - mBoundsBeforeFullScreen.top;
    SetResizable(mResizableBeforeFullScreen);
}

Rect Window::CurrentScreenBounds() {
    Rect r = lastBounds;
    if (mGtkWindow && GTK_WIDGET_VISIBLE(mGtkWindow) && mGtkWindow->window) {
        int x = 0, y = 0, w = 0, h = 0;
        gdk_window_get_origin(mGtkWindow->window, &x, &y);
        gtk_window_get_size(GTK_WINDOW(mGtkWindow), &w, &h);
        y += MenuBarHeight(this); // the content starts below the bar
        h -= MenuBarHeight(this);
        r = Rect{static_cast<int16_t>(y), static_cast<int16_t>(x), static_cast<int16_t>(y + h),
                 static_cast<int16_t>(x + w)};
    } else {
        r.right = static_cast<int16_t>(r.left + width);
        r.bottom = static_cast<int16_t>(r.top + height);
    }
    return r;
}

void Window::AwaitGeometry() {
    mAwaitingGeometry = true;
    mAwaitStartTick = TickCount();
}

void Window::PreStep() {
    Rect now = CurrentScreenBounds();
    bool toolkitMoved = now.left != lastBounds.left || now.top != lastBounds.top;
    bool toolkitResized = (now.right - now.left) != (lastBounds.right - lastBounds.left) ||
                          (now.bottom - now.top) != (lastBounds.bottom - lastBounds.top);
    if (mAwaitingGeometry) {
        // Until the toolkit shows the geometry we asked for (or half a
        // second has gone by), its older reports are no user's doing.
        int32_t tick = TickCount();
        if ((!toolkitMoved && !toolkitResized) || tick - mAwaitStartTick > 30 ||
            tick < mAwaitStartTick)
            mAwaitingGeometry = false;
        toolkitMoved = toolkitResized = false;
    }
    bool moved = movedPending || toolkitMoved;
    bool resized = resizedPending || toolkitResized;
    if (toolkitMoved || toolkitResized)
        lastBounds = now;
    if (moved) {
        movedPending = false;
        if (LockForEvent()) {
            Moved();
            if (UnlockAfterEvent())
                return;
        }
    }
    if (resized) {
        resizedPending = false;
        if (LockForEvent()) {
            Resized();
            if (UnlockAfterEvent())
                return;
        }
    }
    if (shown && !closing && mGtkWindow && !GTK_WIDGET_VISIBLE(mGtkWindow))
        gtk_widget_show(mGtkWindow);
}

void Window::Close() {
    if (mGtkWindow)
        gtk_widget_hide(mGtkWindow);
    SubPane::Close();
}

int32_t MenuBarHeight(const Window *window) {
    if (!window || !window->hasMenuBar || !window->GtkWin())
        return 0;
    GtkWidget *box = gtk_bin_get_child(GTK_BIN(window->GtkWin()));
    if (!box)
        return 0;
    GList *items = gtk_container_get_children(GTK_CONTAINER(box));
    int32_t height = 0;
    for (GList *item = items; item; item = item->next) {
        auto *child = static_cast<GtkWidget *>(item->data);
        if (!GTK_IS_MENU_BAR(child) || !GTK_WIDGET_VISIBLE(child))
            continue;
        // Until the bar is laid out its allocation means nothing; the
        // height it asks for is the height it will get.
        if (GTK_WIDGET_MAPPED(child) && child->allocation.height > 1) {
            height = child->allocation.height;
        } else {
            GtkRequisition request{};
            gtk_widget_size_request(child, &request);
            height = request.height;
        }
    }
    g_list_free(items);
    return height;
}

int32_t Window::ContentTop() const { return MenuBarHeight(this); }

bool Window::PointerInContent(int32_t &x, int32_t &y) {
    if (!mGtkWindow || !GTK_WIDGET_REALIZED(mGtkWindow))
        return false;
    int px = 0, py = 0;
    ContentPointer(this, px, py);
    x = px, y = py;
    return true;
}

Window *WindowOf(SubPane *pane) { return pane ? dynamic_cast<Window *>(pane->Root()) : nullptr; }

void CloseAllWindows() {
    Window *last = nullptr;
    while (!gWindows.empty()) {
        Window *head = gWindows.front();
        if (head == last)
            break; // it would not go
        last = head;
        head->Close();
    }
}

void SetMenuKeyOffer(MenuKeyOffer offer) { gMenuKeyOffer = offer; }
void SetContextualMenuOffer(ContextualMenuOffer offer) { gContextualMenuOffer = offer; }

bool Window::ContextualClick(int32_t x, int32_t y, int32_t modifiers) {
    if (SubPane::ContextualClick(x, y, modifiers) || closing)
        return true;
    return ContextualMenu(x, y);
}

bool Window::ContextualMenu(int32_t x, int32_t y) {
    return gContextualMenuOffer && !closing && gContextualMenuOffer(this, x, y);
}

const std::vector<Window *> &WindowList() { return gWindows; }
Window *FrontWindow() { return gFrontToBack.empty() ? nullptr : gFrontToBack.front(); }
const std::vector<Window *> &WindowsFrontToBack() { return gFrontToBack; }
void BringToFront(Window *window) {
    auto it = std::find(gFrontToBack.begin(), gFrontToBack.end(), window);
    if (it != gFrontToBack.end())
        std::rotate(gFrontToBack.begin(), it, it + 1);
}

} // namespace kelp
