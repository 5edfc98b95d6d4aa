#pragma once
// A top-level pane around a GtkWindow: a GtkVBox holds the GtkFixed that is
// the parent of every control widget (and a menu bar when there is one).
// Showing happens in the run loop's pre-step, and so do the Moved and
// Resized notices, at most once a pass.
#include "panes/pane.h"

#include <string>
#include <vector>

namespace kelp {

// Frame constants of the language and the internal kinds they map to.
int32_t KindForFrame(int32_t frame);
int32_t DefaultPlacementForFrame(int32_t frame);
bool IsModalKind(int32_t kind);
int32_t LayerOfKind(int32_t kind);

enum Placement : int32_t {
    kPlacementDefault = 0,
    kPlacementParent = 1,
    kPlacementMainScreen = 2,
    kPlacementParentScreen = 3,
    kPlacementStagger = 4,
};

// Where a window of this kind and size goes on the screen (screen
// coordinates of its content): stagger, centring and keeping on screen.
Rect PlaceBounds(Rect bounds, int32_t placement, int32_t kind);

class Window : public ContainerPane {
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

    virtual void DrawContents(Graphics *g) { (void)g; }
    virtual void Moved() {}
    virtual void Resized() {}
    // The toolkit asks to close (the title bar's button): true keeps it.
    virtual bool CloseRequest() { return false; }
    virtual void Activate();
    virtual void Deactivate() {}
    virtual bool KeyDownWindow(int32_t character, int32_t code, int32_t modifiers);
    // Minimum and maximum content size (0 where there is none).
    virtual void GetMinMaxSize(int32_t &minW, int32_t &minH, int32_t &maxW, int32_t &maxH);

    void Show();
    void Hide();
    void PrepareModal();
    void Move(int32_t left, int32_t top, bool notify);
    void Resize(int32_t width, int32_t height, bool notify);
    void SetTitle(const std::string &title);
    // The toolkit's maximize and iconify, unless the window is so already;
    // Restore undoes whichever is in force.
    void Maximize();
    void Minimize();
    void Restore();
    bool maximized = false, iconified = false;
    void SetBackdropColor(bool has, uint32_t color);
    // Deferred notices and the deferred show of this window.
    void PreStep();
    // The content's rectangle on the screen as the toolkit has it now.
    Rect CurrentScreenBounds();

    GtkWidget *Fixed() const { return widget; }
    GtkWidget *GtkWin() const { return gtkWindow; }

    std::vector<SubPane *> flatList; // every pane, in creation (tab) order
    SubPane *storedFocus = nullptr;
    SubPane *nativeClickPane = nullptr;
    int32_t kind;
    bool shown = false;
    bool resizable;
    bool resizedPending = false, movedPending = false;
    bool hasBackdropColor = false;
    uint32_t backdropColor = 0xffffff;
    bool hasMenuBar = false;
    Rect lastBounds;        // screen rectangle the pre-step compares with
    std::string title;
    SubPane *placementParent = nullptr;
    int32_t showFacing = 0;

protected:
    // Moves and resizes we asked for are reported by the toolkit later.
    void AwaitGeometry();
    bool awaitingGeometry = false;
    int32_t awaitStartTick = 0;
    GtkWidget *gtkWindow = nullptr;
    GtkWidget *gtkBox = nullptr;
};

// All windows, newest first.
const std::vector<Window *> &WindowList();
// Front to back: focus moves a window to the front.
Window *FrontWindow();
void BringToFront(Window *window);

} // namespace kelp
