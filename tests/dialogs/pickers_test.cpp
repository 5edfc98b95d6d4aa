// The colour dialog and the functions that show the file dialogs, answered
// as a person would; each dialog is looked at on the X server while it is
// up: transient for the application's window, centred over it, and with
// the filters of the registered file types.
#include "controls/control_fixture.h"
#include "support/image_builder.h"
#include "support/person.h"

#include "folder_items/folder_item_object.h"

#include "kelp/kelp.h"

#include <X11/Xlib.h>
#include <gdk/gdkx.h>

#include <filesystem>

namespace kelp::test {
namespace {

// What the X server and the toolkit say of the dialog of a title while it
// is showing, seen from a timeout of the dialog's own loop.
struct Seen {
    std::string title;
    bool found = false;
    ::Window transientFor = 0;
    int centreX = 0, centreY = 0;
    std::vector<std::string> filters;
    std::vector<bool> textTypeTakes; // the first filter on "a.text", "b.dat"
    int tries = 0;
};

gboolean Look(gpointer data) {
    auto *seen = static_cast<Seen *>(data);
    GList *all = gtk_window_list_toplevels();
    for (GList *l = all; l; l = l->next) {
        GtkWindow *w = GTK_WINDOW(l->data);
        const char *title = gtk_window_get_title(w);
        if (!title || seen->title != title || !GTK_WIDGET_MAPPED(GTK_WIDGET(w)))
            continue;
        seen->found = true;
        XGetTransientForHint(GDK_DISPLAY(), GDK_WINDOW_XID(GTK_WIDGET(w)->window),
                             &seen->transientFor);
        int x, y, width, height;
        gdk_window_get_root_origin(GTK_WIDGET(w)->window, &x, &y);
        gdk_drawable_get_size(GTK_WIDGET(w)->window, &width, &height);
        seen->centreX = x + width / 2, seen->centreY = y + height / 2;
        if (GTK_IS_FILE_CHOOSER(w)) {
            GSList *filters = gtk_file_chooser_list_filters(GTK_FILE_CHOOSER(w));
            for (GSList *f = filters; f; f = f->next)
                seen->filters.push_back(gtk_file_filter_get_name(GTK_FILE_FILTER(f->data)));
            if (filters)
                for (const char *name : {"a.text", "b.dat"}) {
                    GtkFileFilterInfo info{GTK_FILE_FILTER_DISPLAY_NAME, nullptr, nullptr, name,
                                           nullptr};
                    seen->textTypeTakes.push_back(
                        gtk_file_filter_filter(GTK_FILE_FILTER(filters->data), &info));
                }
            g_slist_free(filters);
        }
    }
    g_list_free(all);
    return !seen->found && ++seen->tries < 100;
}

class Pickers : public ControlFixture {
protected:
    void SetUp() override {
        ControlFixture::SetUp();
        if (IsSkipped())
            return;
        mWindow = MakeWindow(600, 400, [](RuntimeObject *) {});
    }
    // Runs `show` with a person giving `steps` to the dialog of `title`.
    Seen Showing(const std::string &title, std::vector<std::string> steps,
                 const std::function<void()> &show) {
        Seen seen;
        seen.title = title;
        g_timeout_add(100, &Look, &seen);
        {
            Person person(title, std::move(steps));
            show();
        }
        g_source_remove_by_user_data(&seen);
        return seen;
    }
    void ExpectOverTheWindow(const Seen &seen) {
        EXPECT_TRUE(seen.found) << seen.title;
        GtkWidget *parent = View(mWindow)->pane->GtkWin();
        EXPECT_EQ(seen.transientFor, GDK_WINDOW_XID(parent->window)) << seen.title;
        int x, y, w, h;
        gdk_window_get_root_origin(parent->window, &x, &y);
        gdk_drawable_get_size(parent->window, &w, &h);
        EXPECT_NEAR(seen.centreX, x + w / 2, 40) << seen.title;
        EXPECT_NEAR(seen.centreY, y + h / 2, 40) << seen.title;
    }
    RuntimeObject *mWindow = nullptr;
    TempDir mDir;
};

TEST_F(Pickers, TheColourDialogAnswersWhatThePersonChose) {
    struct Case {
        std::vector<std::string> steps;
        uint8_t ok;
        uint32_t colour;
    } cases[] = {
        {{"key alt+n", "key ctrl+a", "type '#3366cc'", "key Tab", "key alt+o"}, 1, 0x3366CC},
        {{"key alt+n", "key ctrl+a", "type '#ff0000'", "key Tab", "key Escape"}, 0, 0xABCDEF},
    };
    for (const Case &c : cases) {
        uint32_t colour = 0xABCDEF;
        uint8_t ok = 2;
        KelpString prompt = MakeText("Pick a test colour");
        Seen seen =
            Showing("Pick a test colour", c.steps, [&] { ok = selectColor(&colour, prompt); });
        objtext::Release(prompt);
        EXPECT_EQ(ok, c.ok);
        EXPECT_EQ(colour, c.colour);
        ExpectOverTheWindow(seen);
    }
}

TEST_F(Pickers, FileFunctionsShowFiltersOfRegisteredTypesOverTheWindow) {
    KelpString type = MakeText("text/plain"), creator = MakeText("????"), mac = MakeText("TEXT"),
               endings = MakeText(".txt;text");
    RuntimeRegisterFileType(type, creator, mac, endings);
    KelpString filter = MakeText("text/plain;dat"), name = MakeText("report.txt");
    RuntimeObject *answer = nullptr;
    Seen open =
        Showing("Open File", {"key Escape"}, [&] { answer = RuntimeGetOpenFolderItem(filter); });
    EXPECT_EQ(answer, nullptr) << "cancelled";
    ExpectOverTheWindow(open);
    EXPECT_EQ(open.filters, (std::vector<std::string>{"text/plain", "dat"}));
    EXPECT_EQ(open.textTypeTakes, (std::vector<bool>{true, false}));

    const std::string target = mDir / "chosen.txt";
    Seen save = Showing("Save File", {"key ctrl+a", "type " + target, "key Return"},
                        [&] { answer = RuntimeGetSaveFolderItem(filter, name); });
    ExpectOverTheWindow(save);
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(ImpOf(answer)->AbsolutePath(), target);
    RuntimeUnlockObject(answer);

    // ExportPicture writes a BMP where the person said.
    RuntimeObject *picture = newPicture(7, 3, 32);
    const std::string bmp = mDir / "export.bmp";
    uint8_t written = 0;
    Seen exported = Showing("Export Image As:", {"key ctrl+a", "type " + bmp, "key Return"},
                            [&] { written = exportPicture(picture); });
    ExpectOverTheWindow(exported);
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
