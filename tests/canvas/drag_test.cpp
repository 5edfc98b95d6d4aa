// Drags between canvases of this process, and drops from another program:
// a separate X client that offers files and text, dragged with real input.
#include "canvas/canvas_fixture.h"

#include "canvas/drag_item.h"
#include "cursors/mouse_cursor.h"
#include "strings/kstring.h"
#include "support/image_builder.h"

#include "kelp/files.h"

#include <sys/wait.h>

#include <fstream>

namespace kelp::test {
namespace {

KelpString Text(const std::string &s) { return kelp::string::FromUTF8(s).ExtractStringStorage(); }
std::string Owned(KelpString s) {
    std::string text(objtext::View(s));
    RuntimeUnlockString(s);
    return text;
}

GdkCursor *gDragCursor = nullptr; // the X server's to free at the end

uint8_t StartDrag(RuntimeObject *me, int32_t, int32_t) {
    RuntimeObject *item = controlNewDragItem(me, 0, 0, 80, 80);
    if (!gDragCursor)
        gDragCursor = gdk_cursor_new(GDK_HAND2);
    RuntimeObject *cursor = NewMouseCursor(new CursorHolder{gdk_cursor_ref(gDragCursor)});
    objSetter(item, offsetof(DragItemRecord, mouseCursor), cursor);
    RuntimeUnlockObject(cursor);
    KelpString text = Text("carried");
    dragItemTextSetter(item, 0, text);
    RuntimeUnlockString(text);
    DragItemDrag(item);
    RuntimeUnlockObject(item);
    return 1;
}

// "Drop Name a | b" with each entry's text or path, then where the first
// entry's rectangle landed.
void LogDrop(RuntimeObject *me, RuntimeObject *item) {
    std::string line = "Drop " + NameOf(me);
    const int32_t left = dragItemDropLeft(item, 0), top = dragItemDropTop(item, 0);
    const char *sep = " ";
    do {
        if (DragItemFolderItemAvailable(item)) {
            RuntimeObject *file = dragItemFolderItemGetter(item, 0);
            line += sep + Owned(KELPpathFromFolderItem(file));
            RuntimeUnlockObject(file);
        } else if (DragItemTextAvailable(item)) {
            line += sep + Owned(dragItemTextGetter(item, 0));
        }
        sep = " | ";
    } while (DragItemNextItem(item));
    // While a drag drops, the window shows the item's cursor.
    GtkWidget *widget = static_cast<ControlPane *>(Ctl(me)->pane)->GetWidget();
    GdkWindow *shown = gtk_widget_get_toplevel(widget)->window;
    if (gDragCursor && shown && gdk_window_get_cursor(shown) == gDragCursor)
        line += " with its cursor";
    Events().push_back(line + " at " + std::to_string(left) + "," + std::to_string(top));
}

// The drag's passage over its targets: "Enter Name", "Exit Name", and
// "Move Name x,y" for the last of a run of moves over one target.
std::string NameOrWindow(RuntimeObject *me) { return IsControl(me) ? NameOf(me) : "window"; }
void LogEnter(RuntimeObject *me, RuntimeObject *) {
    Events().push_back("Enter " + NameOrWindow(me));
}
void LogExit(RuntimeObject *me, RuntimeObject *) { Events().push_back("Exit " + NameOrWindow(me)); }
void LogMove(RuntimeObject *me, int32_t x, int32_t y, RuntimeObject *item) {
    const std::string move = "Move " + NameOrWindow(me);
    if (!Events().empty() && Events().back().rfind(move + " ", 0) == 0)
        Events().pop_back();
    Events().push_back(move + " " + std::to_string(x) + "," + std::to_string(y) +
                       (DragItemTextAvailable(item) ? "" : " without its text"));
}

class DragTest : public CanvasTest {
protected:
    // Starts the other program with its window at (x, y) of the screen.
    GPid StartSource(int x, int y, const std::string &uris, const std::string &text) {
        std::vector<std::string> args = {KELP_DROP_SOURCE, std::to_string(x), std::to_string(y),
                                         uris, text};
        std::vector<char *> argv;
        for (std::string &a : args)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        GPid pid = 0;
        EXPECT_TRUE(g_spawn_async(nullptr, argv.data(), nullptr, G_SPAWN_DO_NOT_REAP_CHILD, nullptr,
                                  nullptr, &pid, nullptr));
        // Its window is up before the pointer goes there.
        if (FILE *search = popen("timeout 10 xdotool search --sync --onlyvisible --name "
                                 "kelpdropsource",
                                 "r"))
            pclose(search);
        Settle(100);
        return pid;
    }
    void Finish(GPid pid) {
        int status = 0;
        for (int i = 0; i < 100 && waitpid(pid, &status, WNOHANG) == 0; ++i)
            Settle(20);
        if (waitpid(pid, &status, WNOHANG) == 0) {
            kill(pid, SIGTERM);
            waitpid(pid, &status, 0);
        }
        g_spawn_close_pid(pid);
    }
};

TEST_F(DragTest, AnItemDraggedWithinAndAcrossWindowsReachesTheCanvasThatTakesText) {
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "Canvas", "Source", [](MassData &m) { Box(m, 10, 10, 80, 80); },
            {{"MouseDown", H(&StartDrag)}});
        Add(view, "Canvas", "Right", [](MassData &m) { Box(m, 150, 10, 100, 100); },
            {{"DropObject", H(&LogDrop)}});
        Add(view, "Canvas", "Deaf", [](MassData &m) { Box(m, 150, 130, 100, 60); },
            {{"DropObject", H(&LogDrop)}});
    });
    RuntimeObject *far = MakeWindow(200, 200, [](RuntimeObject *view) {
        Add(view, "Canvas", "Far", [](MassData &m) { Box(m, 10, 10, 100, 100); },
            {{"DropObject", H(&LogDrop)}});
    });
    // The fixture's windows are plain boxes, which the toolkit makes modal:
    // this one must leave the other its input.
    gtk_window_set_modal(GTK_WINDOW(View(far)->pane->GtkWin()), FALSE);
    View(far)->pane->Move(700, 100, false);
    Settle(200);
    controlAcceptTextDrop(Find(w, "Right"));
    controlAcceptTextDrop(Find(far, "Far"));
    struct Case {
        RuntimeObject *window;
        int x, y;
        std::vector<std::string> events;
    };
    // Pressed at (50, 50): the item's rectangle moves with the pointer.
    const Case cases[] = {
        {w, 200, 60, {"Drop Right carried with its cursor at 10,10"}},
        {far, 60, 60, {"Drop Far carried with its cursor at 10,10"}},
        {w, 200, 150, {}}, // a canvas that takes nothing
        {w, 120, 100, {}}, // the window, which takes nothing
    };
    for (const Case &c : cases) {
        Events().clear();
        Gesture("mousemove " + At(w, 50, 50) + " mousedown 1 sleep 0.2 mousemove " +
                At(c.window, c.x - 20, c.y) + " sleep 0.1 mousemove " + At(c.window, c.x, c.y) +
                " sleep 0.2 mouseup 1");
        EXPECT_EQ(Events(), c.events) << c.x << "," << c.y;
    }
    EXPECT_EQ(MouseCapturePane(), nullptr) << "the drag's press leaves no capture";
}

TEST_F(DragTest, DropsFromAnotherProgramBringFilesOrText) {
    TempDir dir;
    for (const char *name : {"a b", "c"})
        std::ofstream(dir / name) << name;
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "Canvas", "Bin", [](MassData &m) { Box(m, 20, 20, 200, 150); },
            {{"DropObject", H(&LogDrop)}});
    });
    RuntimeObject *bin = Find(w, "Bin");
    KelpString any = Text("????");
    controlAcceptFileDrop(bin, any);
    RuntimeUnlockString(any);
    controlAcceptTextDrop(bin);
    const std::string d = dir.path();
    struct Case {
        const char *what;
        std::string uris, text;
        std::vector<std::string> events;
    };
    const Case cases[] = {
        {"two files",
         "file://" + d + "/a%20b\r\nfile://localhost" + d + "/c\r\n",
         "unused",
         {"Drop Bin " + d + "/a b | " + d + "/c at 80,60"}},
        {"damaged list: other schemes, a remote host, a NUL, a bad escape",
         "file://" + d +
             "/c\r\nhttp://example.invalid/x\r\nfile://elsewhere/etc/passwd\r\n"
             "file://" +
             d + "/%00x\r\nfile://" + d + "/%zz\r\n",
         "unused",
         {"Drop Bin " + d + "/c | " + d + "/%zz at 80,60"}},
        {"text only", "", "plain words", {"Drop Bin plain words at 80,60"}},
    };
    for (const Case &c : cases) {
        Events().clear();
        GPid pid = StartSource(700, 500, c.uris, c.text);
        Gesture("mousemove 730 530 mousedown 1 sleep 0.2 mousemove 700 450 sleep 0.2 "
                "mousemove " +
                At(w, 90, 80) + " sleep 0.2 mousemove " + At(w, 100, 80) +
                " sleep 0.3 mouseup 1 sleep 0.3");
        Finish(pid);
        EXPECT_EQ(Events(), c.events) << c.what;
    }
}

TEST(UriListTest, OnlyLocalFileLinesBecomePaths) {
    struct Case {
        std::string list;
        std::vector<std::string> paths;
    } cases[] = {
        {"file:///a/b\r\nfile:///c", {"/a/b", "/c"}},
        {"file:/x%41%4a", {"/xAJ"}},
        {"file:////double//slash\n", {"/double//slash"}},
        {"file://localhost/l\r\n# comment\r\nhttps://h/p\r\n", {"/l"}},
        {"file://host/r\r\nfile:relative\r\nfile:\r\n\r\n", {}},
        {"file:///p%2", {"/p%2"}},
        {"file:///nul%00end", {}},
        {std::string("file:///a\0b", 11), {}},
    };
    for (const Case &c : cases)
        EXPECT_EQ(PathsOfUriList(c.list), c.paths) << c.list;
}

TEST_F(DragTest, TargetsHearTheDragEnterMoveOverAndLeave) {
    RuntimeObject *w = MakeWindow(
        300, 200,
        [](RuntimeObject *view) {
            Add(view, "Canvas", "Source", [](MassData &m) { Box(m, 10, 10, 80, 80); },
                {{"MouseDown", H(&StartDrag)}});
            Add(view, "Canvas", "Right", [](MassData &m) { Box(m, 150, 10, 100, 100); },
                {{"DragEnter", H(&LogEnter)},
                 {"DragExit", H(&LogExit)},
                 {"DragMove", H(&LogMove)},
                 {"DropObject", H(&LogDrop)}});
        },
        {{"DragEnter", H(&LogEnter)}, {"DragExit", H(&LogExit)}, {"DragMove", H(&LogMove)}});
    controlAcceptTextDrop(Find(w, "Right"));
    formAcceptTextDrop(w);
    Events().clear();
    // Over the window, across Right, back to the window, and onto Right.
    Gesture("mousemove " + At(w, 50, 50) + " mousedown 1 sleep 0.2 mousemove " + At(w, 120, 150) +
            " sleep 0.1 mousemove " + At(w, 200, 60) + " sleep 0.1 mousemove " + At(w, 210, 70) +
            " sleep 0.1 mousemove " + At(w, 120, 150) + " sleep 0.1 mousemove " + At(w, 160, 20) +
            " sleep 0.2 mouseup 1");
    const std::vector<std::string> expected = {
        "Enter window", "Move window 120,150", "Exit window",
        "Enter Right",  "Move Right 60,60",    "Exit Right",
        "Enter window", "Move window 120,150", "Exit window",
        "Enter Right",  "Move Right 10,10",    "Drop Right carried with its cursor at -30,-30"};
    EXPECT_EQ(Events(), expected);
}

} // namespace
} // namespace kelp::test
