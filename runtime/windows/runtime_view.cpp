// The language's Window: creation with its Layout, the window-building
// step, showing, modal runs, closing with its events in order, and the
// implicit instance of each window class.
#include "windows/runtime_view.h"

#include "base/ascii.h"

#include "exceptions/call_event.h"
#include "graphics/graphics_base.h"
#include "graphics/graphics_object.h"
#include "objects/definitions.h"
#include "objects/object_model.h"
#include "objects/text.h"
#include "process/display.h"
#include "runloop/main_loop.h"
#include "windows/menu_bar.h"
#include "windows/menu_handlers.h"

#include "kelp/objects.h"
#include "kelp/windows.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>

namespace kelp {
namespace {

ObjectHook *gLayout, *gCreateControls, *gAddMenuHandlers, *gSetupBindings, *gOpen, *gClose,
    *gCancelClose, *gKeyDown, *gMouseMove, *gMouseEnter, *gMouseExit, *gPaint, *gMouseDown,
    *gMouseDrag, *gMouseUp, *gEnableMenuItems, *gResized, *gResizing, *gMoved, *gDropObject,
    *gActivate, *gDeactivate, *gMinimize, *gMaximize, *gRestore, *gMouseWheel,
    *gConstructContextualMenu, *gContextualMenuAction;

// The MacProcId that asks for a window without the manager's decorations.
constexpr int32_t kProcIdUndecorated = 1040;

std::map<std::string, RuntimeObject *> &ImplicitTable() {
    static std::map<std::string, RuntimeObject *> table;
    return table;
}

// Class names of the language know no case: the table is keyed folded.
std::string ImplicitKey(std::string_view className) { return AsciiLowered(className); }

RuntimeObject *Obj(ViewRecord *view) { return &view->object; }
ViewRecord *View(RuntimeObject *object) { return reinterpret_cast<ViewRecord *>(object); }

std::string ClassName(RuntimeObject *object) {
    RuntimeClass *klass = GetObjectClass(object);
    return std::string(objtext::View(klass ? klass->name : nullptr));
}

void Fire(ViewRecord *view, ObjectHook *hook) { CallEvent(Obj(view), hook); }
void FireXY(ViewRecord *view, ObjectHook *hook, int32_t x, int32_t y) {
    CallEvent(Obj(view), hook, x, y);
}
bool FireXYBool(ViewRecord *view, ObjectHook *hook, int32_t x, int32_t y) {
    return CallBooleanEvent(Obj(view), hook, x, y);
}

void RemoveFromImplicitTable(ViewRecord *view) {
    auto &table = ImplicitTable();
    auto it = table.find(ImplicitKey(ClassName(Obj(view))));
    if (it != table.end() && it->second == Obj(view)) {
        table.erase(it);
        RuntimeUnlockObject(Obj(view));
    }
}

bool Alive(Window *window) {
    const auto &list = WindowList();
    return std::find(list.begin(), list.end(), window) != list.end();
}

// --- the run loop's window work

void PreStepAll() {
    std::vector<Window *> snapshot = WindowList();
    for (Window *window : snapshot)
        if (Alive(window))
            window->PreStep();
}

bool MouseCaptureStep() {
    SubPane *capture = MouseCapturePane();
    if (!capture)
        return false;
    Window *window = WindowOf(capture);
    if (!window || !window->GtkWin() || !window->GtkWin()->window)
        return false;
    int x = 0, y = 0;
    GdkModifierType mask{};
    gdk_window_get_pointer(window->GtkWin()->window, &x, &y, &mask);
    if (!(mask & GDK_BUTTON1_MASK))
        return false;
    if (capture->LockForEvent()) {
        capture->MouseDrag(x, y);
        capture->UnlockAfterEvent();
    }
    return true;
}

void FocusIdle() {
    if (SubPane *focus = FocusPane())
        focus->Idle();
}

int WindowCount() { return static_cast<int>(WindowList().size()); }

ViewControlsClient gControls;
ViewMenuClient gMenus;

} // namespace

void SetViewControlsClient(const ViewControlsClient &client) { gControls = client; }
ObjectHook *ViewEnableMenuItemsHook() { return gEnableMenuItems; }
ObjectHook *ViewConstructContextualMenuHook() { return gConstructContextualMenu; }
ObjectHook *ViewContextualMenuActionHook() { return gContextualMenuAction; }
void SetViewMenuClient(const ViewMenuClient &client) { gMenus = client; }

void InstallViewMenuBar(ViewRecord *view) {
    if (view && view->pane && gMenus.install)
        gMenus.install(view);
}

void FireViewEvent(ViewRecord *view, ViewEvent event) {
    if (view)
        Fire(view, event == ViewEvent::kOpen ? gOpen : gClose);
}

WindowLoopClient RunLoopWindowClient() {
    WindowLoopClient client;
    client.preStep = &PreStepAll;
    client.mouseCaptureStep = &MouseCaptureStep;
    client.focusIdle = &FocusIdle;
    client.windowCount = &WindowCount;
    client.destroyAllWindows = &CloseAllWindows;
    return client;
}

bool CloseViewWindowsForQuit() {
    std::vector<Window *> snapshot = WindowList();
    for (Window *window : snapshot) {
        if (!Alive(window))
            continue;
        auto *viewWindow = dynamic_cast<RuntimeViewWindow *>(window);
        if (!viewWindow)
            continue; // message dialogs and the like are passed over
        // A view window whose view has let go of it can't be asked to
        // close: that counts as a refusal, not as consent.
        ViewRecord *view = viewWindow->View();
        if (!view || view->pane != viewWindow || CloseView(view, true))
            return false;
    }
    return true;
}

// ------------------------------------------------------------- the pane

RuntimeViewWindow::RuntimeViewWindow(ViewRecord *view, const std::string &windowTitle,
                                     int32_t windowKind, bool isResizable, Rect screenBounds)
    : Window(windowTitle, windowKind, isResizable, screenBounds), mView(view),
      mLaidOutWidth(view->width), mLaidOutHeight(view->height) {
    RuntimeLockObject(Obj(view));
    view->pane = this;
}

RuntimeViewWindow::~RuntimeViewWindow() {
    if (mView) {
        ViewRecord *view = mView;
        mView = nullptr;
        if (view->pane == this)
            view->pane = nullptr;
        RuntimeUnlockObject(Obj(view));
    }
}

namespace {
BackdropDrawer gBackdropDrawer = nullptr;
} // namespace

void SetBackdropDrawer(BackdropDrawer drawer) { gBackdropDrawer = drawer; }

void RuntimeViewWindow::DrawBackdrop(Graphics *g) {
    if (mView && mView->backdrop && gBackdropDrawer)
        gBackdropDrawer(*g, mView->backdrop, width, height);
}

void RuntimeViewWindow::DrawContents(Graphics *g) {
    if (!mView || !g)
        return;
    if (void *code = FindEventHandler(Obj(mView), gPaint)) {
        RuntimeObject *graphics = NewGraphicsObject(g, false);
        CallHandlerCode(code, Obj(mView), graphics);
        DetachGraphicsObject(graphics); // a kept object draws nothing later
        RuntimeUnlockObject(graphics);
    }
}

void RuntimeViewWindow::Moved() {
    if (!mView)
        return;
    mView->left = lastBounds.left;
    mView->top = lastBounds.top;
    Fire(mView, gMoved);
}

void RuntimeViewWindow::Resized() {
    if (!mView || closing)
        return;
    int w = lastBounds.right - lastBounds.left, h = lastBounds.bottom - lastBounds.top;
    if (w > 0 && h > 0) {
        mView->width = w;
        mView->height = h;
        bounds = Rect{0, 0, static_cast<int16_t>(h), static_cast<int16_t>(w)};
        width = w, height = h;
    }
    LayOutControls();
    if (mView->built)
        Fire(mView, gResized);
}

void RuntimeViewWindow::LayOutControls() {
    int32_t dw = width - mLaidOutWidth, dh = height - mLaidOutHeight;
    if (!dw && !dh)
        return;
    mLaidOutWidth = width, mLaidOutHeight = height;
    if (gControls.layout)
        gControls.layout(mView, dw, dh);
}

// The pane has the dragged size already; the view follows it at once so
// that the handler reads the size it is being dragged to.
void RuntimeViewWindow::Resizing() {
    if (!mView || closing)
        return;
    LayOutControls();
    mView->width = width;
    mView->height = height;
    if (mView->built)
        Fire(mView, gResizing);
}

bool RuntimeViewWindow::CloseRequest() { return mView ? CloseView(mView, false) : false; }

void RuntimeViewWindow::Close() {
    if (mViewClosing || closing)
        return;
    mViewClosing = true;
    Lock();
    SubPane *focus = FocusPane();
    if (focus && focus != this && Contains(focus))
        SetFocus(nullptr);
    if (mView && gControls.fireClose)
        gControls.fireClose(mView);
    if (mView)
        Fire(mView, gClose);
    if (Unlock())
        return;
    if (ViewRecord *view = mView) {
        RemoveFromImplicitTable(view);
        if (gControls.release)
            gControls.release(view);
        if (gMenus.release)
            gMenus.release(view);
        FreeMenuHandlers(view->menuHandlers);
        mView = nullptr;
        if (view->pane == this)
            view->pane = nullptr;
        DetachGraphicsObject(view->graphics);
        RuntimeUnlockObject(view->graphics);
        view->graphics = nullptr;
        RuntimeUnlockObject(Obj(view));
    }
    Window::Close();
}

bool RuntimeViewWindow::MouseDown(int32_t x, int32_t y, int32_t modifiers) {
    if (Window::MouseDown(x, y, modifiers))
        return true;
    if (mView && FireXYBool(mView, gMouseDown, x, y)) {
        SetMouseCapturePane(this); // brings MouseDrag and MouseUp
        return true;
    }
    return false;
}

void RuntimeViewWindow::MouseDrag(int32_t x, int32_t y) {
    if (mView)
        FireXY(mView, gMouseDrag, x, y);
}

void RuntimeViewWindow::MouseUp(int32_t x, int32_t y) {
    if (mView)
        FireXY(mView, gMouseUp, x, y);
}

void RuntimeViewWindow::MouseMove(int32_t x, int32_t y) {
    Window::MouseMove(x, y);
    if (mView && !closing)
        FireXY(mView, gMouseMove, x, y);
}

void RuntimeViewWindow::MouseEnter() {
    if (mView)
        Fire(mView, gMouseEnter);
}

void RuntimeViewWindow::MouseExit() {
    if (mView)
        Fire(mView, gMouseExit);
}

bool RuntimeViewWindow::MouseWheel(int32_t x, int32_t y, int32_t delta) {
    for (size_t i = mChildren.size(); i-- > 0;) {
        if (i >= mChildren.size() || closing)
            continue;
        SubPane *child = mChildren[i];
        if (child->visible && child->HitTest(x, y) && child->MouseWheel(x, y, delta))
            return true;
    }
    return mView && CallBooleanEvent(Obj(mView), gMouseWheel, x, y, delta);
}

bool RuntimeViewWindow::KeyDown(int32_t character, int32_t, int32_t) {
    void *code = mView ? FindEventHandler(Obj(mView), gKeyDown) : nullptr;
    if (!code)
        return false;
    char text[2] = {static_cast<char>(character), 0};
    KelpString key = objtext::Make(std::string_view(text, 1));
    bool taken = CallHandlerCode<uint8_t>(code, Obj(mView), key) != 0;
    objtext::Release(key);
    return taken;
}

void RuntimeViewWindow::Activate() {
    Window::Activate();
    if (!mView)
        return;
    // The front window decides whether the bar shows.
    mView->menuBarVisible ? ShowMenuBar() : HideMenuBar();
    Fire(mView, gActivate);
}

void RuntimeViewWindow::Deactivate() {
    if (mView)
        Fire(mView, gDeactivate);
}

void RuntimeViewWindow::GetMinMaxSize(int32_t &minW, int32_t &minH, int32_t &maxW, int32_t &maxH) {
    Window::GetMinMaxSize(minW, minH, maxW, maxH);
    if (!mView)
        return;
    if (mView->minWidth)
        minW = mView->minWidth;
    if (mView->minHeight)
        minH = mView->minHeight;
    if (mView->maxWidth)
        maxW = mView->maxWidth;
    if (mView->maxHeight)
        maxH = mView->maxHeight;
}

// ------------------------------------------------------------- building

void BuildViewWindow(ViewRecord *view) {
    // Without a display there is no window to build: the object stays, and
    // showing it (modal or not) returns at once.
    if (view->pane || !RequireDisplay("Window"))
        return;
    view->built = 1;
    int32_t kind = KindForFrame(view->frame);
    int32_t placement = view->placement != kPlacementDefault
                            ? view->placement
                            : DefaultPlacementForFrame(view->frame);
    Rect requested = RectFromXYWH(view->left, view->top, view->width, view->height);
    Rect placed = PlaceBounds(requested, placement, kind);
    view->left = placed.left;
    view->top = placed.top;
    view->width = placed.right - placed.left;
    view->height = placed.bottom - placed.top;
    auto *pane = new RuntimeViewWindow(view, std::string(objtext::View(view->title)), kind,
                                       view->resizeable != 0, placed);
    pane->liveResize = view->liveResize != 0;
    if (view->macProcId == kProcIdUndecorated && pane->GtkWin())
        gtk_window_set_decorated(GTK_WINDOW(pane->GtkWin()), FALSE);
    InstallViewMenuBar(view);
    RuntimeLockObject(Obj(view)); // the events below may close the window
    if (!view->controlsCreated) {
        view->controlsCreated = 1;
        Fire(view, gCreateControls);
    }
    if (gControls.bind && view->pane)
        gControls.bind(view);
    CallEvent(Obj(view), gAddMenuHandlers, Obj(view));
    if (view->pane) {
        view->pane->SetBackdropColor(view->hasBackColor != 0,
                                     static_cast<uint32_t>(view->backColor));
        if (view->fullScreen)
            view->pane->SetFullScreen(true);
        if (view->pane)
            Fire(view, gSetupBindings);
    }
    if (view->pane && view->visible)
        view->pane->Show();
    // Open goes out last, when everything is in place.
    if (RuntimeViewWindow *p = view->pane) {
        if (p->LockForEvent()) {
            Fire(view, gOpen);
            p->UnlockAfterEvent();
        }
    }
    RuntimeUnlockObject(Obj(view));
}

bool CloseView(ViewRecord *view, bool appQuitting) {
    RuntimeViewWindow *pane = view ? view->pane : nullptr;
    if (!pane) {
        if (view && gControls.closeContainer)
            gControls.closeContainer(view);
        return false;
    }
    RuntimeLockObject(Obj(view));
    pane->Lock();
    // The containers in the window are asked too, innermost first; any of
    // them keeps the whole window.
    std::vector<ViewRecord *> asked{view};
    if (gControls.containers)
        gControls.containers(view, asked);
    for (ViewRecord *v : asked)
        RuntimeLockObject(Obj(v));
    bool cancelled = false;
    for (auto it = asked.rbegin(); it != asked.rend() && !cancelled; ++it)
        cancelled = CallBooleanEvent(Obj(*it), gCancelClose, uint8_t(appQuitting ? 1 : 0));
    for (ViewRecord *v : asked)
        RuntimeUnlockObject(Obj(v));
    bool destroyed = pane->Unlock();
    if (!cancelled && !destroyed)
        pane->Close();
    RuntimeUnlockObject(Obj(view));
    return cancelled;
}

// ------------------------------------------------------------- definition

ObjectDefinition *WindowDefinition() {
    static const PropertyRow properties[] = {
        {0, "Visible", &kTypeBoolean, KELP_ENTRY(WindowVisibleGetter),
         KELP_ENTRY(WindowVisibleSetter), offsetof(ViewRecord, visible)},
        {0, "Left", &kTypeInteger, KELP_ENTRY(windowPosGetter), KELP_ENTRY(windowPosSetter),
         offsetof(ViewRecord, left)},
        {0, "Top", &kTypeInteger, KELP_ENTRY(windowPosGetter), KELP_ENTRY(windowPosSetter),
         offsetof(ViewRecord, top)},
        {0, "Width", &kTypeInteger, KELP_ENTRY(windowPosGetter), KELP_ENTRY(windowPosSetter),
         offsetof(ViewRecord, width)},
        {0, "Height", &kTypeInteger, KELP_ENTRY(windowPosGetter), KELP_ENTRY(windowPosSetter),
         offsetof(ViewRecord, height)},
        {0, "Placement", &kTypeInteger, KELP_ENTRY(windowPlacementGetter),
         KELP_ENTRY(windowPlacementSetter), offsetof(ViewRecord, placement)},
        {0, "Frame", &kTypeInteger, KELP_ENTRY(windowFrameGetter), KELP_ENTRY(windowFrameSetter),
         offsetof(ViewRecord, frame)},
        {0, "Title", &kTypeString, KELP_ENTRY(windowTitleGetter), KELP_ENTRY(windowTitleSetter),
         offsetof(ViewRecord, title)},
        {0, "CloseButton", &kTypeBoolean, KELP_ENTRY(windowCloseBoxGetter),
         KELP_ENTRY(windowCloseBoxSetter), offsetof(ViewRecord, closeButton)},
        {0, "Resizeable", &kTypeBoolean, KELP_ENTRY(windowGrowIconGetter),
         KELP_ENTRY(windowGrowIconSetter), offsetof(ViewRecord, resizeable)},
        {0, "MaximizeButton", &kTypeBoolean, KELP_ENTRY(windowZoomIconGetter),
         KELP_ENTRY(windowZoomIconSetter), offsetof(ViewRecord, maximizeButton)},
        {0, "FullScreen", &kTypeBoolean, KELP_ENTRY(windowFullScreenGetter),
         KELP_ENTRY(windowFullScreenSetter), offsetof(ViewRecord, fullScreen)},
        {0, "LiveResize", &kTypeBoolean, KELP_ENTRY(windowLiveResizeGetter),
         KELP_ENTRY(windowLiveResizeSetter), offsetof(ViewRecord, liveResize)},
        {0, "HasBackColor", &kTypeBoolean, KELP_ENTRY(windowHasBackColorGetter),
         KELP_ENTRY(windowHasBackColorSetter), offsetof(ViewRecord, hasBackColor)},
        {0, "BackColor", &kTypeColor, KELP_ENTRY(windowBackColorGetter),
         KELP_ENTRY(windowBackColorSetter), offsetof(ViewRecord, backColor)},
        {0, "MinWidth", &kTypeInteger, KELP_ENTRY(windowMinMaxWidthHeightGetter),
         KELP_ENTRY(windowMinMaxWidthHeightSetter), offsetof(ViewRecord, minWidth)},
        {0, "MinHeight", &kTypeInteger, KELP_ENTRY(windowMinMaxWidthHeightGetter),
         KELP_ENTRY(windowMinMaxWidthHeightSetter), offsetof(ViewRecord, minHeight)},
        {0, "MaxWidth", &kTypeInteger, KELP_ENTRY(windowMinMaxWidthHeightGetter),
         KELP_ENTRY(windowMinMaxWidthHeightSetter), offsetof(ViewRecord, maxWidth)},
        {0, "MaxHeight", &kTypeInteger, KELP_ENTRY(windowMinMaxWidthHeightGetter),
         KELP_ENTRY(windowMinMaxWidthHeightSetter), offsetof(ViewRecord, maxHeight)},
        {0, "MacProcId", &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(intSetter),
         offsetof(ViewRecord, macProcId)},
        {0, "Graphics", &kTypePtr, KELP_ENTRY(windowGraphicsGetter), {}, -9},
        {0, "MenuBar", &kTypePtr, KELP_ENTRY(WindowMenuBarGetter), KELP_ENTRY(WindowMenuBarSetter),
         offsetof(ViewRecord, menuBar)},
        {0, "MenuBarVisible", &kTypeBoolean, KELP_ENTRY(windowMenusVisibleGetter),
         KELP_ENTRY(windowMenusVisibleSetter), offsetof(ViewRecord, menuBarVisible)},
        {0, "Handle", &kTypeInteger, KELP_ENTRY(WindowHandleGetter), {}, -9},
        {0, "DockItem", &kTypePtr, KELP_ENTRY(WindowDockItemGetter), {}, -9},
    };
    static const ParameterRow parentParams[] = {{"parent", &kTypePtr}};
    static const ParameterRow eraseParams[] = {{"eraseBackground", &kTypeBoolean, "True"}};
    static const ParameterRow menuParams[] = {{"name", &kTypeString}, {"code", &kTypePtr}};
    static const MethodRow methods[] = {
        {"Show", nullptr, nullptr, 0, KELP_ENTRY(RuntimeShowWindow)},
        {"ShowModal", nullptr, nullptr, 0, KELP_ENTRY(RuntimeShowModal)},
        {"ShowModalWithin", nullptr, parentParams, 1, KELP_ENTRY(RuntimeShowModalWithinWindow)},
        {"Hide", nullptr, nullptr, 0, KELP_ENTRY(RuntimeHideWindow)},
        {"Close", nullptr, nullptr, 0, KELP_ENTRY(RuntimeCloseWindow)},
        {"Refresh", nullptr, eraseParams, 1, KELP_ENTRY(formRefresh)},
        {"Maximize", nullptr, nullptr, 0, KELP_ENTRY(WindowMaximize)},
        {"Minimize", nullptr, nullptr, 0, KELP_ENTRY(WindowMinimize)},
        {"Restore", nullptr, nullptr, 0, KELP_ENTRY(WindowRestore)},
        {"_AddMenuHandler", nullptr, menuParams, 2, KELP_ENTRY(WindowAddMenuHandler)},
    };
    static const EventRow events[] = {
        {"Layout", "", nullptr, &gLayout},
        {"CreateControls", "", nullptr, &gCreateControls},
        {"AddMenuHandlers", "MenuHandlerSourceWindow As Window", nullptr, &gAddMenuHandlers},
        {"SetupBindings", "", nullptr, &gSetupBindings},
        {"Open", "", nullptr, &gOpen},
        {"Close", "", nullptr, &gClose},
        {"CancelClose", "appQuitting As Boolean", "Boolean", &gCancelClose},
        {"KeyDown", "Key As String", "Boolean", &gKeyDown},
        {"MouseMove", "X As Integer, Y As Integer", nullptr, &gMouseMove},
        {"MouseEnter", "", nullptr, &gMouseEnter},
        {"MouseExit", "", nullptr, &gMouseExit},
        {"Paint", "g As Graphics", nullptr, &gPaint},
        {"MouseDown", "X As Integer, Y As Integer", "Boolean", &gMouseDown},
        {"MouseDrag", "X As Integer, Y As Integer", nullptr, &gMouseDrag},
        {"MouseUp", "X As Integer, Y As Integer", nullptr, &gMouseUp},
        {"EnableMenuItems", "", nullptr, &gEnableMenuItems},
        {"Resized", "", nullptr, &gResized},
        {"Resizing", "", nullptr, &gResizing},
        {"Moved", "", nullptr, &gMoved},
        {"DropObject", "obj As DragItem", nullptr, &gDropObject},
        {"DragEnter", "obj As DragItem"},
        {"DragExit", "obj As DragItem"},
        {"DragMove", "X As Integer, Y As Integer, obj As DragItem"},
        {"Activate", "", nullptr, &gActivate},
        {"Deactivate", "", nullptr, &gDeactivate},
        {"Minimize", "", nullptr, &gMinimize},
        {"Maximize", "", nullptr, &gMaximize},
        {"Restore", "", nullptr, &gRestore},
        {"MouseWheel", "X As Integer, Y As Integer, Delta As Integer", "Boolean", &gMouseWheel},
        {"ConstructContextualMenu", "base As MenuItem, x As Integer, y As Integer", "Boolean",
         &gConstructContextualMenu},
        {"ContextualMenuAction", "hitItem As MenuItem", "Boolean", &gContextualMenuAction},
    };
    static const ClassDescription description = {
        .name = "Window",
        .instanceSize = sizeof(ViewRecord),
        .initializer = KELP_ENTRY(RuntimeCreateWindow),
        .finalizer = KELP_ENTRY(RuntimeViewDestructor),
        .properties = properties,
        .methods = methods,
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

// ------------------------------------------------------------- exports

using namespace kelp;

extern "C" void RuntimeCreateWindow(RuntimeObject *self) {
    if (!self)
        return;
    ViewRecord *view = View(self);
    // What a window is before its Layout says otherwise.
    view->visible = 1;
    view->closeButton = 1;
    view->resizeable = 1;
    view->menuBarVisible = 1;
    view->width = 300;
    view->height = 300;
    view->backColor = 0xffffff;
    const bool embedded = gControls.embed && gControls.embed(view);
    auto &table = ImplicitTable();
    auto it = embedded ? table.end() : table.find(ImplicitKey(ClassName(self)));
    if (it != table.end() && it->second == nullptr) {
        it->second = self;
        RuntimeLockObject(self);
    }
    Fire(view, gLayout);
    if (embedded) {
        // Its controls are made now and bound when its host binds it.
        view->controlsCreated = 1;
        Fire(view, gCreateControls);
        return;
    }
    BuildViewWindow(view);
}

extern "C" void RuntimeViewDestructor(RuntimeObject *self) {
    if (!self)
        return;
    ViewRecord *view = View(self);
    if (gControls.release)
        gControls.release(view);
    if (gMenus.release)
        gMenus.release(view);
    FreeMenuHandlers(view->menuHandlers);
    if (view->pane) {
        // Nothing holds the view any more, so its window goes too.
        RuntimeViewWindow *pane = view->pane;
        view->pane = nullptr;
        pane->Close();
    }
    objtext::Release(view->title);
    view->title = nullptr;
    DetachGraphicsObject(view->graphics);
    RuntimeUnlockObject(view->graphics);
    RuntimeUnlockObject(view->backdrop);
    RuntimeUnlockObject(view->mouseCursor);
    RuntimeUnlockObject(view->menuBar);
    view->graphics = view->backdrop = view->mouseCursor = view->menuBar = nullptr;
}

extern "C" void RuntimeShowWindow(RuntimeObject *self) {
    if (!self)
        return;
    ViewRecord *view = View(self);
    view->visible = 1;
    if (!view->pane)
        BuildViewWindow(view);
    if (view->pane)
        view->pane->Show();
}

extern "C" void RuntimeShowWithinWindow(RuntimeObject *self, RuntimeObject *parent,
                                        int32_t facing) {
    RuntimeShowWindow(self);
    if (self && parent && View(self)->pane) {
        View(self)->pane->placementParent = View(parent)->pane;
        View(self)->pane->showFacing = facing;
    }
}

extern "C" void RuntimeShowAsWindow(RuntimeObject *self) { RuntimeShowWindow(self); }

static void RunModal(ViewRecord *view, RuntimeObject *parent) {
    if (!view->pane)
        BuildViewWindow(view);
    if (!view->pane)
        return;
    RuntimeLockObject(Obj(view));
    view->visible = 1;
    view->pane->Show();
    if (parent) {
        view->pane->placementParent = View(parent)->pane;
        view->pane->showFacing = -1;
    } else {
        view->pane->PrepareModal();
    }
    // The same pass as the main loop, from inside the handler that asked.
    while (view->pane && view->pane->shown)
        MainLoopStep(true);
    RuntimeUnlockObject(Obj(view));
}

extern "C" void RuntimeShowModal(RuntimeObject *self) {
    if (self)
        RunModal(View(self), nullptr);
}

extern "C" void RuntimeShowModalWithinWindow(RuntimeObject *self, RuntimeObject *parent) {
    if (self)
        RunModal(View(self), parent);
}

extern "C" void RuntimeHideWindow(RuntimeObject *self) {
    if (!self)
        return;
    View(self)->visible = 0;
    if (View(self)->pane)
        View(self)->pane->Hide();
}

extern "C" void RuntimeCloseWindow(RuntimeObject *self) {
    if (self)
        CloseView(View(self), false);
}

extern "C" RuntimeObject *RuntimeGetImplicitWindow(KelpString className) {
    const std::string name = ImplicitKey(objtext::View(className));
    auto &table = ImplicitTable();
    auto it = table.find(name);
    if (it != table.end() && it->second) {
        RuntimeLockObject(it->second);
        return it->second;
    }
    table[name] = nullptr; // the construction that follows fills it
    return nullptr;
}

extern "C" void WindowVisibleSetter(RuntimeObject *self, int32_t, uint8_t visible) {
    if (!self)
        return;
    visible ? RuntimeShowWindow(self) : RuntimeHideWindow(self);
    View(self)->visible = visible ? 1 : 0;
}

// Left, Top, Width and Height share one accessor; the row's parameter is
// the field's offset.  Before the window exists only the view changes.
extern "C" int32_t windowPosGetter(RuntimeObject *self, int32_t offset) {
    return intGetter(self, offset);
}

extern "C" void windowPosSetter(RuntimeObject *self, int32_t offset, int32_t value) {
    if (!self)
        return;
    ViewRecord *view = View(self);
    switch (offset) {
    case offsetof(ViewRecord, left): view->left = value; break;
    case offsetof(ViewRecord, top): view->top = value; break;
    case offsetof(ViewRecord, width): view->width = value; break;
    case offsetof(ViewRecord, height): view->height = value; break;
    default: return;
    }
    if (!view->pane)
        return;
    if (offset == offsetof(ViewRecord, left) || offset == offsetof(ViewRecord, top))
        view->pane->Move(view->left, view->top, true);
    else
        view->pane->Resize(view->width, view->height, true);
}

// MinWidth, MinHeight, MaxWidth and MaxHeight: 0 means none; the toolkit
// hears of them at the window's next configure.
extern "C" int32_t windowMinMaxWidthHeightGetter(RuntimeObject *self, int32_t offset) {
    return intGetter(self, offset);
}

extern "C" void windowMinMaxWidthHeightSetter(RuntimeObject *self, int32_t offset, int32_t value) {
    if (self)
        intSetter(self, offset, value < 0 ? 0 : value);
}

extern "C" void windowTitleSetter(RuntimeObject *self, int32_t, KelpString title) {
    if (!self)
        return;
    ViewRecord *view = View(self);
    objtext::Retain(title);
    objtext::Release(view->title);
    view->title = title;
    if (view->pane)
        view->pane->SetTitle(std::string(objtext::View(title)));
}

extern "C" void windowHasBackColorSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (!self)
        return;
    ViewRecord *view = View(self);
    view->hasBackColor = value ? 1 : 0;
    if (view->pane)
        view->pane->SetBackdropColor(view->hasBackColor, static_cast<uint32_t>(view->backColor));
}

extern "C" void windowBackColorSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (!self)
        return;
    ViewRecord *view = View(self);
    view->backColor = value;
    if (view->pane && view->hasBackColor)
        view->pane->SetBackdropColor(true, static_cast<uint32_t>(value));
}

extern "C" RuntimeObject *windowGraphicsGetter(RuntimeObject *self, int32_t) {
    if (!self)
        return nullptr;
    ViewRecord *view = View(self);
    if (!view->graphics && view->pane)
        view->graphics = NewGraphicsObject(view->pane->NewGraphics(), true);
    RuntimeLockObject(view->graphics);
    return view->graphics;
}

extern "C" intptr_t WindowHandleGetter(RuntimeObject *self, int32_t) {
    if (!self || !View(self)->pane)
        return 0;
    return reinterpret_cast<intptr_t>(View(self)->pane->GtkWin());
}

// Plain accessors of the view's fields; the row's parameter is unused.
extern "C" KelpString windowTitleGetter(RuntimeObject *self, int32_t) {
    if (!self)
        return nullptr;
    objtext::Retain(View(self)->title);
    return View(self)->title;
}
extern "C" uint8_t WindowVisibleGetter(RuntimeObject *self, int32_t) {
    return self ? View(self)->visible : 0;
}
extern "C" int32_t windowFrameGetter(RuntimeObject *self, int32_t) {
    return self ? View(self)->frame : 0;
}
// The frame takes effect when the window is next built.
extern "C" void windowFrameSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (self)
        View(self)->frame = value;
}
extern "C" int32_t windowPlacementGetter(RuntimeObject *self, int32_t) {
    return self ? View(self)->placement : 0;
}
extern "C" void windowPlacementSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (self)
        View(self)->placement = value;
}
extern "C" uint8_t windowCloseBoxGetter(RuntimeObject *self, int32_t) {
    return self ? View(self)->closeButton : 0;
}
extern "C" void windowCloseBoxSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (!self)
        return;
    View(self)->closeButton = value ? 1 : 0;
    if (View(self)->pane && View(self)->pane->GtkWin())
        gtk_window_set_deletable(GTK_WINDOW(View(self)->pane->GtkWin()), value ? TRUE : FALSE);
}
extern "C" uint8_t windowGrowIconGetter(RuntimeObject *self, int32_t) {
    return self ? View(self)->resizeable : 0;
}
extern "C" void windowGrowIconSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (!self)
        return;
    View(self)->resizeable = value ? 1 : 0;
    if (RuntimeViewWindow *pane = View(self)->pane)
        pane->SetResizable(value != 0);
}
extern "C" uint8_t windowZoomIconGetter(RuntimeObject *self, int32_t) {
    return self ? View(self)->maximizeButton : 0;
}
extern "C" void windowZoomIconSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (self)
        View(self)->maximizeButton = value ? 1 : 0;
}
extern "C" uint8_t windowHasBackColorGetter(RuntimeObject *self, int32_t) {
    return self ? View(self)->hasBackColor : 0;
}
extern "C" int32_t windowBackColorGetter(RuntimeObject *self, int32_t) {
    return self ? View(self)->backColor : 0;
}
// The window's own setting once it exists: that is the one in force.
extern "C" uint8_t windowLiveResizeGetter(RuntimeObject *self, int32_t) {
    if (!self)
        return 0;
    if (RuntimeViewWindow *pane = View(self)->pane)
        return pane->liveResize ? 1 : 0;
    return View(self)->liveResize;
}
// Live resizing is chosen before the window is built; once it exists its
// setting stays, and a change is not kept.
extern "C" void windowLiveResizeSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (self && !View(self)->pane)
        View(self)->liveResize = value ? 1 : 0;
}

// The window's own state once it exists: its manager may have ended it.
extern "C" uint8_t windowFullScreenGetter(RuntimeObject *self, int32_t) {
    if (!self)
        return 0;
    if (RuntimeViewWindow *pane = View(self)->pane)
        View(self)->fullScreen = pane->IsFullScreen() ? 1 : 0;
    return View(self)->fullScreen;
}
// Before the window exists the flag waits for the building step.
extern "C" void windowFullScreenSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (!self)
        return;
    ViewRecord *view = View(self);
    view->fullScreen = value ? 1 : 0;
    if (RuntimeViewWindow *pane = view->pane)
        pane->SetFullScreen(value != 0);
}

extern "C" void WindowMaximize(RuntimeObject *self) {
    if (self && View(self)->pane)
        View(self)->pane->Maximize();
}
extern "C" void WindowMinimize(RuntimeObject *self) {
    if (self && View(self)->pane)
        View(self)->pane->Minimize();
}
extern "C" void WindowRestore(RuntimeObject *self) {
    if (self && View(self)->pane)
        View(self)->pane->Restore();
}

extern "C" void formRefresh(RuntimeObject *self, uint8_t erase) {
    if (!self || !View(self)->pane)
        return;
    View(self)->pane->Invalidate(erase != 0);
    gdk_window_process_all_updates();
}

extern "C" void formRefreshRect(RuntimeObject *self, int32_t x, int32_t y, int32_t w, int32_t h,
                                uint8_t) {
    if (!self || !View(self)->pane)
        return;
    if (GdkWindow *drawable = View(self)->pane->GetDrawable()) {
        GdkRectangle r{x, y, w, h};
        gdk_window_invalidate_rect(drawable, &r, TRUE);
    }
    gdk_window_process_all_updates();
}

extern "C" int32_t getWindowCount(void) { return static_cast<int32_t>(WindowList().size()); }

// Window(0) is the frontmost.  A window of the toolkit that no language
// window stands behind (none yet) would read nil rather than shift the rest.
extern "C" RuntimeObject *getWindow(int32_t index) {
    const std::vector<Window *> &order = WindowsFrontToBack();
    if (index < 0 || static_cast<size_t>(index) >= order.size())
        return nullptr;
    auto *viewWindow = dynamic_cast<RuntimeViewWindow *>(order[static_cast<size_t>(index)]);
    if (!viewWindow || !viewWindow->View())
        return nullptr;
    RuntimeLockObject(Obj(viewWindow->View()));
    return Obj(viewWindow->View());
}
