#pragma once
// The pane tree between the toolkit and the objects of the language.  A
// pane is one rectangle in window coordinates; windows own their panes, a
// pane owns its widget.  Toolkit signals enter at the window and become
// virtual calls here.
#include "graphics/geometry.h"
#include "kelp/records.h"

#include <gtk/gtk.h>

#include <cstdint>
#include <vector>

struct RuntimeObject;

namespace kelp {

class Graphics;
class PaneRoot;

enum Modifier : int32_t { kModShift = 512, kModOption = 2048, kModControl = 4096 };

class SubPane {
public:
    // With a parent, the pane joins its root's tree: given to the root
    // itself, it goes under the last pane of the tree that encloses it.
    SubPane(SubPane *parent, Rect bounds, GtkWidget *widget = nullptr);
    virtual ~SubPane();
    SubPane(const SubPane &) = delete;
    SubPane &operator=(const SubPane &) = delete;

    // --- drawing
    virtual void Draw(Graphics *g) { (void)g; }
    virtual void DrawIfAllowed(Graphics *g, bool flag) {
        if (flag)
            Draw(g);
    }
    // A Graphics on the pane's widget window (owned by the caller).
    virtual Graphics *NewGraphics();
    virtual void RedrawNow();
    virtual void Expose();
    virtual void Invalidate(bool erase);
    virtual GdkWindow *GetDrawable();

    // --- mouse; coordinates in window coordinates
    virtual bool MouseDown(int32_t x, int32_t y, int32_t modifiers);
    virtual bool ContextualClick(int32_t x, int32_t y, int32_t modifiers);
    virtual void MouseDrag(int32_t x, int32_t y) { (void)x, (void)y; }
    virtual void MouseMove(int32_t x, int32_t y);
    virtual void MouseUp(int32_t x, int32_t y) { (void)x, (void)y; }
    virtual void MouseEnter() {}
    virtual void MouseExit() {}
    virtual bool MouseWheel(int32_t x, int32_t y, int32_t delta);
    virtual bool PassesClicksThrough() { return false; }
    // True when the pane has set the pointer's shape itself: the window then
    // leaves the shape alone while the pointer is over the pane.
    virtual bool AdjustCursor(int32_t x, int32_t y) {
        (void)x, (void)y;
        return false;
    }

    // --- keyboard and focus
    virtual bool KeyDown(int32_t character, int32_t code, int32_t modifiers);
    virtual bool CanFocus();
    virtual void GainFocus() {}
    virtual void LoseFocus() {}
    virtual SubPane *GetFocusTarget() { return this; }
    // Buttons: the window presses its default one on Return or Enter and its
    // cancel one on Escape, when nothing before took the key.
    virtual bool IsDefaultButton() const { return false; }
    virtual bool IsCancelButton() const { return false; }
    virtual void Press() {}
    // A pane over a text widget keeps the keys it wants (Return in a
    // multi-line field, say): the window leaves those to the toolkit.
    virtual bool WantsKey(int32_t character, int32_t modifiers) {
        (void)character, (void)modifiers;
        return false;
    }
    virtual void Idle() {}

    // --- menus: the focus pane hears of the enable cycle and of a chosen
    // item first; what a pane does not take goes to its parent.
    virtual void EnableMenuItems();
    virtual bool MenuSelected(RuntimeObject *item);

    // --- tree and layout
    virtual void SetBounds(Rect rect, bool invalidate);
    virtual void SetVisible(bool flag);
    virtual void SetEnabled(bool flag, bool repaint);
    virtual bool AddChild(SubPane *child);
    virtual void RemoveChild(SubPane *child);
    virtual bool Encloses(const SubPane *other) const;
    virtual void Close();

    // --- locking against closing inside an event
    bool LockForEvent();
    // True when the pane was closing or got destroyed: touch nothing more.
    bool UnlockAfterEvent();
    void Lock() { ++lockCount; }
    // Destroys the pane when the count falls below 0; true if it did.
    bool Unlock();

    bool Contains(const SubPane *pane) const;
    bool HitTest(int32_t x, int32_t y) const;
    // The root of the pane's tree (its toolkit window), or null.
    PaneRoot *Root();
    SubPane *Parent() const { return mParent; }
    const std::vector<SubPane *> &Children() const { return mChildren; }
    GtkWidget *GetWidget() const { return mWidget; }
    void SetWidget(GtkWidget *w);
    bool IsClosing() const { return closing; }

    Rect bounds;
    int32_t width = 0, height = 0;
    bool mouseInside = false;
    int32_t lockCount = 0;
    bool visible = true, enabled = true, closing = false;
    // The pane's own pointer shape, or null for its window's (not owned).
    GdkCursor *cursor = nullptr;

protected:
    // Puts the widget into the root's GtkFixed at the pane's place.
    void PlaceWidget();
    SubPane *mParent = nullptr;
    std::vector<SubPane *> mChildren; // creation order = z-order, last on top
    GtkWidget *mWidget = nullptr;
};

// A pane whose children are drawn over it.
class ContainerPane : public SubPane {
public:
    using SubPane::SubPane;
};

// Hears about every pane that closes.
class PaneDeathNotificationReceiver {
public:
    PaneDeathNotificationReceiver();
    virtual ~PaneDeathNotificationReceiver();
    virtual void PaneDied(SubPane *pane) = 0;
};

SubPane *FocusPane();
void SetFocus(SubPane *pane);
// Told after every change of the focus pane (either may be null), so that
// a layer above can follow the focus across its own groupings of panes.
using FocusMoveHook = void (*)(SubPane *from, SubPane *to);
void SetFocusMoveHook(FocusMoveHook hook);
SubPane *MouseCapturePane();
void SetMouseCapturePane(SubPane *pane);

// The modifiers word from a toolkit event state.
int32_t ModifiersFromState(guint state);
int32_t CurrentModifiers();
void SetCurrentModifiers(int32_t modifiers);

// The pointer shape for a point of a window: the application's, else the
// top-most visible pane under the point that has one, else the window's
// own, else the toolkit's default (null).  Applied only when it changes.
using ApplicationCursorSource = GdkCursor *(*)();
void SetApplicationCursorSource(ApplicationCursorSource source);
// The toolkit cursor a MouseCursor object shows: the cursors layer, which
// owns those objects, reads it for the layers that only hold them.  Null
// for nil and for the toolkit's default.
using MouseCursorReader = GdkCursor *(*)(RuntimeObject *mouseCursor);
void SetMouseCursorReader(MouseCursorReader reader);
GdkCursor *CursorOfObject(RuntimeObject *mouseCursor);
// The cursor set globally, which stands between a pane's and the window's;
// null when none.  Setting takes a reference and drops the old one.
void SetGlobalPaneCursor(GdkCursor *cursor);
GdkCursor *GlobalPaneCursor();
// The first that exists of: the application's cursor, the cursor of the
// top-most visible child under the point, the global cursor, the window's.
GdkCursor *ChooseCursor(PaneRoot *root, int32_t x, int32_t y);
void ApplyCursor(PaneRoot *root, GdkCursor *cursor);
// The pointer moved to (x, y): the top-most visible pane there may keep the
// shape it set (AdjustCursor); otherwise ChooseCursor's choice is applied.
void AdjustCursorAt(PaneRoot *root, int32_t x, int32_t y);

// Keys held now, as FollowKeyEvent saw them.  The panes' Wire function makes
// it the process's key snoop hook, which sees every key event the toolkit
// delivers.
bool KeyIsDown(guint keyval);
void FollowKeyEvent(void *widget, void *event);
// Whether Escape is held: as the key events showed it, or else as the X
// server has the keyboard now, which works before any window of ours has
// the keyboard (a long calculation before the first window, say).
bool EscapeIsHeld();

} // namespace kelp
