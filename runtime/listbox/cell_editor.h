#pragma once
// The editor of a list cell: a real EditField of the language laid over the
// cell, so a program reaches it through ActiveCell like any other field.
// Return and Tab end editing and keep the text, Escape ends it and keeps the
// old one, and the field losing the focus (a click elsewhere) keeps the text.
#include "edit_fields/edit_pane.h"

namespace kelp::listbox {

class ListPane;

class CellEditorPane : public EditPane {
public:
    CellEditorPane(EditFieldRecord *record, ListPane *list);
    ~CellEditorPane() override;

    bool KeyDown(int32_t character, int32_t code, int32_t modifiers) override;
    void LoseFocus() override;

private:
    static gboolean CloseLater(gpointer data);

    ListPane *mList;
    guint mCloseSource = 0; // the idle call that ends editing after a focus loss
};

// A new EditField over the rectangle (window coordinates) of the list's
// window, holding `text`, focused; the caller's reference.  Null when the
// list has no window.
RuntimeObject *NewCellEditor(ListPane *list, RuntimeObject *listControl, const KelpRect &at,
                             std::string_view text);

} // namespace kelp::listbox
