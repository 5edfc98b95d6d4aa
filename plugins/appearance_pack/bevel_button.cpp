// BevelButton: a self-drawn button with a caption, an optional pop-up menu
// of rows, and three kinds of press (push, toggle, sticky).
#include "pack.h"

#include <string>
#include <vector>

namespace pack {
namespace {

struct MenuRow {
    std::string text;
    bool separator = false;
};

struct BevelData {
    KelpString caption;
    int32_t hasMenu; // 0 none, 1 arrow down at the bottom right, 2 arrow right
    int32_t iconAlign, captionAlign, captionPlacement;
    int16_t menuValue;
    uint8_t value;
    std::vector<MenuRow> *rows;
    KelpString textFont;
    int32_t textSize;
    uint8_t bold, italic, underline;
    void *iconDescription;
    RuntimeObject *icon;
    int32_t iconDX, iconDY, captionDelta, bevel, buttonType;
    std::vector<RuntimeObject *> *receivers; // counted
    uint8_t pressed, mouseInside, eventHandledDown;
};

BevelData *D(RuntimeObject *self) { return Data<BevelData>(self); }

void *(*gInterfaceRoutine)(RuntimeObject *, const char *, const char *);
KelpString (*gBuildString)(const char *, int32_t);

KELPevent gEvents[] = {
    {"MouseUp(X As Integer, Y As Integer) As Boolean", nullptr},
    {"MouseDown(X As Integer, Y As Integer) As Boolean", nullptr},
    {"Action", nullptr},
};

std::string Text(KelpString s) {
    return s && s->buffer
               ? std::string(reinterpret_cast<const char *>(s->buffer) + 1, size_t(s->length))
               : std::string();
}

void SwapString(KelpString &slot, KelpString value) {
    if (value)
        host.lockString(value);
    if (slot)
        host.unlockString(slot);
    slot = value;
}

void CaptionSetter(RuntimeObject *self, int32_t, KelpString value) {
    SwapString(D(self)->caption, value);
    host.invalidate(self);
}
void FontSetter(RuntimeObject *self, int32_t, KelpString value) {
    SwapString(D(self)->textFont, value);
}
void IconSetter(RuntimeObject *self, int32_t, RuntimeObject *picture) {
    if (picture)
        host.lockObject(picture);
    if (D(self)->icon)
        host.unlockObject(D(self)->icon);
    D(self)->icon = picture;
    host.invalidate(self);
}
int32_t MenuValueGetter(RuntimeObject *self, int32_t) { return D(self)->menuValue; }
void MenuValueSetter(RuntimeObject *self, int32_t, int32_t value) {
    D(self)->menuValue = int16_t(value);
}

#define FIELD(f) int32_t(offsetof(BevelData, f))
void *const kDefault = KELP_DEFAULT_ACCESSOR;
template <typename F> void *Code(F f) { return reinterpret_cast<void *>(f); }

KELPproperty gProperties[] = {
    {"Appearance", "Caption", "String", 0, kDefault, Code(CaptionSetter), FIELD(caption), nullptr,
     0, nullptr},
    {"Appearance", "CaptionAlign", "Integer", 1, kDefault, kDefault, FIELD(captionAlign), nullptr,
     4, nullptr},
    {"Appearance", "CaptionPlacement", "Integer", 1, kDefault, kDefault, FIELD(captionPlacement),
     nullptr, 6, nullptr},
    {"Appearance", "CaptionDelta", "Integer", 1, kDefault, kDefault, FIELD(captionDelta), nullptr,
     0, nullptr},
    {"Appearance", "Icon", "Picture", 1, kDefault, Code(IconSetter), FIELD(icon), nullptr, 0,
     nullptr},
    {"Appearance", "IconAlign", "Integer", 1, kDefault, kDefault, FIELD(iconAlign), nullptr, 10,
     nullptr},
    {"Appearance", "IconDX", "Integer", 1, kDefault, kDefault, FIELD(iconDX), nullptr, 0, nullptr},
    {"Appearance", "IconDY", "Integer", 1, kDefault, kDefault, FIELD(iconDY), nullptr, 0, nullptr},
    {"Appearance", "Bevel", "Integer", 1, kDefault, kDefault, FIELD(bevel), nullptr, 8, nullptr},
    {"Appearance", "HasMenu", "Integer", 1, kDefault, kDefault, FIELD(hasMenu), nullptr, 3,
     nullptr},
    {"Initial State", "Value", "Boolean", 1, kDefault, kDefault, FIELD(value), nullptr, 0, nullptr},
    {"Initial State", "MenuValue", "Integer", 1, Code(MenuValueGetter), Code(MenuValueSetter),
     FIELD(menuValue), nullptr, 0, nullptr},
    {"Behavior", "ButtonType", "integer", 1, kDefault, kDefault, FIELD(buttonType), nullptr, 3,
     nullptr},
    {"Font", "TextFont", "string", 1, kDefault, Code(FontSetter), FIELD(textFont), nullptr, 0,
     nullptr},
    {"Font", "TextSize", "integer", 1, kDefault, kDefault, FIELD(textSize), nullptr, 0, nullptr},
    {"Font", "Bold", "boolean", 1, kDefault, kDefault, FIELD(bold), nullptr, 0, nullptr},
    {"Font", "Italic", "boolean", 1, kDefault, kDefault, FIELD(italic), nullptr, 0, nullptr},
    {"Font", "Underline", "boolean", 1, kDefault, kDefault, FIELD(underline), nullptr, 0, nullptr},
};

// ------------------------------------------------------------------ rows

void DeleteAllRows(RuntimeObject *self) { D(self)->rows->clear(); }
void AddRow(RuntimeObject *self, KelpString text) { D(self)->rows->push_back({Text(text), false}); }
void AddSeparator(RuntimeObject *self) { D(self)->rows->push_back({"", true}); }
void RemoveRow(RuntimeObject *self, int32_t row) {
    auto &rows = *D(self)->rows;
    if (row >= 0 && size_t(row) < rows.size())
        rows.erase(rows.begin() + row);
}
void InsertRow(RuntimeObject *self, int32_t row, KelpString text) {
    auto &rows = *D(self)->rows;
    if (row < 0 || size_t(row) >= rows.size())
        rows.push_back({Text(text), false}); // past the end: appended
    else
        rows.insert(rows.begin() + row, MenuRow{Text(text), false});
}
KelpString ListGetter(RuntimeObject *self, int32_t row) {
    auto &rows = *D(self)->rows;
    if (row < 0 || size_t(row) >= rows.size() || rows[size_t(row)].text.empty())
        return nullptr;
    const std::string &t = rows[size_t(row)].text;
    return gBuildString ? gBuildString(t.data(), int32_t(t.size())) : nullptr;
}
void ListSetter(RuntimeObject *self, int32_t row, KelpString text) {
    auto &rows = *D(self)->rows;
    if (row >= 0 && size_t(row) < rows.size())
        rows[size_t(row)].text = Text(text);
}
void AddReceiver(RuntimeObject *self, RuntimeObject *receiver) {
    if (!receiver)
        return;
    host.lockObject(receiver);
    D(self)->receivers->insert(D(self)->receivers->begin(), receiver); // newest first
}
void RemoveReceiver(RuntimeObject *self, RuntimeObject *receiver) {
    auto &list = *D(self)->receivers;
    for (auto it = list.begin(); it != list.end(); ++it)
        if (*it == receiver) {
            list.erase(it);
            host.unlockObject(receiver);
            return;
        }
}

KELPmethodDefinition gMethods[] = {
    {Code(DeleteAllRows), KELP_NO_SETTER, "DeleteAllRows", nullptr},
    {Code(AddRow), KELP_NO_SETTER, "AddRow(text As String)", nullptr},
    {Code(AddSeparator), KELP_NO_SETTER, "AddSeparator", nullptr},
    {Code(RemoveRow), KELP_NO_SETTER, "RemoveRow(row As Integer)", nullptr},
    {Code(InsertRow), KELP_NO_SETTER, "InsertRow(row As Integer, text As String)", nullptr},
    {Code(ListGetter), Code(ListSetter), "List(row As Integer) As String", nullptr},
    {Code(AddReceiver), KELP_NO_SETTER,
     "addActionNotificationReceiver(receiver As actionNotificationReceiver)", nullptr},
    {Code(RemoveReceiver), KELP_NO_SETTER,
     "removeActionNotificationReceiver(receiver As actionNotificationReceiver)", nullptr},
};

// --------------------------------------------------------------- drawing

std::string CaptionText(KelpString caption) {
    const std::string raw = Text(caption);
    std::string out;
    for (size_t i = 0; i < raw.size(); ++i) {
        if (raw[i] != '&')
            out += raw[i];
        else if (i + 1 < raw.size() && raw[i + 1] == '&')
            out += '&', ++i;
    }
    return out;
}

void Draw(RuntimeObject *self, RuntimeObject *graphics, int x, int y) {
    BevelData *d = D(self);
    if (d->bevel == 3 || d->bevel == 5 || d->bevel == 6)
        d->bevel = 0;
    if (d->bevel == 7)
        d->bevel = 0, d->buttonType = 1;
    Canvas c(self, graphics);
    if (!c.Ready())
        return;
    const Box b = BoundsOf(self);
    const bool enabled = host.enabled(self) != 0;
    const bool down = d->pressed || d->value;
    const GtkStyle *s = c.Style();
    c.Colour(down             ? s->bg[GTK_STATE_ACTIVE]
             : !enabled       ? s->bg[GTK_STATE_INSENSITIVE]
             : d->mouseInside ? s->bg[GTK_STATE_PRELIGHT]
                              : s->bg[GTK_STATE_NORMAL]);
    c.Fill(x, y, b.w - 1, b.h - 1);
    const int L = x + 2, T = y + 2, R = x + b.w - 2, B = y + b.h - 2;
    // The icon at its own size, placed by IconAlign.
    int iconX = 0, iconY = 0, iconW = 0, iconH = 0;
    if (d->icon) {
        host.propertyInt(d->icon, "Width", &iconW);
        host.propertyInt(d->icon, "Height", &iconH);
        iconX = L + d->iconDX;
        iconY = T + (B - T - iconH) / 2;
        switch (d->iconAlign) {
        case 1: iconX = L + (R - L - iconW) / 2; break;
        case 3: iconX = R - iconW - d->iconDX; break;
        case 4: iconY = T + d->iconDY; break;
        case 5: iconY = B - d->iconDY; break;
        case 6: iconX = L + d->iconDX, iconY = T + d->iconDY; break;
        case 7: iconX = L + d->iconDX, iconY = B - iconH - d->iconDY; break;
        case 8: iconX = R - iconW - d->iconDX, iconY = T + d->iconDY; break;
        case 9: iconX = R - iconW - d->iconDX, iconY = B - iconH - d->iconDY; break;
        default: break;
        }
        host.drawPicture(c.Graphics(), d->icon, iconX, iconY, iconW, iconH, 0, 0, iconW, iconH);
    }
    c.Grey(0);
    c.Frame(x, y, b.w - 1, b.h - 1);
    c.Grey(down ? kBevelGrey : kWhite);
    c.Line(x + 1, y + 1, x + b.w - 3, y + 1);
    c.Line(x + 1, y + 1, x + 1, y + b.h - 3);
    c.Grey(down ? kWhite : kBevelGrey);
    c.Line(x + b.w - 2, y + 1, x + b.w - 2, y + b.h - 2);
    c.Line(x + 1, y + b.h - 2, x + b.w - 2, y + b.h - 2);

    const std::string font = Text(d->textFont);
    const std::string family = font.empty() || font == "System" ? "Sans" : font;
    const int size = d->textSize < 1 ? 9 : d->textSize - 3;
    PangoFontDescription *desc =
        pango_font_description_from_string((family + " " + std::to_string(size)).c_str());
    if (d->bold)
        pango_font_description_set_weight(desc, PangoWeight(700));
    if (d->italic)
        pango_font_description_set_style(desc, PANGO_STYLE_ITALIC);
    PangoLayout *layout = pango_layout_new(gdk_pango_context_get());
    pango_layout_set_font_description(layout, desc);
    const std::string text = CaptionText(d->caption);
    pango_layout_set_text(layout, text.c_str(), int(text.size()));
    int tw = 0, th = 0;
    pango_layout_get_pixel_size(layout, &tw, &th);
    int tx = L + (R - L - tw) / 2;
    int ty = T + (B - T - th) / 2;
    // Beside the icon, below or above it; else by CaptionAlign.
    const int placement = d->icon ? d->captionPlacement : 0;
    if (placement == 4)
        ty = iconY + iconH + 2;
    else if (placement == 5)
        ty = iconY - 2 - th;
    if (placement == 2)
        tx = iconX + iconW + d->captionDelta;
    else if (placement == 3)
        tx = iconX - d->captionDelta - tw;
    else if (d->captionAlign == 1)
        tx = R - d->captionDelta - tw;
    else if (d->captionAlign == 0 || d->captionAlign == 2)
        tx = L + d->captionDelta;
    if (enabled)
        c.Grey(0);
    else
        c.Colour(s->fg[GTK_STATE_INSENSITIVE]);
    gdk_draw_layout(c.Drawable(), c.GC(), tx, ty, layout);
    g_object_unref(layout);
    pango_font_description_free(desc);
    if (d->hasMenu == 1)
        DrawPopupArrow(c, 3, R - 10, B - 6, enabled);
    else if (d->hasMenu == 2)
        DrawPopupArrow(c, 0, R - 6, B - 10, enabled);
}
void Redraw(RuntimeObject *self, RuntimeObject *g) { Draw(self, g, 0, 0); }
void DrawOffscreen(RuntimeObject *self, RuntimeObject *g) {
    const Box b = BoundsOf(self);
    int32_t ox = 0, oy = 0;
    host.graphicsOrigin(g, &ox, &oy);
    Draw(self, g, b.x - ox, b.y - oy);
}

// ------------------------------------------------------------------ press

void BevelAction(RuntimeObject *self) {
    for (RuntimeObject *r : *D(self)->receivers)
        if (void *code = gInterfaceRoutine
                             ? gInterfaceRoutine(r, "actionNotificationReceiver", "PerformAction")
                             : nullptr)
            reinterpret_cast<void (*)(RuntimeObject *)>(code)(r);
    Fire(self, gEvents[2]);
}
void ActionEvent(RuntimeObject *self, int32_t) { BevelAction(self); }

bool Inside(RuntimeObject *self, int32_t x, int32_t y, bool edges) {
    const Box b = BoundsOf(self);
    const int e = edges ? 1 : 0;
    return x >= b.x && x < b.x + b.w + e && y >= b.y && y < b.y + b.h + e;
}

int32_t gChosenRow = -1; // the menu's choice; one menu is open at a time

void OnActivate(GtkMenuItem *, gpointer row) { gChosenRow = GPOINTER_TO_INT(row); }

void ShowMenu(RuntimeObject *self) {
    BevelData *d = D(self);
    if (d->rows->empty())
        return; // nothing to pop up; pressed stays until the button comes up
    GtkWidget *menu = gtk_menu_new();
    for (size_t i = 0; i < d->rows->size(); ++i) {
        const MenuRow &row = (*d->rows)[i];
        GtkWidget *item;
        if (row.separator) {
            item = gtk_separator_menu_item_new();
        } else {
            if (int32_t(i) == d->menuValue) {
                item = gtk_check_menu_item_new_with_label(row.text.c_str());
                gtk_check_menu_item_set_active(GTK_CHECK_MENU_ITEM(item), TRUE);
            } else {
                item = gtk_menu_item_new_with_label(row.text.c_str());
            }
            g_signal_connect(item, "activate", G_CALLBACK(OnActivate), GINT_TO_POINTER(int(i)));
        }
        gtk_widget_show(item);
        gtk_menu_shell_append(GTK_MENU_SHELL(menu), item);
    }
    gChosenRow = -1;
    GdkEvent *event = gtk_get_current_event();
    const guint button = event && event->type == GDK_BUTTON_PRESS ? event->button.button : 0;
    gtk_menu_popup(GTK_MENU(menu), nullptr, nullptr, nullptr, nullptr, button,
                   gtk_get_current_event_time());
    if (event)
        gdk_event_free(event);
    while (GTK_WIDGET_VISIBLE(menu))
        gtk_main_iteration_do(FALSE);
    if (GtkWidget *w = static_cast<GtkWidget *>(host.handle(self)); w && w->window) {
        int px = 0, py = 0;
        gdk_window_get_pointer(w->window, &px, &py, nullptr);
        const Box b = BoundsOf(self);
        d->mouseInside = px >= 0 && py >= 0 && px < b.w && py < b.h;
    }
    d->pressed = 0;
    Redraw(self, nullptr);
    if (gChosenRow != -1) {
        d->menuValue = int16_t(gChosenRow);
        BevelAction(self);
    }
    gtk_widget_destroy(menu);
}

int32_t MouseDown(RuntimeObject *self, int32_t x, int32_t y) {
    if (!host.enabled(self))
        return 1;
    BevelData *d = D(self);
    d->eventHandledDown = FireMouse(self, gEvents[1], x, y);
    if (d->eventHandledDown) {
        d->pressed = 0;
        return 1;
    }
    d->pressed = 1;
    Redraw(self, nullptr);
    if (d->hasMenu != 0)
        ShowMenu(self);
    return 1;
}
void MouseDrag(RuntimeObject *self, int32_t x, int32_t y) {
    BevelData *d = D(self);
    if (d->hasMenu != 0 || !host.enabled(self) || d->eventHandledDown)
        return;
    const uint8_t inside = Inside(self, x, y, false);
    if (inside != d->pressed) {
        d->pressed = inside;
        Redraw(self, nullptr);
    }
}
void MouseUp(RuntimeObject *self, int32_t x, int32_t y) {
    BevelData *d = D(self);
    if (!host.enabled(self))
        return;
    if (d->hasMenu != 0) {
        d->pressed = 0;
        Redraw(self, nullptr);
        d->eventHandledDown = 0;
        return;
    }
    if (d->pressed) {
        d->pressed = 0;
        if (d->buttonType == 1)
            d->value = !d->value;
        else if (d->buttonType == 2)
            d->value = 1;
    }
    Redraw(self, nullptr);
    if (!d->eventHandledDown && Inside(self, x, y, true))
        BevelAction(self);
    else if (d->eventHandledDown)
        FireMouse(self, gEvents[0], x, y);
    d->eventHandledDown = 0;
}
void MouseEnter(RuntimeObject *self) {
    D(self)->mouseInside = 1;
    host.invalidate(self);
}
void MouseExit(RuntimeObject *self) {
    D(self)->mouseInside = 0;
    host.invalidate(self);
}

void Constructor(RuntimeObject *self) {
    BevelData *d = D(self);
    d->rows = new std::vector<MenuRow>();
    d->receivers = new std::vector<RuntimeObject *>();
    d->caption = host.defaultCaption();
    d->textFont = host.defaultFont();
    d->textSize = host.defaultFontSize();
    d->captionAlign = 3;
    d->captionPlacement = 1;
    d->mouseInside = d->eventHandledDown = 0;
}
void Destructor(RuntimeObject *self) {
    BevelData *d = D(self);
    SwapString(d->caption, nullptr);
    SwapString(d->textFont, nullptr);
    if (d->icon)
        host.unlockObject(d->icon);
    d->icon = nullptr;
    for (RuntimeObject *r : *d->receivers)
        host.unlockObject(r);
    delete d->receivers;
    delete d->rows;
    d->receivers = nullptr;
    d->rows = nullptr;
}

KELPcontrolBehaviour gBehaviour = {
    .constructor = Constructor,
    .destructor = Destructor,
    .redraw = Redraw,
    .mouseDown = MouseDown,
    .mouseDrag = MouseDrag,
    .mouseUp = MouseUp,
    .close = Nothing,
    .drawOffscreen = DrawOffscreen,
    .mouseEnter = MouseEnter,
    .mouseExit = MouseExit,
    .stateChanged = NothingWithCode,
    .actionEvent = ActionEvent,
};

KELPcontrol gControl = {7,
                        "BevelButton",
                        sizeof(BevelData),
                        0x1D8,
                        0,
                        0,
                        60,
                        22,
                        gProperties,
                        18,
                        gMethods,
                        8,
                        gEvents,
                        3,
                        &gBehaviour,
                        0,
                        nullptr,
                        0,
                        nullptr};

} // namespace

void ResolveBevelButtonCalls(KELPResolver resolve) {
    gInterfaceRoutine = reinterpret_cast<void *(*)(RuntimeObject *, const char *, const char *)>(
        resolve("GetInterfaceRoutine"));
    gBuildString =
        reinterpret_cast<KelpString (*)(const char *, int32_t)>(resolve("KELPBuildString"));
}

KELPcontrol *BevelButtonControl() { return &gControl; }

} // namespace pack
