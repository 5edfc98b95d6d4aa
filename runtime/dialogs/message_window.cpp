// The message window on plain toolkit widgets in a fixed layout.
#include "dialogs/message_window.h"

#include "base/fatal_report.h"
#include "graphics/font_mapping.h"
#include "process/quit.h"
#include "runloop/main_loop.h"

#include <gdk/gdkkeysyms.h>
#include <gtk/gtk.h>

#include <algorithm>

namespace kelp {

namespace {

const char kFile[] = "runtime/dialogs/message_window.cpp";

constexpr int32_t kIconSize = 32;
constexpr int32_t kIconLeft = 10, kIconTop = 12;
constexpr int32_t kButtonHeight = 29, kButtonGap = 8, kMinButtonWidth = 69;

const char *const kDefaultCaption[3] = {"Cancel", "OK", "Alternate Action"};
const char *const kStockIcon[4] = {"gtk-dialog-info", "gtk-dialog-warning", "gtk-dialog-error",
                                   "gtk-dialog-question"};

std::string CaptionOf(const MessageWindowSpec &spec, int32_t button) {
    const std::string &given = button == kButtonAction   ? spec.actionCaption
                               : button == kButtonCancel ? spec.cancelCaption
                                                         : spec.alternateCaption;
    return given.empty() ? kDefaultCaption[button] : given;
}

bool Visible(const MessageWindowSpec &spec, int32_t button) {
    return button == kButtonAction || (button == kButtonCancel && spec.cancelVisible) ||
           (button == kButtonAlternate && spec.alternateVisible);
}

// Measures text in the theme's font ("System") or its small form.
class Measure {
public:
    explicit Measure(const char *fontName) {
        mContext = gdk_pango_context_get();
        mLayout = pango_layout_new(mContext);
        mFont = MakeFontDescription(FontSpec{fontName, 0, 0});
        if (mFont)
            pango_layout_set_font_description(mLayout, mFont);
    }
    ~Measure() {
        if (mFont)
            pango_font_description_free(mFont);
        g_object_unref(mLayout);
        g_object_unref(mContext);
    }
    Measure(const Measure &) = delete;
    Measure &operator=(const Measure &) = delete;

    // Width on one line, or height wrapped at `wrapWidth` (above 0).
    int32_t Width(const std::string &text) { return Size(text, -1, true); }
    int32_t Height(const std::string &text, int32_t wrapWidth) {
        return text.empty() ? 0 : Size(text, wrapWidth, false);
    }
    const PangoFontDescription *Font() const { return mFont; }

private:
    int32_t Size(const std::string &text, int32_t wrapWidth, bool width) {
        pango_layout_set_text(mLayout, text.c_str(), -1);
        pango_layout_set_width(mLayout, wrapWidth > 0 ? wrapWidth * PANGO_SCALE : -1);
        pango_layout_set_wrap(mLayout, PANGO_WRAP_WORD_CHAR);
        int w = 0, h = 0;
        pango_layout_get_pixel_size(mLayout, &w, &h);
        return width ? w : h;
    }
    PangoContext *mContext;
    PangoLayout *mLayout;
    PangoFontDescription *mFont;
};

struct Showing {
    int32_t result = kButtonNone;
    bool open = true;
    GtkWidget *buttons[3] = {};
    int32_t defaultButton, cancelButton, closeBoxAnswer;
};

void Answer(Showing &s, int32_t button) {
    if (!s.open)
        return;
    s.result = button;
    s.open = false;
}

void ButtonClicked(GtkButton *button, gpointer data) {
    auto *s = static_cast<Showing *>(data);
    for (int32_t i = 0; i < 3; ++i)
        if (s->buttons[i] == GTK_WIDGET(button))
            Answer(*s, i);
}

gboolean CloseBox(GtkWidget *, GdkEvent *, gpointer data) {
    auto *s = static_cast<Showing *>(data);
    Answer(*s, s->closeBoxAnswer);
    return TRUE; // the window goes when the showing ends
}

// Return presses the default button and Escape the cancel button, wherever
// the focus is; a button is pressed as a click would, so that it shows.
gboolean KeyPressed(GtkWidget *, GdkEventKey *event, gpointer data) {
    auto *s = static_cast<Showing *>(data);
    int32_t button = kButtonNone;
    if (event->keyval == GDK_Return || event->keyval == GDK_KP_Enter)
        button = s->defaultButton;
    else if (event->keyval == GDK_Escape)
        button = s->cancelButton;
    else
        return FALSE;
    if (button == kButtonNone)
        return event->keyval == GDK_Return || event->keyval == GDK_KP_Enter ? FALSE : TRUE;
    if (s->buttons[button])
        gtk_button_clicked(GTK_BUTTON(s->buttons[button]));
    else
        Answer(*s, s->closeBoxAnswer); // the cancel button hidden: as the close box
    return TRUE;
}

GtkWidget *WrappedLabel(const std::string &text, const PangoFontDescription *font, int32_t width) {
    GtkWidget *label = gtk_label_new(text.c_str());
    gtk_label_set_line_wrap(GTK_LABEL(label), TRUE);
    gtk_label_set_line_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
    gtk_label_set_selectable(GTK_LABEL(label), FALSE);
    gtk_misc_set_alignment(GTK_MISC(label), 0, 0);
    gtk_widget_set_size_request(label, width, -1);
    if (font)
        gtk_widget_modify_font(label, const_cast<PangoFontDescription *>(font));
    return label;
}

} // namespace

MessageLayout LayOutMessage(const MessageWindowSpec &spec, int32_t screenWidth) {
    Measure system("System"), small("SmallSystem");
    MessageLayout l{};
    const int32_t textWidth = std::max(system.Width(spec.message), small.Width(spec.explanation));
    int32_t candidate = kIconSize + textWidth + 36;
    const int32_t cap = static_cast<int32_t>(screenWidth * 0.8);
    if (candidate > cap)
        candidate = cap;
    int32_t row = 0;
    for (int32_t b : {kButtonAction, kButtonCancel, kButtonAlternate}) {
        if (!Visible(spec, b))
            continue;
        l.buttonWidth[b] = std::max(system.Width(CaptionOf(spec, b)) + 28, kMinButtonWidth);
        row += l.buttonWidth[b] + (b == kButtonAction ? 0 : kButtonGap);
    }
    // A screen narrower than the buttons still shows the whole row.
    l.width = std::max(candidate, kIconSize + row + 36);
    l.textLeft = kIconSize + 16;
    l.textWidth = l.width - 10 - l.textLeft;
    l.messageTop = 12;
    l.messageHeight = system.Height(spec.message, l.textWidth);
    l.explanationHeight = small.Height(spec.explanation, l.textWidth);
    l.explanationTop = l.messageTop + l.messageHeight + 8;
    int32_t textHeight = l.messageHeight;
    if (l.explanationHeight > 0)
        textHeight += 8 + l.explanationHeight;
    l.height = std::max(textHeight, kIconSize) + 68;
    l.buttonTop = l.height - 41;
    l.buttonHeight = kButtonHeight;
    int32_t x = l.width / 2 - row / 2;
    for (int32_t b : {kButtonAction, kButtonAlternate, kButtonCancel}) {
        if (!l.buttonWidth[b])
            continue;
        l.buttonLeft[b] = x;
        x += l.buttonWidth[b] + kButtonGap;
    }
    return l;
}

int32_t RunMessageWindow(const MessageWindowSpec &spec, MessageWait wait) {
    Showing s;
    s.defaultButton = spec.defaultButton;
    s.cancelButton = spec.cancelButton;
    s.closeBoxAnswer = spec.closeBoxAnswer;
    if (s.defaultButton != kButtonNone &&
        (s.defaultButton < kButtonCancel || s.defaultButton > kButtonAlternate ||
         !Visible(spec, s.defaultButton))) {
        AssertionFailed(kFile, __LINE__, "defaultIndex", "defaultIndex",
                        "The MessageDialog's default button behavior was assigned to an invalid "
                        "button index");
        s.defaultButton = kButtonNone;
    }
    // The cancel behaviour on the hidden cancel button is the close box's.
    if (s.cancelButton != kButtonNone && s.cancelButton != kButtonCancel &&
        (s.cancelButton > kButtonAlternate || !Visible(spec, s.cancelButton))) {
        AssertionFailed(kFile, __LINE__, "cancelIndex", "cancelIndex",
                        "The MessageDialog's cancel button behavior was assigned to an invalid "
                        "button index");
        s.cancelButton = kButtonNone;
    }

    const MessageLayout l = LayOutMessage(spec, gdk_screen_width());
    GtkWidget *window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_title(GTK_WINDOW(window), spec.title.c_str());
    gtk_window_set_modal(GTK_WINDOW(window), TRUE);
    gtk_window_set_resizable(GTK_WINDOW(window), FALSE);
    gtk_window_set_position(GTK_WINDOW(window), GTK_WIN_POS_CENTER);
    gtk_widget_set_size_request(window, l.width, l.height);
    GtkWidget *fixed = gtk_fixed_new();
    gtk_container_add(GTK_CONTAINER(window), fixed);
    if (spec.icon >= kIconNote && spec.icon <= kIconQuestion) {
        GtkWidget *icon = gtk_image_new_from_stock(kStockIcon[spec.icon], GTK_ICON_SIZE_DND);
        gtk_fixed_put(GTK_FIXED(fixed), icon, kIconLeft, kIconTop);
    }
    Measure system("System"), small("SmallSystem");
    gtk_fixed_put(GTK_FIXED(fixed), WrappedLabel(spec.message, system.Font(), l.textWidth),
                  l.textLeft, l.messageTop);
    if (!spec.explanation.empty())
        gtk_fixed_put(GTK_FIXED(fixed), WrappedLabel(spec.explanation, small.Font(), l.textWidth),
                      l.textLeft, l.explanationTop);
    for (int32_t b : {kButtonAction, kButtonAlternate, kButtonCancel}) {
        if (!l.buttonWidth[b])
            continue;
        GtkWidget *button = gtk_button_new_with_label(CaptionOf(spec, b).c_str());
        gtk_widget_set_size_request(button, l.buttonWidth[b], l.buttonHeight);
        gtk_fixed_put(GTK_FIXED(fixed), button, l.buttonLeft[b], l.buttonTop);
        g_signal_connect(button, "clicked", G_CALLBACK(ButtonClicked), &s);
        s.buttons[b] = button;
    }
    if (s.defaultButton != kButtonNone) {
        GtkWidget *button = s.buttons[s.defaultButton];
        GTK_WIDGET_SET_FLAGS(button, GTK_CAN_DEFAULT);
        gtk_widget_grab_default(button);
        gtk_widget_grab_focus(button);
    }
    g_signal_connect(window, "delete-event", G_CALLBACK(CloseBox), &s);
    g_signal_connect(window, "key-press-event", G_CALLBACK(KeyPressed), &s);
    gtk_widget_show_all(window);

    // A quit asked for from a handler ends a language dialog unanswered; a
    // report of the runtime is read whatever is going on.
    while (s.open) {
        if (wait == MessageWait::kToolkitOnly) {
            gtk_main_iteration_do(TRUE);
            continue;
        }
        if (QuitRequested())
            break;
        MainLoopStep(true);
    }
    gtk_widget_destroy(window);
    gdk_flush(); // gone from the screen now, not at the next event
    return s.result;
}

} // namespace kelp
