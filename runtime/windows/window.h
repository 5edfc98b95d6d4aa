#pragma once
// A top-level pane around a GtkWindow: a GtkVBox holds the GtkFixed that is
// the parent of every control widget (and a menu bar when there is one).
// Showing happens in the run loop's pre-step, and so do the Moved and
// Resized notices, at most once a pass.
#include "panes/pane_root.h"

#include <string>
#include <vector>

namespace kelp {

// The internal kinds of windows; the language's Frame constants map to them.
enum WindowKind : int32_t {
    kKindMetalRounded = 0, // the rounded kind under a system metal flag; none here
    kKindFloating = 1,
    kKindModal = 2,
    kKindMovableModal = 3,
    kKindPlainBox = 4,
    kKindShadowedBox = 5,
    kKindRounded = 6,
    kKindUtility = 7, // floats like kKindFloating; no Frame makes it
    kKindDocument = 8,
    kKindGlobalFloating = 9,
    kKindSheet = 10,
    kKindMetal = 11,
    kKindDrawer = 12,
};

// The language's Frame constants: what a Window's Frame property holds.
enum FrameType : int32_t {
    kFrameTypeDocument = 0,
    kFrameTypeMovableModal = 1,
    kFrameTypeModal = 2,
    kFrameTypeFloating = 3,
    kFrameTypePlain = 4,
    kFrameTypeShadowed = 5,
    kFrameTypeRounded = 6,
    kFrameTypeGlobalFloating = 7,
    kFrameTypeSheet = 8,
    kFrameTypeMetal = 9,
    kFrameTypeDrawer = 10,
};

// A Frame outside the constants is taken as a document window.
int32_t KindForFrame(int32_t frame);
int32_t DefaultPlacementForFrame(int32_t frame);
// The kinds that the window's own logic treats as modal (menus disabled
// behind them, say).
bool IsModalKind(int32_t kind);
// The kinds the toolkit makes modal: IsModalKind's and the plain box.
bool IsToolkitModalKind(int32_t kind);
// Stagger places a window among the windows of its layer.
enum WindowLayer : int32_t {
    kLayerFloating = 0, // floating, utility and global floating windows
    kLayerModal = 1,    // the modal kinds, the boxes and sheets
    kLayerDocument = 2, // documents and every other kind
    kLayerDrawer = 3,
};
WindowLayer LayerOfKind(int32_t kind);

enum Placement : int32_t {
    kPlacementDefault = 0,
    kPlacementParent = 1,
    kPlacementMainScreen = 2,
    kPlacementParentScreen = 3,
    kPlacementStagger = 4,
    // The runtime's own alerts: centred on the screen of the top window of
    // the layer, half-way down instead of a third.
    kPlacementAlertCentre = 5,
};

// Where a window of this kind and size goes on the screen (screen
// coordinates of its content): stagger, centring and keeping on screen.
Rect PlaceBounds(Rect bounds, int32_t placement, int32_t kind);

class Window : public PaneRoot {
public:
    // `screenBounds`: the content's rectangle on the screen.
    Window(const std::string &title, int32_t kind, bool resizable, Rect screenBounds);
    ~Window() override;

    void Draw(Graphics *g) override;
    Graphics *NewGraphics() override;
    void Invalidate(bool erase) override;
    GdkWindow *GetDrawable() override;
    bool MouseDown(int32_t x, int32_t y, int32_t modifiers) override;
    void Close() override;

    // What the screen shows under DrawContents; drawing into another
    // Graphics (DrawInto) brings its own.
    virtual void DrawBackdrop(Graphics *g) { (void)g; }
    virtual void DrawContents(Graphics *g) { (void)g; }
    virtual void Moved() {}
    virtual void Resized() {}
    // A size the toolkit reports while the user is still dragging the
    // frame, with live resizing on: the pane's size is already the new one.
    virtual void Resizing() {}
    // The toolkit asks to close (the title bar's button): true keeps it.
    virtual bool CloseRequest() { return false; }
    // The pointer left the window: the panes it was in get MouseExit, then
    // the window itself.
    void PointerLeft();
    virtual void Activate();
    virtual void Deactivate() {}
    // A key press as the toolkit delivers it: Shift+F10 opens the contextual
    // menu, the menu bar's key equivalents come next, then KeyDownWindow.
    // True when the key was taken; false leaves it to the toolkit.
    bool KeyPress(guint keyval, int32_t code, int32_t modifiers);
    // The focus pane's keys, the window's, tab order, then the buttons.
    virtual bool KeyDownWindow(int32_t character, int32_t code, int32_t modifiers);
    // A right click: the panes under the point first, then the window's
    // contextual menu.
    bool ContextualClick(int32_t x, int32_t y, int32_t modifiers) override;
    // The contextual menu at a point of the window; true when one opened.
    virtual bool ContextualMenu(int32_t x, int32_t y);
    // The first visible, enabled pane that is the default (cancel) button.
    SubPane *FindDefaultButton();
    SubPane *FindCancelButton();
    // Minimum and maximum content size (0 where there is none).
    virtual void GetMinMaxSize(int32_t &minW, int32_t &minH, int32_t &maxW, int32_t &maxH);

    void Show();
    void Hide();
    void PrepareModal();
    void Move(int32_t left, int32_t top, bool notify);
    void Resize(int32_t width, int32_t height, bool notify);
    void SetTitle(const std::string &title);
    // A window that can't be resized keeps its content size: the user can't
    // drag it, and only Resize changes it.
    void SetResizable(bool flag);
    // The toolkit's maximize and iconify, unless the window is so already;
    // Restore undoes whichever is in force.
    void Maximize();
    void Minimize();
    void Restore();
    bool maximized = false, iconified = false;
    void SetBackdropColor(bool has, uint32_t color);
    int32_t ContentTop() const override;
    bool BackColor(uint32_t &colorWord) const override {
        if (hasBackdropColor)
            colorWord = backdropColor;
        return hasBackdropColor;
    }
    // Full screen through the window manager when it can do it; otherwise
    // the window itself covers the screen that shows most of it and goes
    // back to where it was on leaving.  A fixed-size window may grow while
    // full screen and is fixed again after.
    void SetFullScreen(bool on);
    bool IsFullScreen() const { return mFullScreen; }
    // The window manager took the window out of full screen by itself.
    void FullScreenEndedByManager();
    // A size report from the toolkit (content size): with live resizing
    // on, a size that differs from the pane's goes to Resizing at once.
    // True when the window is closing or gone after it: touch it no more.
    bool ToolkitSizeReport(int32_t contentWidth, int32_t contentHeight);
    // Deferred notices and the deferred show of this window.
    void PreStep();
    // The pointer in content coordinates; false while the window isn't built.
    bool PointerInContent(int32_t &x, int32_t &y);
    // The content's rectangle on the screen as the toolkit has it now.
    Rect CurrentScreenBounds();

    GtkWidget *GtkWin() const { return mGtkWindow; }

    SubPane *nativeClickPane = nullptr;
    int32_t kind;
    bool shown = false;
    bool resizable;
    bool resizedPending = false, movedPending = false;
    bool hasBackdropColor = false;
    uint32_t backdropColor = 0xffffff;
    bool hasMenuBar = false;
    Rect lastBounds;         // screen rectangle the pre-step compares with
    bool liveResize = false; // Resizing during a drag, not only Resized after
    std::string title;
    SubPane *placementParent = nullptr;
    int32_t showFacing = 0;

protected:
    // Moves and resizes we asked for are reported by the toolkit later.
    void AwaitGeometry();
    // Pins the content's requested size while the window can't be resized.
    void HoldFixedSize();
    bool mAwaitingGeometry = false;
    int32_t mAwaitStartTick = 0;
    GtkWidget *mGtkWindow = nullptr;
    GtkWidget *mGtkBox = nullptr;
    bool mFullScreen = false;
    bool mFullScreenByManager = false; // how we got there decides how to leave
    bool mResizableBeforeFullScreen = false;
    Rect mBoundsBeforeFullScreen{};
};

// The height of the window's menu bar above its content, 0 while it has
// none or it is hidden.  Every conversion between the toolkit's window and
// the content takes it from here: moves and sizes, size limits, the bounds
// kept, pointer positions, drawing and invalidation.
int32_t MenuBarHeight(const Window *window);

// The menu bar's key equivalents (Command and Control keys): the menus
// offer to take a key before the window's panes see it.  True when taken.
using MenuKeyOffer = bool (*)(Window *window, int32_t character, int32_t modifiers);
void SetMenuKeyOffer(MenuKeyOffer offer);
// The contextual menu at a point of a window (the menus build and pop it
// up); true when one opened.
using ContextualMenuOffer = bool (*)(Window *window, int32_t x, int32_t y);
void SetContextualMenuOffer(ContextualMenuOffer offer);
// Gives the presses and releases on a pane's own widget to the window's
// handlers, which the widget would otherwise keep from the window: a press
// goes through the window's MouseDown walk before the widget sees it.
void ConnectWidgetPresses(GtkWidget *widget, Window *window);

// The window of a pane's tree, or null for a pane outside any window.
Window *WindowOf(SubPane *pane);

// Closes every window, newest first (the end of the run, an EndException
// nobody took).
void CloseAllWindows();

// All windows, newest first.
const std::vector<Window *> &WindowList();
// Front to back: focus moves a window to the front.
Window *FrontWindow();
const std::vector<Window *> &WindowsFrontToBack();
void BringToFront(Window *window);

} // namespace kelp
