// The edit field's pane: widget calls and the router's event work.
//
// Events keep the order a user sees them in: KeyDown when a key goes down
// (its handler may swallow the key), TextChange after the widget changed,
// SelChange only at the next key or button release, so a held arrow key
// gives one SelChange when it is let go.
#include "edit_fields/edit_pane.h"

#include "edit_fields/edit_events.h"
#include "edit_fields/mask.h"
#include "edit_fields/utf8_text.h"

#include "base/soft_library.h"
#include "exceptions/raise.h"
#include "menus/dispatch.h"
#include "objects/object_model.h"
#include "objects/text.h"
#include "strings/kstring.h"
#include "windows/window.h"

#include "kelp/string_functions.h"

#include <algorithm>

namespace kelp {

namespace {

GdkColor ToGdk(int32_t color) {
    GdkColor c{};
    c.red = static_cast<guint16>(((color >> 16) & 0xff) * 257);
    c.green = static_cast<guint16>(((color >> 8) & 0xff) * 257);
    c.blue = static_cast<guint16>((color & 0xff) * 257);
    return c;
}

} // namespace

EditPane *EditPaneOf(RuntimeObject *field) {
    return field ? dynamic_cast<EditPane *>(static_cast<ControlPane *>(Ctl(field)->pane)) : nullptr;
}

EditPane::EditPane(EditFieldRecord *record) : ControlPane(&record->control) {
    mUnbound = record;
    mStyled = record->styled != 0;
    mAcceptTabs = record->acceptTabs != 0;
    if (record->multiLine) {
        GtkWidget *scrolled = gtk_scrolled_window_new(nullptr, nullptr);
        GtkWidget *view = gtk_text_view_new();
        mTextView = GTK_TEXT_VIEW(view);
        mBuffer = gtk_text_view_get_buffer(mTextView);
        gtk_text_view_set_left_margin(mTextView, 2);
        gtk_text_view_set_right_margin(mTextView, 2);
        gtk_widget_show(view);
        gtk_container_add(GTK_CONTAINER(scrolled), view);
        gtk_scrolled_window_set_shadow_type(GTK_SCROLLED_WINDOW(scrolled),
                                            record->border ? GTK_SHADOW_IN : GTK_SHADOW_NONE);
        SetWidget(scrolled);
        SetScrollBars(record->scrollBarHorizontal, record->scrollBarVertical);
        gtk_text_buffer_create_tag(mBuffer, "right justify", "justification", GTK_JUSTIFY_RIGHT,
                                   nullptr);
        gtk_text_buffer_create_tag(mBuffer, "center", "justification", GTK_JUSTIFY_CENTER, nullptr);
        if (mStyled) {
            gtk_text_buffer_create_tag(mBuffer, "bold", "weight", PANGO_WEIGHT_BOLD, nullptr);
            gtk_text_buffer_create_tag(mBuffer, "italic", "style", PANGO_STYLE_ITALIC, nullptr);
            gtk_text_buffer_create_tag(mBuffer, "underline", "underline", PANGO_UNDERLINE_SINGLE,
                                       nullptr);
        }
        g_signal_connect(mBuffer, "changed", G_CALLBACK(OnChanged), this);
    } else {
        SetWidget(gtk_entry_new());
        gtk_entry_set_has_frame(GTK_ENTRY(mWidget), record->border != 0);
        g_signal_connect(mWidget, "changed", G_CALLBACK(OnChanged), this);
    }
    ConnectCommonSignals();
    if (mTextView) // presses on the view, not only on the scrolled window
        g_signal_connect(mTextView, "grab-focus", G_CALLBACK(+[](GtkWidget *, gpointer data) {
                             auto *pane = static_cast<EditPane *>(data);
                             if (!pane->closing && FocusPane() != pane)
                                 SetFocus(pane);
                         }),
                         this);
    g_signal_connect(Inner(), "key-release-event", G_CALLBACK(OnRelease), this);
    g_signal_connect(Inner(), "button-release-event", G_CALLBACK(OnRelease), this);

    mSettingText++;
    SetText(ToUtf8(record->text));
    mSettingText--;
    SetEditable(!record->readOnly);
    SetPassword(record->password);
    SetLimit(record->limitText);
    ApplyFieldFont();
    SetTextColor(record->textColor);
    if (record->backColor != 0xffffff)
        SetBackColor(record->backColor);
    SetAlignment(record->alignment);
    // A mask given before the field existed shapes its text now.
    if (record->mask && record->mask->length > 0)
        FilterEdit(0, 0, std::string());
    gtk_widget_show(mWidget);
    mUnbound = nullptr;
}

EditPane::~EditPane() {
    // The text outlives the pane in the record; so do the buffer's signals
    // not, since the buffer may outlive us in a pending clipboard request.
    if (mBuffer)
        g_signal_handlers_disconnect_matched(mBuffer, G_SIGNAL_MATCH_DATA, 0, 0, nullptr, nullptr,
                                             this);
    if (mTextView)
        g_signal_handlers_disconnect_matched(mTextView, G_SIGNAL_MATCH_DATA, 0, 0, nullptr, nullptr,
                                             this);
    if (EditFieldRecord *record = Record(); record && !mShowingFormat) {
        KelpString text = MakeUtf8(GetText());
        objtext::Release(record->text);
        record->text = text;
    }
}

EditFieldRecord *EditPane::Record() const {
    return mRunControl ? EditRecord(mRunControl) : mUnbound;
}

// ------------------------------------------------------------------ text

std::string EditPane::GetText() const {
    if (!mTextView)
        return gtk_entry_get_text(GTK_ENTRY(mWidget));
    GtkTextIter a, b;
    gtk_text_buffer_get_bounds(mBuffer, &a, &b);
    gchar *text = gtk_text_buffer_get_text(mBuffer, &a, &b, FALSE);
    std::string out(text);
    g_free(text);
    return out;
}

void EditPane::SetText(const std::string &utf8) {
    // One TextChange for the whole replacement, not one for the delete and
    // one for the insert.  New text is raw text, to be formatted afresh.
    mShowingFormat = false;
    mSettingText++;
    if (mTextView)
        gtk_text_buffer_set_text(mBuffer, utf8.data(), static_cast<gint>(utf8.size()));
    else
        gtk_entry_set_text(GTK_ENTRY(mWidget), utf8.c_str());
    mSettingText--;
    FireTextChanged();
}

int32_t EditPane::Length() const {
    if (mTextView)
        return gtk_text_buffer_get_char_count(mBuffer);
    return static_cast<int32_t>(g_utf8_strlen(gtk_entry_get_text(GTK_ENTRY(mWidget)), -1));
}

void EditPane::GetSelection(int32_t *start, int32_t *end) const {
    int s = 0, e = 0;
    if (mTextView) {
        GtkTextIter a, b;
        gtk_text_buffer_get_selection_bounds(mBuffer, &a, &b);
        s = gtk_text_iter_get_offset(&a), e = gtk_text_iter_get_offset(&b);
    } else {
        gtk_editable_get_selection_bounds(GTK_EDITABLE(mWidget), &s, &e);
    }
    *start = std::min(s, e);
    *end = std::max(s, e);
}

void EditPane::SetSelection(int32_t start, int32_t end) {
    const int32_t length = Length();
    start = std::clamp(start, 0, length);
    end = std::clamp(end, 0, length);
    if (mTextView) {
        GtkTextIter a, b;
        gtk_text_buffer_get_iter_at_offset(mBuffer, &a, start);
        gtk_text_buffer_get_iter_at_offset(mBuffer, &b, end);
        gtk_text_buffer_place_cursor(mBuffer, &a);
        gtk_text_buffer_move_mark_by_name(mBuffer, "selection_bound", &b);
    } else {
        gtk_editable_select_region(GTK_EDITABLE(mWidget), start, end);
    }
}

std::string EditPane::SelectedText() const {
    int32_t s, e;
    GetSelection(&s, &e);
    std::string text = GetText();
    size_t a = ByteOffset(text, s), b = ByteOffset(text, e);
    return text.substr(a, b - a);
}

void EditPane::ReplaceSelection(const std::string &utf8) {
    int32_t s, e;
    GetSelection(&s, &e);
    if (FilterEdit(s, e - s, utf8))
        return;
    if (mTextView) {
        gtk_text_buffer_delete_selection(mBuffer, FALSE, TRUE);
        gtk_text_buffer_insert_at_cursor(mBuffer, utf8.data(), static_cast<gint>(utf8.size()));
    } else {
        GtkEditable *editable = GTK_EDITABLE(mWidget);
        gtk_editable_delete_selection(editable);
        gint at = gtk_editable_get_position(editable);
        gtk_editable_insert_text(editable, utf8.data(), static_cast<gint>(utf8.size()), &at);
        gtk_editable_set_position(editable, at);
    }
}

bool EditPane::HidesText() const { return !mTextView && Record() && Record()->password; }

void EditPane::Cut() {
    if (HidesText())
        return; // a password never leaves the field
    if (mTextView)
        gtk_text_buffer_cut_clipboard(mBuffer, gtk_clipboard_get(GDK_SELECTION_CLIPBOARD),
                                      gtk_text_view_get_editable(mTextView));
    else
        gtk_editable_cut_clipboard(GTK_EDITABLE(mWidget));
}

void EditPane::Copy() {
    if (HidesText())
        return;
    if (mTextView)
        gtk_text_buffer_copy_clipboard(mBuffer, gtk_clipboard_get(GDK_SELECTION_CLIPBOARD));
    else
        gtk_editable_copy_clipboard(GTK_EDITABLE(mWidget));
}

bool EditPane::Paste() {
    if (Record() && Record()->readOnly)
        return true;
    // Waiting for another program's text runs the loop, and the insert
    // runs handlers: either may close this very field, so it stays locked.
    if (!LockForEvent())
        return false;
    gchar *text = gtk_clipboard_wait_for_text(gtk_clipboard_get(GDK_SELECTION_CLIPBOARD));
    if (text && !closing)
        ReplaceSelection(text);
    g_free(text);
    return !UnlockAfterEvent();
}

void EditPane::Clear() {
    if (mTextView)
        gtk_text_buffer_delete_selection(mBuffer, TRUE, gtk_text_view_get_editable(mTextView));
    else
        gtk_editable_delete_selection(GTK_EDITABLE(mWidget));
}

void EditPane::SelectAll() { SetSelection(0, Length()); }

void EditPane::InsertAtCaret(const char *utf8) {
    Clear();
    if (mTextView) {
        gtk_text_buffer_insert_at_cursor(mBuffer, utf8, -1);
        GtkTextMark *mark = gtk_text_buffer_get_insert(mBuffer);
        gtk_text_view_scroll_mark_onscreen(mTextView, mark);
    } else {
        GtkEditable *editable = GTK_EDITABLE(mWidget);
        gint at = gtk_editable_get_position(editable);
        gtk_editable_insert_text(editable, utf8, -1, &at);
        gtk_editable_set_position(editable, at);
    }
}

// ------------------------------------------------------------ appearance

void EditPane::SetEditable(bool flag) {
    if (mTextView)
        gtk_text_view_set_editable(mTextView, flag);
    else
        gtk_editable_set_editable(GTK_EDITABLE(mWidget), flag);
}

void EditPane::SetPassword(bool flag) {
    if (!mTextView)
        gtk_entry_set_visibility(GTK_ENTRY(mWidget), !flag);
}

void EditPane::SetLimit(int32_t limit) {
    if (!mTextView)
        gtk_entry_set_max_length(GTK_ENTRY(mWidget), std::clamp(limit, 0, 65535));
}

void EditPane::SetTextColor(int32_t color) {
    GdkColor c = ToGdk(color);
    gtk_widget_modify_text(Inner(), GTK_STATE_NORMAL, &c);
}

void EditPane::SetBackColor(int32_t color) {
    GdkColor c = ToGdk(color);
    gtk_widget_modify_base(Inner(), GTK_STATE_NORMAL, &c);
}

void EditPane::ApplyFieldFont() {
    if (EditFieldRecord *record = Record())
        ApplyFont(Inner(), record->font);
}

void EditPane::SetAlignment(int32_t align) {
    align = std::clamp(align, 0, 2);
    if (mTextView) {
        static const GtkJustification kJustify[] = {GTK_JUSTIFY_LEFT, GTK_JUSTIFY_CENTER,
                                                    GTK_JUSTIFY_RIGHT};
        gtk_text_view_set_justification(mTextView, kJustify[align]);
        return;
    }
    using SetEntryAlignment = void (*)(GtkEntry *, gfloat);
    static auto set = reinterpret_cast<SetEntryAlignment>(
        FindLoadedSymbol("libgtk-x11-2.0.so.0", "gtk_entry_set_alignment"));
    if (set)
        set(GTK_ENTRY(mWidget), align * 0.5f);
}

void EditPane::SetScrollBars(bool horizontal, bool vertical) {
    if (!mTextView)
        return;
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(mWidget),
                                   horizontal ? GTK_POLICY_AUTOMATIC : GTK_POLICY_NEVER,
                                   vertical ? GTK_POLICY_AUTOMATIC : GTK_POLICY_NEVER);
    // Without a horizontal bar long lines wrap, so no text is out of reach.
    gtk_text_view_set_wrap_mode(mTextView, horizontal ? GTK_WRAP_NONE : GTK_WRAP_WORD);
}

// ----------------------------------------------------- lines and positions

int32_t EditPane::ScrollLine() const {
    if (!mTextView)
        return 0;
    GdkRectangle rect;
    gtk_text_view_get_visible_rect(mTextView, &rect);
    GtkTextIter iter;
    gtk_text_view_get_line_at_y(mTextView, &iter, rect.y, nullptr);
    return gtk_text_iter_get_line(&iter);
}

void EditPane::SetScrollLine(int32_t line) {
    if (!mTextView)
        return;
    GtkTextIter iter;
    gtk_text_buffer_get_iter_at_line(mBuffer, &iter, std::max(line, 0));
    gtk_text_view_scroll_to_iter(mTextView, &iter, 0, TRUE, 0, 0);
}

int32_t EditPane::ScrollX() const {
    if (!mTextView)
        return 0;
    GtkAdjustment *h = gtk_scrolled_window_get_hadjustment(GTK_SCROLLED_WINDOW(mWidget));
    return h ? static_cast<int32_t>(gtk_adjustment_get_value(h)) : 0;
}

void EditPane::SetScrollX(int32_t x) {
    if (!mTextView)
        return;
    if (GtkAdjustment *h = gtk_scrolled_window_get_hadjustment(GTK_SCROLLED_WINDOW(mWidget)))
        gtk_adjustment_set_value(
            h, std::clamp<double>(x, gtk_adjustment_get_lower(h),
                                  gtk_adjustment_get_upper(h) - gtk_adjustment_get_page_size(h)));
}

int32_t EditPane::LineAtCharPos(int32_t pos) const {
    if (!mTextView)
        return 0;
    GtkTextIter iter;
    gtk_text_buffer_get_iter_at_offset(mBuffer, &iter, std::max(pos, 0));
    return gtk_text_iter_get_line(&iter);
}

int32_t EditPane::CharPosAtLine(int32_t line) const {
    if (!mTextView)
        return line <= 0 ? 0 : Length();
    if (line < 0)
        return 0;
    if (line >= gtk_text_buffer_get_line_count(mBuffer))
        return gtk_text_buffer_get_char_count(mBuffer);
    GtkTextIter iter;
    gtk_text_buffer_get_iter_at_line(mBuffer, &iter, line);
    return gtk_text_iter_get_offset(&iter);
}

// (x, y) from the field's top left.
int32_t EditPane::CharPosAtXY(int32_t x, int32_t y, bool insertion) const {
    if (!mTextView) {
        gint ox = 0, oy = 0;
        gtk_entry_get_layout_offsets(GTK_ENTRY(mWidget), &ox, &oy);
        PangoLayout *layout = gtk_entry_get_layout(GTK_ENTRY(mWidget));
        int index = 0, trailing = 0;
        pango_layout_xy_to_index(layout, (x - ox) * PANGO_SCALE, (y - oy) * PANGO_SCALE, &index,
                                 &trailing);
        const char *text = pango_layout_get_text(layout);
        int32_t chars = static_cast<int32_t>(g_utf8_pointer_to_offset(text, text + index));
        return std::min(chars + (insertion ? trailing : 0), Length());
    }
    GdkRectangle rect;
    gtk_text_view_get_visible_rect(mTextView, &rect);
    GtkTextIter iter;
    int trailing = 0;
    if (insertion)
        gtk_text_view_get_iter_at_position(mTextView, &iter, &trailing, x + rect.x, y + rect.y);
    else
        gtk_text_view_get_iter_at_location(mTextView, &iter, x + rect.x, y + rect.y);
    return gtk_text_iter_get_offset(&iter) + trailing;
}

// ---------------------------------------------------------------- router

void EditPane::OnChanged(gpointer, gpointer data) {
    auto *pane = static_cast<EditPane *>(data);
    if (pane->mSettingText == 0)
        pane->FireTextChanged();
}

gboolean EditPane::OnRelease(GtkWidget *, GdkEvent *, gpointer data) {
    static_cast<EditPane *>(data)->CheckSelectionChanged();
    return FALSE;
}

void EditPane::FireTextChanged() {
    EditFieldRecord *record = Record();
    if (!record || closing || record->inTextChange)
        return;
    if (!mShowingFormat) {
        record->inTextChange = 1;
        bool alive;
        FireLocked(EditEvents().textChange, &alive);
        if (!alive)
            return;
        record->inTextChange = 0;
    }
    if (FocusPane() != this && !mShowingFormat)
        ApplyFormat();
}

void EditPane::ApplyFormat() {
    EditFieldRecord *record = Record();
    if (!record || !record->format || record->format->length <= 0)
        return;
    int32_t s, e;
    GetSelection(&s, &e);
    record->selStart = s;
    record->selLength = e - s;
    std::string raw = GetText();
    KelpString rawText = MakeUtf8(raw);
    objtext::Release(record->text);
    record->text = rawText;
    // An empty field stays empty rather than showing a formatted zero.
    KelpString formatted = raw.empty() ? nullptr : StringFormat(StringVal(rawText), record->format);
    objtext::Release(record->formattedText);
    record->formattedText = formatted;
    mShowingFormat = true;
    mSettingText++;
    if (mTextView)
        gtk_text_buffer_set_text(mBuffer, ToUtf8(formatted).c_str(), -1);
    else
        gtk_entry_set_text(GTK_ENTRY(mWidget), ToUtf8(formatted).c_str());
    mSettingText--;
}

void EditPane::CheckSelectionChanged() {
    EditFieldRecord *record = Record();
    if (!record || closing)
        return;
    int32_t s, e;
    GetSelection(&s, &e);
    if (s == mLastSelStart && e == mLastSelEnd)
        return;
    mLastSelStart = s, mLastSelEnd = e;
    if (record->inSelChange)
        return;
    record->inSelChange = 1;
    bool alive;
    FireLocked(EditEvents().selChange, &alive);
    if (alive)
        record->inSelChange = 0;
}

bool EditPane::FilterEdit(int32_t start, int32_t removeLength, const std::string &insert) {
    EditFieldRecord *record = Record();
    if (!record || !record->mask || record->mask->length <= 0)
        return false;
    const std::string text = GetText();
    const size_t a = ByteOffset(text, start);
    const size_t b = ByteOffset(text, start + std::max(removeLength, 0));
    const std::string candidate = text.substr(0, a) + insert + text.substr(b);
    MaskOutcome outcome = ApplyMask(candidate, ToUtf8(record->mask));
    if (outcome.result == MaskResult::kInvalidMask) {
        RaiseWithMessage("RuntimeException", kInvalidMaskMessage);
        return true;
    }
    const bool accepted = outcome.result == MaskResult::kAccepted;
    int32_t caret = accepted ? start + CharCount(insert) : CharCount(outcome.text);
    // The literals due next join an insertion at the end, so that typing
    // "123" into "(###)" shows "(123)"; a deletion leaves them out, or
    // Backspace could never take a literal away.
    const bool atEnd = b >= text.size() && (!insert.empty() || removeLength <= 0);
    std::string shown = outcome.text;
    if (accepted && atEnd) {
        shown += outcome.tail;
        caret = CharCount(shown);
    }
    if (shown != text)
        SetText(shown);
    SetSelection(caret, caret);
    if (!accepted) {
        if (FindEventHandler(mRunControl, EditEvents().validationError)) {
            KelpString invalid = MakeUtf8(candidate);
            bool alive;
            FireLocked(EditEvents().validationError, &alive, invalid, CharCount(outcome.text) + 1);
            objtext::Release(invalid);
        } else {
            gdk_beep();
        }
    }
    return true;
}

bool EditPane::KeyDown(int32_t character, int32_t, int32_t modifiers) {
    EditFieldRecord *record = Record();
    if (!record || closing)
        return false;
    // The clipboard keys, so that a paste goes through the mask like typing.
    if (modifiers & kModControl) {
        const int32_t command = character | 0x20;
        if (command != 'c' && command != 'x' && command != 'v' && command != 'a')
            return false;
        if (RunEditCommand(static_cast<char>(command)) && !closing)
            CheckSelectionChanged();
        return true;
    }
    if (FindEventHandler(mRunControl, EditEvents().keyDown)) {
        char byte = static_cast<char>(character);
        KelpString key =
            string::FromBytes(&byte, 1,
                              static_cast<unsigned char>(byte) < 128 ? kEncodingASCII
                                                                     : kSystemDefaultEncoding)
                .ExtractStringStorage();
        bool alive;
        bool taken = FireLocked<uint8_t>(EditEvents().keyDown, &alive, key) != 0;
        objtext::Release(key);
        if (!alive)
            return true;
        if (taken) {
            CheckSelectionChanged();
            return true;
        }
    }
    if (character == 9) {
        if (!mAcceptTabs)
            return false;
        InsertAtCaret("\t");
        return true;
    }
    if ((character == 13 || character == 3) && mTextView) {
        InsertAtCaret("\n");
        return true;
    }
    int32_t s, e;
    GetSelection(&s, &e);
    bool editable = !record->readOnly;
    if (character == 8 && editable)
        return FilterEdit(s == e ? s - 1 : s, s == e ? (s > 0 ? 1 : 0) : e - s, std::string());
    if (character == 127 && editable)
        return FilterEdit(s, s == e ? 1 : e - s, std::string());
    if (character > 31 && character != 127 && editable) {
        char byte = static_cast<char>(character);
        std::string typed =
            static_cast<unsigned char>(byte) < 128
                ? std::string(1, byte)
                : ToUtf8(string::FromBytes(&byte, 1, kSystemDefaultEncoding).Storage());
        return FilterEdit(s, e - s, typed);
    }
    return false;
}

bool EditPane::WantsKey(int32_t character, int32_t) {
    if (character == 9)
        return mAcceptTabs;
    if (character == 13 || character == 3)
        return mTextView != nullptr; // a single line leaves Return to the default button
    return character != 27;
}

void EditPane::GainFocus() {
    EditFieldRecord *record = Record();
    if (!record || closing)
        return;
    if (mShowingFormat) {
        mShowingFormat = false;
        record->inTextChange = 1;
        mSettingText++;
        std::string raw = ToUtf8(record->text);
        if (mTextView)
            gtk_text_buffer_set_text(mBuffer, raw.c_str(), -1);
        else
            gtk_entry_set_text(GTK_ENTRY(mWidget), raw.c_str());
        mSettingText--;
        record->inTextChange = 0;
        SetSelection(record->selStart, record->selStart + record->selLength);
    }
    bool alive;
    FireLocked(EditEvents().gotFocus, &alive);
}

void EditPane::LoseFocus() {
    if (!Record() || closing)
        return;
    bool alive;
    FireLocked(EditEvents().lostFocus, &alive);
    if (alive && !closing && !mShowingFormat)
        ApplyFormat();
}

bool EditPane::RunEditCommand(char command) {
    EditFieldRecord *record = Record();
    if (!record || closing)
        return false;
    int32_t s, e;
    GetSelection(&s, &e);
    switch (command) {
    case 'c': Copy(); break;
    case 'x':
    case 'd':
        // A removal goes through the mask like typing; when the mask made
        // the edit itself, a cut still hands the text to the clipboard.
        if (record->readOnly)
            break;
        if (!FilterEdit(s, e - s, std::string()))
            command == 'x' ? Cut() : Clear();
        else if (command == 'x')
            Copy();
        break;
    case 'v': return Paste();
    case 'a': SelectAll(); break;
    default: break;
    }
    return !closing;
}

void EditPane::EnableMenuItems() {
    EditFieldRecord *record = Record();
    if (!record || closing)
        return;
    bool pasteable = false;
    if (!record->readOnly) {
        // Asking the clipboard's owner runs the loop, which may close us or
        // move the selection: the rest is read once the answer is in.
        if (!LockForEvent())
            return;
        pasteable =
            gtk_clipboard_wait_is_text_available(gtk_clipboard_get(GDK_SELECTION_CLIPBOARD));
        if (UnlockAfterEvent())
            return;
    }
    auto *window = dynamic_cast<Window *>(Root());
    int32_t s, e;
    GetSelection(&s, &e);
    const bool selection = s != e;
    if (selection && !HidesText()) {
        EnableMenuItemsNamed(window, "EditCut");
        EnableMenuItemsNamed(window, "EditCopy");
    }
    if (selection)
        EnableMenuItemsNamed(window, "EditClear");
    if (pasteable)
        EnableMenuItemsNamed(window, "EditPaste");
    EnableMenuItemsNamed(window, "EditSelectAll");
    bool alive;
    FireLocked(EditEvents().enableMenuItems, &alive);
    if (alive && !closing)
        ControlPane::EnableMenuItems();
}

bool EditPane::MenuSelected(RuntimeObject *item) {
    static constexpr struct {
        const char *name;
        char command;
    } kItems[] = {{"EditCut", 'x'},
                  {"EditCopy", 'c'},
                  {"EditPaste", 'v'},
                  {"EditClear", 'd'},
                  {"EditSelectAll", 'a'}};
    const std::string name = MenuItemName(item);
    for (const auto &standard : kItems)
        if (name == standard.name) {
            if (RunEditCommand(standard.command) && !closing)
                CheckSelectionChanged();
            return true;
        }
    return !closing && ControlPane::MenuSelected(item);
}

bool EditPane::MouseDown(int32_t x, int32_t y, int32_t) {
    if (!enabled || closing)
        return false;
    bool alive;
    bool taken =
        FireLocked<uint8_t>(EditEvents().mouseDown, &alive, x - bounds.left, y - bounds.top) != 0;
    return !alive || taken;
}

void EditPane::MouseUp(int32_t x, int32_t y) {
    bool alive;
    if (!closing)
        FireLocked(EditEvents().mouseUp, &alive, x - bounds.left, y - bounds.top);
}

} // namespace kelp
