// The colour dialog and the functions that show the file dialogs, answered
// as a person would; while each dialog is up, the X server is asked whether
// it is transient for the application's window and centred over it, and
// the chooser which filters the registered file types gave it.
#include "controls/control_fixture.h"
#include "support/image_builder.h"
#include "support/person.h"

#include "folder_items/folder_item_object.h"

#include "kelp/kelp.h"

#include <X11/Xlib.h>
#include <gdk/gdkx.h>

namespace kelp::test {
namespace {

struct Seen {
    std::string title;
    bool found = false;
    ::Window transientFor = 0;
    int centreX = 0, centreY = 0;
    std::vector<std::string> filters; // name, then whether it takes "a.text" and "b.dat"
    int tries = 0;
};

// A timeout of the dialog's own loop: looks at the dialog of the title.
gboolean Look(gpointer data) {
    auto *seen = static_cast<Seen *>(data);
    GList *all = gtk_window_list_toplevels();
    for (GList *l = all; l; l = l->next) {
        GtkWidget *w = GTK_WIDGET(l->data);
        const char *title = gtk_window_get_title(GTK_WINDOW(w));
        if (!title || seen->title != title || !GTK_WIDGET_MAPPED(w))
            continue;
        seen->found = true;
        XGetTransientForHint(GDK_DISPLAY(), GDK_WINDOW_XID(w->window), &seen->transientFor);
        int x, y, width, height;
        gdk_window_get_root_origin(w->window, &x, &y);
        gdk_drawable_get_size(w->window, &width, &height);
        seen->centreX = x + width / 2, seen->centreY = y + height / 2;
        GSList *filters =
            GTK_IS_FILE_CHOOSER(w) ? gtk_file_chooser_list_filters(GTK_FILE_CHOOSER(w)) : nullptr;
        for (GSList *f = filters; f; f = f->next) {
            std::string row = gtk_file_filter_get_name(GTK_FILE_FILTER(f->data));
            for (const char *name : {"a.text", "b.dat"}) {
                GtkFileFilterInfo info{GTK_FILE_FILTER_DISPLAY_NAME, nullptr, nullptr, name,
                                       nullptr};
                row += gtk_file_filter_filter(GTK_FILE_FILTER(f->data), &info) ? " +" : " -";
            }
            seen->filters.push_back(row);
        }
        g_slist_free(filters);
    }
    g_list_free(all);
    return !seen->found && ++seen->tries < 100;
}

class Pickers : public ControlFixture {
protected:
    // Runs `show` with a person giving `steps` to the dialog of `title`,
    // and checks the dialog sat over the window.
    Seen Showing(const std::string &title, std::vector<std::string> steps,
                 const std::function<void()> &show) {
        RuntimeObject *window = MakeWindow(600, 400, [](RuntimeObject *) {});
        Seen seen;
        seen.title = title;
        g_timeout_add(100, &Look, &seen);
        {
            Person person(title, std::move(steps));
            show();
        }
        g_source_remove_by_user_data(&seen);
        EXPECT_TRUE(seen.found) << title;
        GtkWidget *parent = View(window)->pane->GtkWin();
        EXPECT_EQ(seen.transientFor, GDK_WINDOW_XID(parent->window)) << title;
        int x, y, w, h;
        gdk_window_get_root_origin(parent->window, &x, &y);
        gdk_drawable_get_size(parent->window, &w, &h);
        EXPECT_NEAR(seen.centreX, x + w / 2, 40) << title;
        EXPECT_NEAR(seen.centreY, y + h / 2, 40) << title;
        return seen;
    }
    TempDir mDir;
};

TEST_F(Pickers, TheColourDialogAnswersWhatThePersonChose) {
    struct Case {
        const char *last;
        uint8_t ok;
        uint32_t colour;
    } cases[] = {{"key alt+o", 1, 0x3366CC}, {"key Escape", 0, 0xABCDEF}};
    for (const Case &c : cases) {
        uint32_t colour = 0xABCDEF;
        uint8_t ok = 2;
        KelpString prompt = MakeText("Pick a test colour");
        Showing("Pick a test colour",
                {"key alt+n", "key ctrl+a", "type '#3366cc'", "key Tab", c.last},
                [&] { ok = selectColor(&colour, prompt); });
        objtext::Release(prompt);
        EXPECT_EQ(ok, c.ok);
        EXPECT_EQ(colour, c.colour);
    }
}

TEST_F(Pickers, FileFunctionsShowFiltersOfRegisteredTypesOverTheWindow) {
    KelpString type = MakeText("text/plain"), creator = MakeText("????"), mac = MakeText("TEXT"),
               endings = MakeText(".txt;text"), filter = MakeText("text/plain;dat"),
               name = MakeText("report.txt");
    RuntimeRegisterFileType(type, creator, mac, endings);
    RuntimeObject *answer = nullptr;
    Seen open =
        Showing("Open File", {"key Escape"}, [&] { answer = RuntimeGetOpenFolderItem(filter); });
    EXPECT_EQ(answer, nullptr) << "cancelled";
    EXPECT_EQ(open.filters, (std::vector<std::string>{"text/plain + -", "dat - +"}));

    const std::string target = mDir / "chosen.txt";
    Showing("Save File", {"key ctrl+a", "type " + target, "key Return"},
            [&] { answer = RuntimeGetSaveFolderItem(filter, name); });
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(ImpOf(answer)->AbsolutePath(), target);
    RuntimeUnlockObject(answer);

    RuntimeObject *picture = newPicture(7, 3, 32);
    const std::string bmp = mDir / "export.bmp";
    uint8_t written = 0;
    Showing("Export Image As:", {"key ctrl+a", "type " + bmp, "key Return"},
            [&] { written = exportPicture(picture); });
    EXPECT_EQ(written, 1);
    const std::vector<uint8_t> bytes = ReadFileBytes(bmp);
    ASSERT_GE(bytes.size(), 54u);
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 2), "BM");
    EXPECT_EQ(bytes[18] | bytes[19] << 8, 7) << "width";
    RuntimeUnlockObject(picture);
    RuntimeDeregisterFileType(type);
    for (KelpString s : {type, creator, mac, endings, filter, name})
        objtext::Release(s);
}

} // namespace
} // namespace kelp::test
