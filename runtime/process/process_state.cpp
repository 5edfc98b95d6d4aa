#include "process/process_state.h"

#include "kelp/startup.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace kelp {
namespace {
int gArgc = 0;
char **gArgv = nullptr;
RuntimeObject *gApplicationObject = nullptr;
RuntimeObject *gConsoleApplicationObject = nullptr;
ThemeDefaults gTheme;
KeySnoopHook gKeySnoopHook = nullptr;
thread_local uintptr_t tStackLimit = 0;
thread_local uintptr_t tStackBase = 0;

gint KeySnooper(GtkWidget *widget, GdkEventKey *event, gpointer) {
    if (gKeySnoopHook)
        gKeySnoopHook(widget, event);
    return FALSE; // the event goes on to its widget
}
} // namespace

void SetProcessArguments(int argc, char **argv) {
    // The toolkit compacts the vector it is given; these copies keep the
    // command line as the operating system passed it.
    // The texts own the bytes and stay reachable to the end: code that runs
    // while the process exits may still read the command line.
    static auto &texts = *new std::vector<std::string>;
    static auto &copies = *new std::vector<char *>;
    texts.assign(static_cast<size_t>(std::max(argc, 0)), std::string());
    copies.assign(texts.size() + 1, nullptr);
    for (size_t i = 0; i < texts.size(); ++i)
        if (argv && argv[i]) {
            texts[i] = argv[i];
            copies[i] = texts[i].data();
        }
    gArgc = argc;
    gArgv = copies.data();
}

int ProcessArgumentCount() { return gArgc; }
char **ProcessArguments() { return gArgv; }

void SetApplicationObject(RuntimeObject *app) { gApplicationObject = app; }
RuntimeObject *ApplicationObject() { return gApplicationObject; }
void SetConsoleApplicationObject(RuntimeObject *app) { gConsoleApplicationObject = app; }
RuntimeObject *ConsoleApplicationObject() { return gConsoleApplicationObject; }

const ThemeDefaults &Theme() { return gTheme; }

void ParseThemeFont(const char *fontName, std::string &name, int32_t &size) {
    if (!fontName)
        return;
    const char *p = fontName;
    while (*p == ' ')
        ++p;
    const char *nameEnd = p;
    while (*nameEnd && *nameEnd != ' ')
        ++nameEnd;
    name.assign(p, nameEnd);
    p = nameEnd;
    while (*p == ' ')
        ++p;
    size = std::atoi(p); // a second word that isn't a number reads 0
    if (name.empty())
        name = "Sans";
    if (size == 0)
        size = 10;
}

void ReadTheme() {
    GtkSettings *settings = gtk_settings_get_default();
    if (!settings)
        return;
    gchar *font = nullptr;
    g_object_get(settings, "gtk-font-name", &font, nullptr);
    if (font) {
        ParseThemeFont(font, gTheme.fontName, gTheme.fontSize);
        g_free(font);
    }
    gtk_key_snooper_install(KeySnooper, nullptr);
    GtkStyle *style =
        gtk_rc_get_style_by_paths(settings, "GtkWidget", "GtkWidget", gtk_widget_get_type());
    // Without a theme that styles widgets the toolkit's built-in style is what
    // every widget will show, so its colours are the defaults to use.
    if (!style)
        style = gtk_widget_get_default_style();
    if (style) {
        const GdkColor *from[7] = {
            &style->bg[GTK_STATE_ACTIVE],   &style->fg[GTK_STATE_INSENSITIVE],
            &style->bg[GTK_STATE_NORMAL],   &style->dark[GTK_STATE_NORMAL],
            &style->base[GTK_STATE_NORMAL], &style->bg[GTK_STATE_SELECTED],
            &style->text[GTK_STATE_NORMAL]};
        for (int i = 0; i < 7; ++i)
            gTheme.colours[i] = {from[i]->red, from[i]->green, from[i]->blue};
        gTheme.coloursRead = true;
    }
}

KeySnoopHook SetKeySnoopHook(KeySnoopHook hook) {
    KeySnoopHook old = gKeySnoopHook;
    gKeySnoopHook = hook;
    return old;
}

TextStyle &GraphicsDefaultTextStyle() {
    static TextStyle style{"System", false, false, false, 10};
    return style;
}
TextStyle &DialogDefaultTextStyle() {
    static TextStyle style{"System", false, false, false, 12};
    return style;
}

uintptr_t StackLimit() { return tStackLimit; }
uintptr_t StackBase() { return tStackBase; }
void SetStackLimit(uintptr_t limit) { tStackLimit = limit; }

} // namespace kelp

extern "C" void RuntimeInit(void) {}

extern "C" int32_t RuntimeExit(void) { return 0; }

extern "C" void RuntimeStackCheck(void) {}

extern "C" void KELPInitStackChecker(uint32_t bytes) {
    char here;
    const uintptr_t position = reinterpret_cast<uintptr_t>(&here);
    kelp::tStackBase = position;
    kelp::tStackLimit = position > bytes ? position - bytes : 0;
}

extern "C" char **KELPGetCommandLineForUnix(void) { return kelp::gArgv; }

extern "C" RuntimeObject *getAppObject(void) { return kelp::gApplicationObject; }
