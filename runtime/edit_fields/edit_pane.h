#pragma once
// The pane of an EditField and the router's work in one class: the widget
// calls, the key filter, the mask, the Format round trip on focus, and the
// buffer's tags as a store of style runs.
#include "edit_fields/edit_field.h"

#include <gtk/gtk.h>

#include <string>
#include <vector>

namespace kelp {

class EditPane : public ControlPane, public StyledTextDelegate {
public:
    explicit EditPane(EditFieldRecord *record);
    ~EditPane() override;

    bool IsMultiLine() const { return mTextView != nullptr; }
    GtkWidget *Inner() const { return mTextView ? GTK_WIDGET(mTextView) : mWidget; }

    // --- text, UTF-8, positions in characters
    std::string GetText() const;
    void SetText(const std::string &utf8) override;
    int32_t Length() const;
    void GetSelection(int32_t *start, int32_t *end) const;
    void SetSelection(int32_t start, int32_t end);
    std::string SelectedText() const;
    // Replaces the selection as typing would: through the mask, if any.
    void ReplaceSelection(const std::string &utf8);
    void Cut();
    void Copy();
    // False when the field closed meanwhile: touch nothing more.
    bool Paste();
    void Clear();
    void SelectAll();

    // --- appearance
    void SetEditable(bool flag);
    void SetPassword(bool flag);
    void SetLimit(int32_t limit);
    void SetTextColor(int32_t color);
    void SetBackColor(int32_t color);
    void ApplyFieldFont();
    void SetAlignment(int32_t align);
    void SetScrollBars(bool horizontal, bool vertical);

    // --- lines and positions
    int32_t ScrollLine() const;
    void SetScrollLine(int32_t line);
    int32_t ScrollX() const;
    void SetScrollX(int32_t x);
    int32_t LineAtCharPos(int32_t pos) const;
    int32_t CharPosAtLine(int32_t line) const;
    int32_t CharPosAtXY(int32_t x, int32_t y, bool insertion) const;

    // --- styles over the selection
    bool IsStyled() const { return mStyled && mTextView; }
    std::string StyleData();
    void SetTextAndStyle(const std::string &utf8, std::string_view style);

    // --- StyledTextDelegate: the buffer as a store of runs
    void SetAttribute(int32_t start, int32_t length, StyleKind kind, int32_t value,
                      const std::string &font) override;
    int32_t GetAttribute(int32_t start, int32_t length, StyleKind kind, bool *mixed,
                         std::string *font) override;
    int32_t RunCount() override;
    bool GetRun(int32_t index, StyleRunValue *run, int32_t *start) override;
    bool InsertRun(const StyleRunValue &run, int32_t index) override;
    void AppendRun(const StyleRunValue &run) override;
    bool RemoveRun(int32_t index) override;
    int32_t GetAlignment(int32_t start, int32_t length) override;
    void SetAlignment(int32_t start, int32_t length, int32_t align) override;
    std::string Text() override { return GetText(); }

    // --- the router: events and the filter
    void CheckSelectionChanged();
    // Mask is applied to the edit (start, removeLength, insert); true when
    // the mask took the edit over, so the toolkit must not make it.
    bool FilterEdit(int32_t start, int32_t removeLength, const std::string &insert);
    void FireTextChanged();
    // Shows FormattedText while the field has no focus.
    void ApplyFormat();
    bool ShowingFormat() const { return mShowingFormat; }

    // --- SubPane
    bool KeyDown(int32_t character, int32_t code, int32_t modifiers) override;
    bool WantsKey(int32_t character, int32_t modifiers) override;
    void GainFocus() override;
    void LoseFocus() override;
    bool MouseDown(int32_t x, int32_t y, int32_t modifiers) override;
    void MouseUp(int32_t x, int32_t y) override;
    // The standard Edit items this field can serve are switched on before
    // the field's own EnableMenuItems runs, so its handler has the last word.
    void EnableMenuItems() override;
    // EditCut, EditCopy, EditPaste, EditClear and EditSelectAll act on this
    // field; other items go on to the holder.
    bool MenuSelected(RuntimeObject *item) override;

private:
    // A single-line password field shows bullets: its text never leaves it.
    bool HidesText() const;
    // The edit commands the keys and the Edit items share: 'x' cut, 'c'
    // copy, 'v' paste, 'd' clear, 'a' select all.  False when the field
    // closed meanwhile: touch nothing more.
    bool RunEditCommand(char command);
    EditFieldRecord *Record() const;
    void InsertAtCaret(const char *utf8);
    void Iters(int32_t start, int32_t length, GtkTextIter *a, GtkTextIter *b) const;
    // The style of the character at `iter`, its text left empty.
    StyleRunValue StyleAt(const GtkTextIter &iter) const;
    std::vector<StyleRunValue> Runs(std::vector<int32_t> *starts) const;
    void ApplyStyle(int32_t start, int32_t length, const StyleRunValue &style);
    void RemoveTagsWithPrefix(GtkTextIter *a, GtkTextIter *b, const char *prefix);
    GtkTextTag *Tag(const std::string &name, const char *property, const char *value);

    static void OnChanged(gpointer, gpointer data);
    static gboolean OnRelease(GtkWidget *, GdkEvent *, gpointer data);

    GtkTextView *mTextView = nullptr; // null for a single line
    GtkTextBuffer *mBuffer = nullptr; // the view's
    bool mStyled = false;
    bool mAcceptTabs = false;
    int32_t mLastSelStart = 0, mLastSelEnd = 0;
    int32_t mSettingText = 0;            // our own changes: one TextChange
    bool mShowingFormat = false;         // the widget shows FormattedText
    EditFieldRecord *mUnbound = nullptr; // the record while the constructor runs
};

EditPane *EditPaneOf(RuntimeObject *field);

} // namespace kelp
