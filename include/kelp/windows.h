/* The runtime's window exports, as compiled code calls them.  All take the
 * window object (the language's Window) first and tolerate nil. */
#ifndef KELP_WINDOWS_H
#define KELP_WINDOWS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Initialiser of Window: fills the implicit instance entry, fires Layout and
 * builds the window.  The finaliser closes a window still open. */
void RuntimeCreateWindow(RuntimeObject *self);
void RuntimeViewDestructor(RuntimeObject *self);

/* Showing is deferred to the next pass of the run loop. */
void RuntimeShowWindow(RuntimeObject *self);
void RuntimeShowWithinWindow(RuntimeObject *self, RuntimeObject *parent, int32_t facing);
void RuntimeShowAsWindow(RuntimeObject *self);
/* Runs passes of the loop until the window is hidden, closed or gone. */
void RuntimeShowModal(RuntimeObject *self);
void RuntimeShowModalWithinWindow(RuntimeObject *self, RuntimeObject *parent);
void RuntimeHideWindow(RuntimeObject *self);
/* CancelClose(false), then Close and the window's teardown. */
void RuntimeCloseWindow(RuntimeObject *self);

/* The implicit instance of a window class with a new reference, or nil
 * after reserving the entry that the construction then fills. */
RuntimeObject *RuntimeGetImplicitWindow(KelpString className);

/* Property setters (object, row parameter, value) and getters. */
void WindowVisibleSetter(RuntimeObject *self, int32_t parameter, uint8_t visible);
/* Left, Top, Width, Height: the parameter is the field's offset.  After the
 * window exists a change moves or resizes it and brings Moved or Resized on
 * the next pass of the loop. */
int32_t windowPosGetter(RuntimeObject *self, int32_t parameter);
void windowPosSetter(RuntimeObject *self, int32_t parameter, int32_t value);
/* MinWidth, MinHeight, MaxWidth, MaxHeight (0: none; negatives store 0). */
int32_t windowMinMaxWidthHeightGetter(RuntimeObject *self, int32_t parameter);
void windowMinMaxWidthHeightSetter(RuntimeObject *self, int32_t parameter, int32_t value);
void windowTitleSetter(RuntimeObject *self, int32_t parameter, KelpString title);
void windowHasBackColorSetter(RuntimeObject *self, int32_t parameter, uint8_t value);
void windowBackColorSetter(RuntimeObject *self, int32_t parameter, int32_t value);
/* One Graphics object per window, made on first use; a new reference. */
RuntimeObject *windowGraphicsGetter(RuntimeObject *self, int32_t parameter);
/* The GtkWindow pointer, 0 before the window exists. */
intptr_t WindowHandleGetter(RuntimeObject *self, int32_t parameter);

/* Plain properties of the view.  Frame and Placement take effect when the
 * window is next built; LiveResize only counts when set before the window
 * exists (with it on, Resizing fires while the frame is dragged, and Resized
 * once the size settles).  CloseButton and Resizeable reach a built window at
 * once; a window that isn't resizable keeps its size against the user. */
KelpString windowTitleGetter(RuntimeObject *self, int32_t parameter);
uint8_t WindowVisibleGetter(RuntimeObject *self, int32_t parameter);
int32_t windowFrameGetter(RuntimeObject *self, int32_t parameter);
void windowFrameSetter(RuntimeObject *self, int32_t parameter, int32_t value);
int32_t windowPlacementGetter(RuntimeObject *self, int32_t parameter);
void windowPlacementSetter(RuntimeObject *self, int32_t parameter, int32_t value);
uint8_t windowCloseBoxGetter(RuntimeObject *self, int32_t parameter);
void windowCloseBoxSetter(RuntimeObject *self, int32_t parameter, uint8_t value);
uint8_t windowGrowIconGetter(RuntimeObject *self, int32_t parameter);
void windowGrowIconSetter(RuntimeObject *self, int32_t parameter, uint8_t value);
uint8_t windowZoomIconGetter(RuntimeObject *self, int32_t parameter);
void windowZoomIconSetter(RuntimeObject *self, int32_t parameter, uint8_t value);
uint8_t windowHasBackColorGetter(RuntimeObject *self, int32_t parameter);
int32_t windowBackColorGetter(RuntimeObject *self, int32_t parameter);
uint8_t windowLiveResizeGetter(RuntimeObject *self, int32_t parameter);
void windowLiveResizeSetter(RuntimeObject *self, int32_t parameter, uint8_t value);
/* FullScreen: the window covers its screen (through the window manager
 * when it can, else by its own move and resize) and goes back on leaving.
 * Set before the window exists, it takes effect when the window is built. */
uint8_t windowFullScreenGetter(RuntimeObject *self, int32_t parameter);
void windowFullScreenSetter(RuntimeObject *self, int32_t parameter, uint8_t value);

/* Menus of a window.  _AddMenuHandler stores `Boolean handler(window,
 * index)` under a menu item's Name (nil code does nothing).  MenuBar takes
 * a counted reference; a window already built shows the new bar at once.
 * MenuBarVisible shows or hides the bar now if the window is in front,
 * else when it comes to the front. */
void WindowAddMenuHandler(RuntimeObject *self, KelpString name, void *code);
RuntimeObject *WindowMenuBarGetter(RuntimeObject *self, int32_t parameter);
void WindowMenuBarSetter(RuntimeObject *self, int32_t parameter, RuntimeObject *bar);
uint8_t windowMenusVisibleGetter(RuntimeObject *self, int32_t parameter);
void windowMenusVisibleSetter(RuntimeObject *self, int32_t parameter, uint8_t value);

/* The toolkit's maximize and iconify of the window, and their undoing. */
void WindowMaximize(RuntimeObject *self);
void WindowMinimize(RuntimeObject *self);
void WindowRestore(RuntimeObject *self);

/* Invalidate (all, or a rectangle), then process the toolkit's updates. */
void formRefresh(RuntimeObject *self, uint8_t erase);
void formRefreshRect(RuntimeObject *self, int32_t x, int32_t y, int32_t w, int32_t h,
                     uint8_t erase);

/* MDIWindow keeps its bounds and flags only: no frame is made on this
 * platform, so its title reads empty, its handle 0, and Maximize, Minimize
 * and Restore change nothing. */
void MDIWindowConstructor(RuntimeObject *self);
KelpString MDIWindowTitleGetter(RuntimeObject *self, int32_t parameter);
void MDIWindowTitleSetter(RuntimeObject *self, int32_t parameter, KelpString title);
int32_t MDIWindowHandleGetter(RuntimeObject *self, int32_t parameter);
void MDIWindowMaximize(RuntimeObject *self);
void MDIWindowMinimize(RuntimeObject *self);
void MDIWindowRestore(RuntimeObject *self);
void MDIWindowDestructor(RuntimeObject *self);
/* Left, Top, Width, Height: the parameter is the field's offset. */
int32_t MDIWindowPosGetter(RuntimeObject *self, int32_t parameter);
void MDIWindowPosSetter(RuntimeObject *self, int32_t parameter, int32_t value);
uint8_t MDIWindowVisibleGetter(RuntimeObject *self, int32_t parameter);
void MDIWindowVisibleSetter(RuntimeObject *self, int32_t parameter, uint8_t value);

/* Windows open now. */
int32_t getWindowCount(void);

/* The pointer in the window's content coordinates (0 for a window that is
 * not built). */
int32_t windowMouseXGetter(RuntimeObject *self, int32_t parameter);
int32_t windowMouseYGetter(RuntimeObject *self, int32_t parameter);
/* Gives the focus to the window itself, away from any control in it. */
void formSetFocus(RuntimeObject *self);
/* Window.Backdrop: a counted picture drawn behind the content; setting it
 * redraws the window. */
RuntimeObject *windowBackdropGetter(RuntimeObject *self, int32_t parameter);
void windowBackdropSetter(RuntimeObject *self, int32_t parameter, RuntimeObject *picture);
/* Window.MouseCursor: the counted cursor object of the view. */
void formMouseCursorSetter(RuntimeObject *self, int32_t parameter, RuntimeObject *cursor);
/* Window.BalloonHelp: a stored flag. */
void windowBalloonHelpSetter(RuntimeObject *self, int32_t parameter, uint8_t value);
/* The window's toolkit handle under its other names (see WindowHandleGetter):
 * 0 for a window that is not built. */
intptr_t windowHWNDGetter(RuntimeObject *self, int32_t parameter);
intptr_t windowWindowPtrGetter(RuntimeObject *self, int32_t parameter);
intptr_t WindowToWindowPtr(RuntimeObject *self);
/* Draws what is pending for the window now instead of at the next pass. */
void WindowForceUpdateFrontBuffer(RuntimeObject *self);
/* Window.DockItem: there is no dock on this system, so always nil. */
RuntimeObject *WindowDockItemGetter(RuntimeObject *self, int32_t parameter);

/* Generic accessors of a field of a pane's object at byte `offset`: like
 * intGetter and shortGetter, but a setter redraws the object's window. */
int32_t paneIntGetter(RuntimeObject *self, int32_t offset);
void paneIntSetter(RuntimeObject *self, int32_t offset, int32_t value);
int16_t paneShortGetter(RuntimeObject *self, int32_t offset);
void paneShortSetter(RuntimeObject *self, int32_t offset, int16_t value);

/* Window(index): the window at that place from the front (0 is the
 * frontmost) as a new reference; nil outside 0 .. WindowCount - 1. */
RuntimeObject *getWindow(int32_t index);

#ifdef __cplusplus
}
#endif

#endif
