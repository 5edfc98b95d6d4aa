// Drags between the panes of this process and drops from other programs.
//
// A drag inside the process never speaks the toolkit's drag protocol: Drag
// runs its own toolkit loop until the button comes up, moves outlines of
// the item's rectangles over the window under the pointer, highlights the
// pane that would take the drop, and at the release calls DropObject on it.
// Drops from other programs arrive through the toolkit on the widgets of
// panes that accepted a kind of data: a list of file URIs becomes folder
// items, anything else text.
#include "canvas/canvas.h"
#include "canvas/drag_item.h"
#include "cursors/mouse_cursor.h"

#include "objects/definitions.h"
#include "objects/text.h"
#include "strings/kstring.h"
#include "windows/runtime_view.h"

#include "kelp/canvas.h"
#include "kelp/files.h"
#include "kelp/objects.h"
#include "kelp/strings.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kelp {
namespace {

// What a pane said it takes.  Raw types are four characters.
struct Acceptance {
    RuntimeObject *owner = nullptr; // the control or view; the pane holds it
    bool text = false, picture = false, files = false;
    std::set<std::string> rawTypes;
    bool connected = false; // the toolkit's drop signal is connected
};

enum DropInfo : guint { kInfoUriList = 0, kInfoTextPlain = 1, kInfoString = 2 };

// The registry dies with its panes: a pane that closes leaves it.
class AcceptRegistry : public PaneDeathNotificationReceiver {
public:
    void PaneDied(SubPane *pane) override { mPanes.erase(pane); }
    std::map<SubPane *, Acceptance> mPanes;
};

AcceptRegistry &Accepted() {
    static AcceptRegistry *registry = new AcceptRegistry(); // lives to the end of the process
    return *registry;
}

struct DragState {
    RuntimeObject *item = nullptr; // the item being dragged, borrowed
    bool inProgress = false;
    SubPane *target = nullptr; // the highlighted pane
    int32_t pressX = 0, pressY = 0;
    struct Outline {
        Window *window;
        size_t rect;
        GtkWidget *edges[4]; // left, top, right, bottom
    };
    std::vector<Outline> outlines;
};
DragState gDrag;
RuntimeObject *gCurrentDragItem = nullptr; // the item a toolkit drop is handing over

ObjectHook *HookNamed(ObjectDefinition *definition, const char *name) {
    for (ObjectDefinition *d = definition; d; d = d->super)
        for (ObjectHook *h = d->hooks; h; h = h->next)
            if (objtext::SameName(h->name, name))
                return h;
    return nullptr;
}
ObjectHook *DropHook(ObjectDefinition *definition) { return HookNamed(definition, "DropObject"); }

SubPane *PaneOfOwner(RuntimeObject *owner) {
    if (IsControl(owner))
        return static_cast<ControlPane *>(Ctl(owner)->pane);
    return owner ? reinterpret_cast<ViewRecord *>(owner)->pane : nullptr;
}

// Whether the pane takes something the item carries.
bool Takes(const Acceptance &a, RuntimeObject *item) {
    if (a.text && HasFlavorAnywhere(item, kFlavorText))
        return true;
    if (a.picture && HasFlavorAnywhere(item, kFlavorPicture))
        return true;
    if (a.files && HasFlavorAnywhere(item, kFlavorFolderItem))
        return true;
    for (const std::string &type : a.rawTypes)
        if (HasFlavorAnywhere(item, kFlavorRawData, type))
            return true;
    return false;
}

// The top-most visible pane at (x, y) of the window that takes the item;
// the window itself last.
SubPane *FindDropTarget(Window *window, int32_t x, int32_t y, RuntimeObject *item) {
    const std::vector<SubPane *> &order = window->PanesInCreationOrder();
    for (size_t i = order.size(); i-- > 0;) {
        SubPane *pane = order[i];
        auto it = Accepted().mPanes.find(pane);
        if (it != Accepted().mPanes.end() && pane->visible && !pane->closing &&
            pane->HitTest(x, y) && Takes(it->second, item))
            return pane;
    }
    auto it = Accepted().mPanes.find(window);
    return it != Accepted().mPanes.end() && Takes(it->second, item) ? window : nullptr;
}

// Hands a received item to the pane's owner: DropObject(obj), with the
// item's rectangles read relative to the pane.
void DropOn(SubPane *pane, RuntimeObject *item) {
    auto it = Accepted().mPanes.find(pane);
    if (it == Accepted().mPanes.end())
        return;
    RuntimeObject *owner = it->second.owner;
    DragItemRecord *r = DragRecord(item);
    r->received = 1;
    r->currentItem = 0;
    r->offsetLeft = -pane->bounds.left;
    r->offsetTop = -pane->bounds.top;
    ObjectHook *hook = DropHook(IsControl(owner) ? RectControlDefinition() : WindowDefinition());
    if (!hook || !pane->LockForEvent())
        return;
    RuntimeObject *previous = gCurrentDragItem;
    gCurrentDragItem = item;
    CallEvent(owner, hook, item);
    gCurrentDragItem = previous;
    pane->UnlockAfterEvent();
}

Window *WindowUnderPointer(int32_t &x, int32_t &y) {
    gint wx = 0, wy = 0;
    GdkWindow *under = gdk_window_at_pointer(&wx, &wy);
    if (!under)
        return nullptr;
    GdkWindow *top = gdk_window_get_toplevel(under);
    for (Window *window : WindowList())
        if (window->GtkWin() && window->GtkWin()->window == top && !window->closing) {
            int px = 0, py = 0;
            if (!window->PointerInContent(px, py))
                return nullptr;
            x = px, y = py;
            return window;
        }
    return nullptr;
}

// --- outlines

gboolean OnOutlineExpose(GtkWidget *widget, GdkEventExpose *, gpointer) {
    if (!widget->window)
        return FALSE;
    GdkGC *gc = gdk_gc_new(widget->window);
    const GtkAllocation &a = widget->allocation;
    gdk_draw_line(widget->window, gc, a.x, a.y, a.x + a.width - 1, a.y + a.height - 1);
    g_object_unref(gc);
    return TRUE;
}

void PlaceOutline(const DragState::Outline &o, const Rect &r, int32_t dx, int32_t dy) {
    GtkWidget *fixed = o.window->Fixed();
    const int32_t left = r.left + dx, top = r.top + dy;
    const int32_t w = std::max(1, r.right - r.left), h = std::max(1, r.bottom - r.top);
    const int32_t place[4][4] = {
        {left, top, 1, h}, {left, top, w, 1}, {left + w - 1, top, 1, h}, {left, top + h - 1, w, 1}};
    for (int e = 0; e < 4; ++e) {
        gtk_widget_set_size_request(o.edges[e], place[e][2], place[e][3]);
        if (gtk_widget_get_parent(o.edges[e]) == fixed)
            gtk_fixed_move(GTK_FIXED(fixed), o.edges[e], place[e][0], place[e][1]);
        else
            gtk_fixed_put(GTK_FIXED(fixed), o.edges[e], place[e][0], place[e][1]);
    }
}

void MakeOutlines(Window *startWindow) {
    const std::vector<Rect> &rects = DragRecord(gDrag.item)->contents->itemRects;
    for (Window *window : WindowList()) {
        if (!window->Fixed() || window->closing)
            continue;
        for (size_t i = 0; i < rects.size(); ++i) {
            DragState::Outline o{window, i, {}};
            for (GtkWidget *&edge : o.edges) {
                edge = gtk_drawing_area_new();
                g_signal_connect(edge, "expose-event", G_CALLBACK(OnOutlineExpose), nullptr);
            }
            PlaceOutline(o, rects[i], 0, 0);
            for (GtkWidget *edge : o.edges)
                if (window == startWindow)
                    gtk_widget_show(edge);
            gDrag.outlines.push_back(o);
        }
    }
}

void DestroyOutlines() {
    for (DragState::Outline &o : gDrag.outlines)
        for (GtkWidget *edge : o.edges)
            gtk_widget_destroy(edge);
    gDrag.outlines.clear();
}

// DragEnter, DragExit or DragMove of the window or canvas that owns a pane
// that takes drops; other controls have none of these events.
template <typename... Args> void FireDragEvent(SubPane *pane, const char *name, Args... args) {
    auto it = Accepted().mPanes.find(pane);
    if (it == Accepted().mPanes.end())
        return;
    RuntimeObject *owner = it->second.owner;
    ObjectHook *hook = IsControl(owner)
                           ? (CanvasPaneOf(owner) ? HookNamed(CanvasDefinition(), name) : nullptr)
                           : HookNamed(WindowDefinition(), name);
    if (!hook || !pane->LockForEvent())
        return;
    CallEvent(owner, hook, args...);
    pane->UnlockAfterEvent();
}

// The pane under the pointer that would take the drop changed: the old one
// hears DragExit, the new one DragEnter.  A handler may close windows, so
// the new pane must still be alive when its turn comes.
void SetTarget(SubPane *target) {
    if (target == gDrag.target)
        return;
    if (SubPane *old = gDrag.target) {
        if (old->GetWidget())
            gtk_drag_unhighlight(old->GetWidget());
        gDrag.target = nullptr;
        FireDragEvent(old, "DragExit", gDrag.item);
    }
    if (!target || !Accepted().mPanes.count(target))
        return;
    gDrag.target = target;
    if (target->GetWidget())
        gtk_drag_highlight(target->GetWidget());
    FireDragEvent(target, "DragEnter", gDrag.item);
}

// One motion of the pointer while dragging.
void Track() {
    int32_t x = 0, y = 0;
    Window *window = WindowUnderPointer(x, y);
    SetTarget(window ? FindDropTarget(window, x, y, gDrag.item) : nullptr);
    // Relative to the target, as its mouse events are.
    if (SubPane *target = gDrag.target)
        FireDragEvent(target, "DragMove", x - target->bounds.left, y - target->bounds.top,
                      gDrag.item);
    window = WindowUnderPointer(x, y); // a handler may have closed it
    const std::vector<Rect> &rects = DragRecord(gDrag.item)->contents->itemRects;
    for (DragState::Outline &o : gDrag.outlines) {
        const bool here = o.window == window;
        if (here && o.rect < rects.size())
            PlaceOutline(o, rects[o.rect], x - gDrag.pressX, y - gDrag.pressY);
        for (GtkWidget *edge : o.edges)
            here ? gtk_widget_show(edge) : gtk_widget_hide(edge);
    }
}

gboolean OnDragMotion(GtkWidget *, GdkEventMotion *, gpointer) {
    if (gDrag.inProgress)
        Track();
    return FALSE;
}

gboolean OnDragRelease(GtkWidget *, GdkEventButton *, gpointer) {
    gDrag.inProgress = false;
    return FALSE;
}

// A pane whose window is gone must not stay highlighted or be dropped on.
class DragTargetWatch : public PaneDeathNotificationReceiver {
public:
    void PaneDied(SubPane *pane) override {
        if (gDrag.target == pane || (gDrag.target && pane->Contains(gDrag.target)))
            gDrag.target = nullptr;
        gDrag.outlines.erase(std::remove_if(gDrag.outlines.begin(), gDrag.outlines.end(),
                                            [pane](const DragState::Outline &o) {
                                                return static_cast<SubPane *>(o.window) == pane;
                                            }),
                             gDrag.outlines.end());
    }
};

DragTargetWatch *gDragWatch = nullptr;

// --- drops from other programs

// "%41" becomes "A"; a percent sign without two hexadecimal digits stays.
std::string PercentDecoded(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && g_ascii_isxdigit(text[i + 1]) &&
            g_ascii_isxdigit(text[i + 2])) {
            out.push_back(
                char(g_ascii_xdigit_value(text[i + 1]) << 4 | g_ascii_xdigit_value(text[i + 2])));
            i += 2;
        } else {
            out.push_back(text[i]);
        }
    }
    return out;
}

} // namespace

// The paths of a text/uri-list: one per "file:" line, host "localhost" or
// none.  Lines of another scheme, comments, a remote host, or a path that
// decodes to a NUL byte are left out.
std::vector<std::string> PathsOfUriList(std::string_view list) {
    std::vector<std::string> paths;
    size_t start = 0;
    while (start < list.size()) {
        size_t end = list.find('\n', start);
        if (end == std::string_view::npos)
            end = list.size();
        std::string_view line = list.substr(start, end - start);
        start = end + 1;
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (line.substr(0, 5) != "file:")
            continue;
        line.remove_prefix(5);
        if (line.substr(0, 2) == "//") {
            line.remove_prefix(2);
            size_t slash = line.find('/');
            std::string_view host = line.substr(0, slash);
            if (slash == std::string_view::npos || (!host.empty() && host != "localhost"))
                continue;
            line.remove_prefix(slash);
        }
        // Extra slashes in front name the same root.
        while (line.size() > 1 && line[0] == '/' && line[1] == '/')
            line.remove_prefix(1);
        if (line.empty() || line[0] != '/')
            continue;
        std::string path = PercentDecoded(line);
        if (path.find('\0') != std::string::npos)
            continue;
        paths.push_back(std::move(path));
    }
    return paths;
}

namespace {

RuntimeObject *ItemFromFiles(const std::vector<std::string> &paths, const Rect &at) {
    RuntimeObject *item = nullptr;
    for (const std::string &path : paths) {
        KelpString text = kelp::string::FromUTF8(path).ExtractStringStorage();
        RuntimeObject *file = FolderItemFromPath(text);
        RuntimeUnlockString(text);
        if (!file)
            continue;
        if (!item)
            item = NewDragItem(at);
        else
            DragItemAddItem(item, at.left, at.top, 0, 0);
        dragItemFolderItemSetter(item, 0, file);
        RuntimeUnlockObject(file);
    }
    return item;
}

RuntimeObject *ItemFromText(std::string_view text, const Rect &at) {
    RuntimeObject *item = NewDragItem(at);
    KelpString s = kelp::string::FromUTF8(text).ExtractStringStorage();
    dragItemTextSetter(item, 0, s);
    RuntimeUnlockString(s);
    return item;
}

void OnDataReceived(GtkWidget *, GdkDragContext *context, gint x, gint y, GtkSelectionData *data,
                    guint info, guint time, gpointer paneData) {
    auto *pane = static_cast<SubPane *>(paneData);
    RuntimeObject *item = nullptr;
    // The toolkit gives the point relative to the widget, whose corner is
    // the pane's (the window's content for the window itself).
    const Rect at = RectFromXYWH(x + pane->bounds.left, y + pane->bounds.top, 0, 0);
    if (data && data->length > 0 && data->data && !pane->closing) {
        std::string_view text(reinterpret_cast<const char *>(data->data), size_t(data->length));
        while (!text.empty() && text.back() == '\0')
            text.remove_suffix(1);
        if (info == kInfoUriList && text.substr(0, 5) == "file:")
            item = ItemFromFiles(PathsOfUriList(text), at);
        else if (gDrag.item)
            item = (RuntimeLockObject(gDrag.item), DragRecord(gDrag.item)->currentItem = 0,
                    gDrag.item);
        else if (g_utf8_validate(text.data(), gssize(text.size()), nullptr))
            item = ItemFromText(text, at);
    }
    if (item) {
        DropOn(pane, item);
        RuntimeUnlockObject(item);
    }
    // Whatever came, the other program hears that the drop is over.
    gtk_drag_finish(context, TRUE, FALSE, time);
}

// Makes the pane's widget a destination for what it accepts so far.
void UpdateToolkitDestination(SubPane *pane, Acceptance &a) {
    GtkWidget *widget = pane->GetWidget();
    if (!widget)
        return;
    std::vector<GtkTargetEntry> targets;
    static char uriList[] = "text/uri-list", textPlain[] = "text/plain", string[] = "STRING",
                utf8[] = "UTF8_STRING";
    if (a.files)
        targets.push_back({uriList, 0, kInfoUriList});
    if (a.text) {
        targets.push_back({utf8, 0, kInfoTextPlain});
        targets.push_back({textPlain, 0, kInfoTextPlain});
        targets.push_back({string, 0, kInfoString});
    }
    gtk_drag_dest_set(widget, GtkDestDefaults(GTK_DEST_DEFAULT_ALL), targets.data(),
                      gint(targets.size()), GdkDragAction(GDK_ACTION_COPY | GDK_ACTION_MOVE));
    if (!a.connected) {
        g_signal_connect(widget, "drag-data-received", G_CALLBACK(OnDataReceived), pane);
        a.connected = true;
    }
}

// A window's drops come to its toplevel; a control's to its own widget.
void Accept(RuntimeObject *owner, void (*mark)(Acceptance &)) {
    SubPane *pane = PaneOfOwner(owner);
    if (!pane)
        return;
    Acceptance &a = Accepted().mPanes[pane];
    a.owner = owner;
    mark(a);
    UpdateToolkitDestination(pane, a);
}

RuntimeObject *NewItemFor(SubPane *pane, int32_t left, int32_t top, int32_t width, int32_t height) {
    const int32_t x = pane ? pane->bounds.left : 0, y = pane ? pane->bounds.top : 0;
    return NewDragItem(RectFromXYWH(left + x, top + y, width, height));
}

std::string RawTypeOf(KelpString type) {
    std::string t(objtext::View(type).substr(0, 4));
    t.resize(4, ' ');
    return t;
}

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" void DragItemDrag(RuntimeObject *self) {
    if (!self || gDrag.inProgress)
        return;
    GdkEvent *event = gtk_get_current_event();
    if (!event)
        return;
    const bool press = event->type == GDK_BUTTON_PRESS;
    gdk_event_free(event);
    if (!press)
        return; // a drag starts only from the press of a MouseDown
    if (!gDragWatch)
        gDragWatch = new DragTargetWatch(); // lives to the end of the process
    RuntimeLockObject(self);
    gDrag.item = self;
    gDrag.target = nullptr;
    int32_t x = 0, y = 0;
    Window *start = WindowUnderPointer(x, y);
    gDrag.pressX = x, gDrag.pressY = y;
    MakeOutlines(start);
    std::vector<gulong> handlers;
    std::vector<Window *> windows(WindowList());
    const CursorHolder *cursor = HolderOf(DragRecord(self)->mouseCursor);
    for (Window *window : windows) {
        if (!window->GtkWin())
            continue;
        if (cursor && cursor->cursor && window->GetDrawable())
            gdk_window_set_cursor(window->GetDrawable(), cursor->cursor);
        handlers.push_back(g_signal_connect(window->GtkWin(), "motion-notify-event",
                                            G_CALLBACK(OnDragMotion), nullptr));
        handlers.push_back(g_signal_connect(window->GtkWin(), "button-release-event",
                                            G_CALLBACK(OnDragRelease), nullptr));
    }
    gDrag.inProgress = true;
    // A wake-up now and then: the button may come up where no window of
    // ours sees the release.
    guint wake = g_timeout_add(
        50, [](gpointer) -> gboolean { return TRUE; }, nullptr);
    while (gDrag.inProgress) {
        gtk_main_iteration_do(TRUE);
        GdkModifierType mask{};
        gdk_display_get_pointer(gdk_display_get_default(), nullptr, nullptr, nullptr, &mask);
        if (!(mask & (GDK_BUTTON1_MASK | GDK_BUTTON2_MASK | GDK_BUTTON3_MASK)))
            gDrag.inProgress = false;
        else
            Track();
    }
    g_source_remove(wake);
    for (Window *window : WindowList()) {
        if (!window->GtkWin())
            continue;
        for (gulong id : handlers)
            if (g_signal_handler_is_connected(window->GtkWin(), id))
                g_signal_handler_disconnect(window->GtkWin(), id);
    }
    DestroyOutlines();
    // The pane that takes the drop hears DropObject instead of DragExit; a
    // pane left behind without a last motion still hears DragExit.
    SubPane *last = gDrag.target;
    if (last && last->GetWidget())
        gtk_drag_unhighlight(last->GetWidget());
    gDrag.target = nullptr;
    NoteDragEnded();
    Window *under = WindowUnderPointer(x, y);
    SubPane *dropTarget = under ? FindDropTarget(under, x, y, self) : nullptr;
    if (last && last != dropTarget) {
        FireDragEvent(last, "DragExit", self);
        if (dropTarget && !Accepted().mPanes.count(dropTarget))
            dropTarget = nullptr; // the handler closed its window
    }
    if (SubPane *target = dropTarget) {
        // The rectangles land where the pointer took them.
        for (Rect &r : DragRecord(self)->contents->itemRects)
            r = RectFromXYWH(r.left + x - gDrag.pressX, r.top + y - gDrag.pressY, r.right - r.left,
                             r.bottom - r.top);
        DropOn(target, self);
        if (target->GetWidget())
            gtk_drag_unhighlight(target->GetWidget());
    }
    // Each window shows the cursor its panes choose again.
    if (cursor && cursor->cursor)
        for (Window *window : WindowList())
            if (window->GetDrawable() && window->PointerInContent(x, y))
                gdk_window_set_cursor(window->GetDrawable(), ChooseCursor(window, x, y));
    gDrag.item = nullptr;
    RuntimeUnlockObject(self);
}

extern "C" RuntimeObject *controlNewDragItem(RuntimeObject *control, int32_t left, int32_t top,
                                             int32_t width, int32_t height) {
    if (!control)
        return nullptr;
    return NewItemFor(PaneOfOwner(control), left, top, width, height);
}

extern "C" RuntimeObject *formNewDragItem(RuntimeObject *view, int32_t left, int32_t top,
                                          int32_t width, int32_t height) {
    if (!view)
        return nullptr;
    return NewItemFor(nullptr, left, top, width, height);
}

extern "C" void controlAcceptTextDrop(RuntimeObject *control) {
    Accept(control, [](Acceptance &a) { a.text = true; });
}
extern "C" void controlAcceptPictureDrop(RuntimeObject *control) {
    Accept(control, [](Acceptance &a) { a.picture = true; });
}
// Any file type: the type names a kind the program expects, and a file
// dropped from elsewhere has no kind to compare.
extern "C" void controlAcceptFileDrop(RuntimeObject *control, KelpString) {
    Accept(control, [](Acceptance &a) { a.files = true; });
}
extern "C" void controlAcceptMacDataDrop(RuntimeObject *control, KelpString type) {
    if (SubPane *pane = PaneOfOwner(control)) {
        Accepted().mPanes[pane].rawTypes.insert(RawTypeOf(type));
        Accept(control, [](Acceptance &) {});
    }
}
extern "C" void formAcceptTextDrop(RuntimeObject *view) { controlAcceptTextDrop(view); }
extern "C" void formAcceptPictureDrop(RuntimeObject *view) { controlAcceptPictureDrop(view); }
extern "C" void formAcceptFileDrop(RuntimeObject *view, KelpString type) {
    controlAcceptFileDrop(view, type);
}
extern "C" void formAcceptMacDataDrop(RuntimeObject *view, KelpString type) {
    controlAcceptMacDataDrop(view, type);
}
