#pragma once
// The Window class of the language: its instance record (a RuntimeView) and
// the RuntimeViewWindow pane that is built for it when it is shown.
#include "windows/window.h"

#include "kelp/records.h"

#include <vector>

namespace kelp {

struct ObjectDefinition;
class RuntimeViewWindow;

struct ViewRecord {
    RuntimeObject object;
    uint8_t visible, closeButton, resizeable, maximizeButton;
    uint8_t liveResize, hasBackColor, fullScreen, menuBarVisible;
    uint8_t built, controlsCreated, composite, balloonHelp;
    int32_t frame, placement;
    int32_t left, top, width, height;
    int32_t minWidth, minHeight, maxWidth, maxHeight; // 0: none
    int32_t backColor;
    int32_t macProcId;
    KelpString title;
    RuntimeObject *backdrop, *graphics, *mouseCursor, *menuBar; // counted
    RuntimeViewWindow *pane;
    void *menuHandlers; // AddMenuHandler's map, made on first use
};

ObjectDefinition *WindowDefinition();
// The view's events that the menus fire.
struct ObjectHook;
class Graphics;

// Draws a window's Backdrop picture whole at the top left of `g`, cut off by
// the window's size.  Pictures live above this layer; the layer that knows
// both fills this in at wiring time.
using BackdropDrawer = void (*)(Graphics &g, RuntimeObject *picture, int32_t width, int32_t height);
void SetBackdropDrawer(BackdropDrawer drawer);
ObjectHook *ViewEnableMenuItemsHook();
ObjectHook *ViewConstructContextualMenuHook();
ObjectHook *ViewContextualMenuActionHook();

class RuntimeViewWindow : public Window {
public:
    RuntimeViewWindow(ViewRecord *view, const std::string &title, int32_t kind, bool resizable,
                      Rect screenBounds);
    ~RuntimeViewWindow() override;

    ViewRecord *View() const { return mView; }

    void DrawBackdrop(Graphics *g) override;
    void DrawContents(Graphics *g) override;
    void Moved() override;
    void Resized() override;
    void Resizing() override;
    bool CloseRequest() override;
    void Close() override;
    bool MouseDown(int32_t x, int32_t y, int32_t modifiers) override;
    void MouseDrag(int32_t x, int32_t y) override;
    void MouseUp(int32_t x, int32_t y) override;
    void MouseMove(int32_t x, int32_t y) override;
    void MouseEnter() override;
    void MouseExit() override;
    bool MouseWheel(int32_t x, int32_t y, int32_t delta) override;
    bool KeyDown(int32_t character, int32_t code, int32_t modifiers) override;
    void Activate() override;
    void Deactivate() override;
    void GetMinMaxSize(int32_t &minW, int32_t &minH, int32_t &maxW, int32_t &maxH) override;

private:
    // Lays the controls out for the size the pane has now.
    void LayOutControls();

    ViewRecord *mView; // one reference while the pane lives
    bool mViewClosing = false;
    int32_t mLaidOutWidth, mLaidOutHeight; // the size the controls are placed for
};

// The quit sequence's walk over the view windows, newest first: false when
// one refused in its CancelClose.
bool CloseViewWindowsForQuit();

// The window work of a pass of the run loop, for its Wire function.
struct WindowLoopClient;
WindowLoopClient RunLoopWindowClient();

// How the controls of a view take part in its life, filled by the controls
// layer's Wire function: `bind` makes the panes after CreateControls,
// `fireClose` sends the controls' Close events before the view's own, and
// `release` closes what is left and lets the controls go (the window closed
// or the view freed; it may run twice).
struct ViewControlsClient {
    void (*bind)(ViewRecord *view) = nullptr;
    void (*fireClose)(ViewRecord *view) = nullptr;
    void (*release)(ViewRecord *view) = nullptr;
    // Makes the control that stands for a view laid out inside another
    // window (a ContainerControl); true for such a view, which then gets
    // its controls made but no window of its own.
    bool (*embed)(ViewRecord *view) = nullptr;
    // The container views laid out in the view, nested ones too (appended
    // to `out`, outer before inner), and closing one of them, which has no
    // window of its own to close.
    void (*containers)(ViewRecord *view, std::vector<ViewRecord *> &out) = nullptr;
    void (*closeContainer)(ViewRecord *view) = nullptr;
    // The window's content grew by (dw, dh), either negative: the controls
    // with Lock flags follow its edges.
    void (*layout)(ViewRecord *view, int32_t dw, int32_t dh) = nullptr;
};
void SetViewControlsClient(const ViewControlsClient &client);

// The view events the controls layer sends for a view that has no window
// of its own.
enum class ViewEvent { kOpen, kClose };
void FireViewEvent(ViewRecord *view, ViewEvent event);
// How a view's window gets its menu bar, filled by the menus layer's Wire
// function: `install` puts a clone of the view's MenuBar (or of the one the
// window takes by default) into its pane, replacing any bar it had;
// `release` takes the bar out and frees the clone (the window closing).
struct ViewMenuClient {
    void (*install)(ViewRecord *view) = nullptr;
    void (*release)(ViewRecord *view) = nullptr;
};
void SetViewMenuClient(const ViewMenuClient &client);
// Puts the view's bar into its window anew (its MenuBar changed).
void InstallViewMenuBar(ViewRecord *view);

// The window-building step: makes the pane for a view that has none.
void BuildViewWindow(ViewRecord *view);
// Closes a view's window; true when a CancelClose refused.
bool CloseView(ViewRecord *view, bool appQuitting);

} // namespace kelp
