#include "panes/pane.h"

#include "panes/pane_root.h"

#include "base/fatal_report.h"
#include "graphics/graphics_gtk.h"
#include "graphics/graphics_target.h"
#include "process/process_state.h"
#include "runloop/background_task.h"

#include <algorithm>
#include <set>

namespace kelp {
namespace {

SubPane *gFocusPane = nullptr;
SubPane *gCapturePane = nullptr;
int32_t gModifiers = 0;
std::vector<PaneDeathNotificationReceiver *> &DeathReceivers() {
    static std::vector<PaneDeathNotificationReceiver *> receivers;
    return receivers;
}
std::set<guint> &KeysDown() {
    static std::set<guint> keys;
    return keys;
}

} // namespace

void FollowKeyEvent(void *, void *data) {
    auto *event = static_cast<GdkEventKey *>(data);
    if (event->type == GDK_KEY_PRESS)
        KeysDown().insert(event->keyval);
    else if (event->type == GDK_KEY_RELEASE) {
        // A letter pressed with Shift and released after it comes back in
        // the other case: either case's release lets the key go.
        KeysDown().erase(event->keyval);
        KeysDown().erase(gdk_keyval_to_upper(event->keyval));
        KeysDown().erase(gdk_keyval_to_lower(event->keyval));
    }
    NoteUserEvent();
}

namespace {
const char kFile[] = "runtime/panes/pane.cpp";
} // namespace

// ------------------------------------------------------------- globals

SubPane *FocusPane() { return gFocusPane; }

namespace {
FocusMoveHook gFocusMoved = nullptr;
} // namespace

void SetFocusMoveHook(FocusMoveHook hook) { gFocusMoved = hook; }

void SetFocus(SubPane *pane) {
    if (pane)
        pane = pane->GetFocusTarget();
    if (pane == gFocusPane)
        return;
    SubPane *old = gFocusPane;
    gFocusPane = nullptr;
    if (old) {
        old->LoseFocus();
        if (gFocusPane) // the handler moved the focus elsewhere
            return;
    }
    gFocusPane = pane;
    if (pane)
        pane->GainFocus();
    if (gFocusMoved && gFocusPane == pane)
        gFocusMoved(old, pane);
}

SubPane *MouseCapturePane() { return gCapturePane; }
void SetMouseCapturePane(SubPane *pane) { gCapturePane = pane; }

int32_t ModifiersFromState(guint state) {
    int32_t m = 0;
    if (state & GDK_SHIFT_MASK)
        m |= kModShift;
    if (state & GDK_CONTROL_MASK)
        m |= kModControl;
    if (state & GDK_MOD1_MASK)
        m |= kModOption;
    return m;
}
int32_t CurrentModifiers() { return gModifiers; }
void SetCurrentModifiers(int32_t modifiers) { gModifiers = modifiers; }

bool KeyIsDown(guint keyval) { return KeysDown().count(keyval) != 0; }

namespace {
ApplicationCursorSource gAppCursor = nullptr;
MouseCursorReader gCursorReader = nullptr;
GdkCursor *gShownCursor = nullptr;
GdkCursor *gGlobalCursor = nullptr; // counted
bool gCursorApplied = false;

SubPane *TopPaneAt(SubPane *pane, int32_t x, int32_t y) {
    const auto &kids = pane->Children();
    for (size_t i = kids.size(); i-- > 0;)
        if (kids[i]->visible && kids[i]->HitTest(x, y))
            return TopPaneAt(kids[i], x, y);
    return pane;
}

GdkCursor *TopCursorAt(SubPane *pane, int32_t x, int32_t y) {
    const auto &kids = pane->Children();
    for (size_t i = kids.size(); i-- > 0;) {
        SubPane *child = kids[i];
        if (!child->visible || !child->HitTest(x, y))
            continue;
        if (GdkCursor *inner = TopCursorAt(child, x, y))
            return inner;
        if (child->cursor)
            return child->cursor;
    }
    return nullptr;
}
} // namespace

void SetApplicationCursorSource(ApplicationCursorSource source) { gAppCursor = source; }
void SetMouseCursorReader(MouseCursorReader reader) { gCursorReader = reader; }
GdkCursor *CursorOfObject(RuntimeObject *mouseCursor) {
    return mouseCursor && gCursorReader ? gCursorReader(mouseCursor) : nullptr;
}

void SetGlobalPaneCursor(GdkCursor *cursor) {
    if (cursor)
        gdk_cursor_ref(cursor);
    if (gGlobalCursor)
        gdk_cursor_unref(gGlobalCursor);
    gGlobalCursor = cursor;
}

GdkCursor *GlobalPaneCursor() { return gGlobalCursor; }

GdkCursor *ChooseCursor(PaneRoot *root, int32_t x, int32_t y) {
    if (GdkCursor *app = gAppCursor ? gAppCursor() : nullptr)
        return app;
    if (GdkCursor *pane = TopCursorAt(root, x, y))
        return pane;
    if (gGlobalCursor)
        return gGlobalCursor;
    return root->cursor;
}

void ApplyCursor(PaneRoot *root, GdkCursor *cursor) {
    if (gCursorApplied && cursor == gShownCursor)
        return;
    GdkWindow *drawable = root->GetDrawable();
    if (!drawable)
        return;
    gdk_window_set_cursor(drawable, cursor);
    gShownCursor = cursor;
    gCursorApplied = true;
}

void AdjustCursorAt(PaneRoot *root, int32_t x, int32_t y) {
    SubPane *top = TopPaneAt(root, x, y);
    if (top != root && top->AdjustCursor(x, y)) {
        gCursorApplied = false; // the shape shown is the pane's, not the one remembered
        return;
    }
    ApplyCursor(root, ChooseCursor(root, x, y));
}

PaneDeathNotificationReceiver::PaneDeathNotificationReceiver() { DeathReceivers().push_back(this); }
PaneDeathNotificationReceiver::~PaneDeathNotificationReceiver() {
    auto &r = DeathReceivers();
    r.erase(std::remove(r.begin(), r.end(), this), r.end());
}

// ------------------------------------------------------------- SubPane

SubPane::SubPane(SubPane *requestedParent, Rect rect, GtkWidget *w) : bounds(rect) {
    width = bounds.right - bounds.left;
    height = bounds.bottom - bounds.top;
    if (requestedParent) {
        PaneRoot *root = requestedParent->Root();
        SubPane *chosen = requestedParent;
        // A child given to the root goes under the last pane that holds it.
        if (root && requestedParent == root)
            chosen = root->HolderFor(this);
        if (!chosen->AddChild(this) && root && chosen != root)
            root->AddChild(this);
        if (root)
            root->Register(this);
    }
    if (w)
        SetWidget(w);
}

SubPane::~SubPane() {
    KELP_ASSERT(this != FocusPane(), kFile);
    KELP_ASSERT(lockCount <= 0, kFile);
    if (gFocusPane == this)
        gFocusPane = nullptr;
    if (gCapturePane == this)
        gCapturePane = nullptr;
    if (mWidget) {
        GtkWidget *w = mWidget;
        mWidget = nullptr;
        gtk_widget_destroy(w);
        g_object_unref(w);
    }
}

void SubPane::SetWidget(GtkWidget *w) {
    mWidget = w;
    g_object_ref_sink(w);
    PlaceWidget();
}

void SubPane::PlaceWidget() {
    PaneRoot *root = Root();
    if (!mWidget || !root || root == this || !root->Fixed())
        return;
    GtkWidget *fixed = root->Fixed();
    // Negative sizes from a layout keep the bounds but request nothing.
    int w = std::max(0, width), h = std::max(0, height);
    if (gtk_widget_get_parent(mWidget) == fixed)
        gtk_fixed_move(GTK_FIXED(fixed), mWidget, bounds.left, bounds.top);
    else
        gtk_fixed_put(GTK_FIXED(fixed), mWidget, bounds.left, bounds.top);
    gtk_widget_set_size_request(mWidget, w, h);
}

PaneRoot *SubPane::Root() {
    SubPane *p = this;
    while (p->mParent)
        p = p->mParent;
    return dynamic_cast<PaneRoot *>(p);
}

bool SubPane::AddChild(SubPane *child) {
    child->mParent = this;
    mChildren.push_back(child);
    return true;
}

void SubPane::RemoveChild(SubPane *child) {
    mChildren.erase(std::remove(mChildren.begin(), mChildren.end(), child), mChildren.end());
    if (child->mParent == this)
        child->mParent = nullptr;
}

bool SubPane::Contains(const SubPane *pane) const {
    for (auto it = mChildren.rbegin(); it != mChildren.rend(); ++it)
        if (*it == pane || (*it)->Contains(pane))
            return true;
    return false;
}

bool SubPane::Encloses(const SubPane *other) const {
    if (bounds.right <= bounds.left || bounds.bottom <= bounds.top)
        return false; // an empty rectangle holds nothing
    return other->bounds.left >= bounds.left && other->bounds.top >= bounds.top &&
           other->bounds.right <= bounds.right && other->bounds.bottom <= bounds.bottom;
}

bool SubPane::HitTest(int32_t x, int32_t y) const {
    return x >= bounds.left && x < bounds.right && y >= bounds.top && y < bounds.bottom;
}

GdkWindow *SubPane::GetDrawable() {
    return mWidget && GTK_WIDGET_REALIZED(mWidget) ? mWidget->window : nullptr;
}

Graphics *SubPane::NewGraphics() {
    if (!mWidget)
        return nullptr;
    PaneRoot *root = Root();
    const bool shares = GTK_WIDGET_NO_WINDOW(mWidget);
    auto *target = new WidgetTarget(mWidget, bounds,
                                    shares ? WidgetTarget::kSharesWindow : WidgetTarget::kOwnWindow,
                                    shares && root ? root->ContentTop() : 0);
    // Erasing shows the window's back colour, not the widget's theme grey.
    uint32_t back = 0;
    if (root && root != this && root->BackColor(back))
        target->SetBackColor(true, back);
    return new GraphicsGTK(target, true);
}

void SubPane::RedrawNow() {
    Graphics *g = NewGraphics();
    DrawIfAllowed(g, true);
    delete g;
}

void SubPane::Expose() {
    if (!closing)
        RedrawNow();
}

void SubPane::Invalidate(bool) {
    GdkWindow *drawable = GetDrawable();
    if (!drawable || closing)
        return;
    GdkRectangle r;
    if (GTK_WIDGET_NO_WINDOW(mWidget)) {
        PaneRoot *root = Root();
        r = {bounds.left, bounds.top + (root ? root->ContentTop() : 0), width, height};
    } else {
        r = {0, 0, width, height};
    }
    gdk_window_invalidate_rect(drawable, &r, TRUE);
}

bool SubPane::MouseDown(int32_t, int32_t, int32_t) { return false; }

void SubPane::EnableMenuItems() {
    if (mParent)
        mParent->EnableMenuItems();
}

bool SubPane::MenuSelected(RuntimeObject *item) {
    return mParent ? mParent->MenuSelected(item) : false;
}

bool SubPane::ContextualClick(int32_t x, int32_t y, int32_t modifiers) {
    for (size_t i = mChildren.size(); i-- > 0;) {
        if (i >= mChildren.size())
            continue;
        SubPane *child = mChildren[i];
        if (child->visible && child->HitTest(x, y) && child->ContextualClick(x, y, modifiers))
            return true;
    }
    return false;
}

void SubPane::MouseMove(int32_t x, int32_t y) {
    // Enter and exit come from rectangles, not from toolkit crossings: all
    // exits first, then enters and moves.
    std::vector<SubPane *> snapshot = mChildren;
    for (SubPane *child : snapshot)
        if (child->mouseInside && !(child->visible && child->HitTest(x, y))) {
            child->mouseInside = false;
            child->MouseExit();
        }
    for (SubPane *child : snapshot) {
        if (!child->visible || !child->HitTest(x, y))
            continue;
        if (!child->mouseInside) {
            child->mouseInside = true;
            child->MouseEnter();
        }
        child->MouseMove(x, y);
    }
}

bool SubPane::MouseWheel(int32_t, int32_t, int32_t) { return false; }

bool SubPane::KeyDown(int32_t, int32_t, int32_t) { return false; }

bool SubPane::CanFocus() { return mWidget && enabled && visible && GTK_WIDGET_CAN_FOCUS(mWidget); }

void SubPane::SetBounds(Rect rect, bool invalidate) {
    if (rect.top == bounds.top && rect.left == bounds.left && rect.bottom == bounds.bottom &&
        rect.right == bounds.right)
        return;
    if (invalidate && visible)
        Invalidate(true);
    int dx = rect.left - bounds.left, dy = rect.top - bounds.top;
    bounds = rect;
    width = bounds.right - bounds.left;
    height = bounds.bottom - bounds.top;
    PlaceWidget();
    for (SubPane *child : std::vector<SubPane *>(mChildren)) {
        Rect c = child->bounds;
        c.left += dx, c.right += dx, c.top += dy, c.bottom += dy;
        child->SetBounds(c, invalidate);
    }
    if (invalidate)
        Invalidate(true);
}

void SubPane::SetVisible(bool flag) {
    if (flag == visible)
        return;
    if (flag && mParent && !mParent->visible)
        return;
    if (!flag && (gFocusPane == this || Contains(gFocusPane)))
        SetFocus(nullptr);
    visible = flag;
    for (SubPane *child : std::vector<SubPane *>(mChildren))
        child->SetVisible(flag);
    Invalidate(true);
    if (mWidget)
        flag ? gtk_widget_show(mWidget) : gtk_widget_hide(mWidget);
}

void SubPane::SetEnabled(bool flag, bool repaint) {
    if (flag == enabled)
        return;
    if (flag && mParent && !mParent->enabled)
        return;
    enabled = flag;
    for (SubPane *child : std::vector<SubPane *>(mChildren))
        child->SetEnabled(flag, repaint);
    if (mWidget)
        gtk_widget_set_sensitive(mWidget, flag);
    if (repaint)
        Invalidate(true);
    if (!flag && gFocusPane == this)
        SetFocus(nullptr);
    // Nor may activating the window again give it the focus back.
    PaneRoot *root = flag ? nullptr : Root();
    if (root && root->StoredFocus() == this)
        root->SetStoredFocus(nullptr);
}

bool SubPane::LockForEvent() {
    if (closing)
        return false;
    for (SubPane *p = this; p; p = p->mParent)
        p->Lock();
    return true;
}

bool SubPane::UnlockAfterEvent() {
    // Parents first, before an unlock can free this pane.
    std::vector<SubPane *> chain;
    for (SubPane *p = this; p; p = p->mParent)
        chain.push_back(p);
    bool wasClosing = closing;
    bool destroyed = false;
    for (SubPane *p : chain)
        if (p->Unlock())
            destroyed = true;
    return wasClosing || destroyed;
}

bool SubPane::Unlock() {
    if (--lockCount >= 0)
        return false;
    for (size_t i = mChildren.size(); i-- > 0;)
        if (i < mChildren.size())
            mChildren[i]->Close();
    PaneRoot *root = Root();
    if (mParent)
        mParent->RemoveChild(this);
    if (root && root != static_cast<SubPane *>(this))
        root->Unregister(this);
    delete this;
    return true;
}

void SubPane::Close() {
    if (closing)
        return;
    closing = true;
    for (PaneDeathNotificationReceiver *r : std::vector(DeathReceivers()))
        r->PaneDied(this);
    if (gCapturePane == this)
        gCapturePane = nullptr;
    if (gFocusPane == this)
        SetFocus(nullptr);
    if (PaneRoot *root = Root(); root && root->StoredFocus() == this)
        root->SetStoredFocus(nullptr);
    Unlock();
}

} // namespace kelp
