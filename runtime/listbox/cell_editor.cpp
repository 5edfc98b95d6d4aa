#include "listbox/cell_editor.h"

#include "listbox/list_pane.h"
#include "listbox/utf8.h"

#include "objects/definitions.h"

#include "kelp/edit_fields.h"
#include "kelp/objects.h"
#include "kelp/strings.h"

namespace kelp::listbox {

CellEditorPane::CellEditorPane(EditFieldRecord *record, ListPane *list)
    : EditPane(record), mList(list) {}

CellEditorPane::~CellEditorPane() {
    if (mCloseSource)
        g_source_remove(mCloseSource);
}

bool CellEditorPane::KeyDown(int32_t character, int32_t code, int32_t modifiers) {
    if (closing)
        return false;
    if (character == 13 || character == 3 || character == 9 || character == 27) {
        // The editor goes away here: held until the call is over.
        Lock();
        mList->EndEditing(character != 27, true);
        Unlock();
        return true;
    }
    char utf8[8] = {};
    if (character > 0)
        g_unichar_to_utf8(gunichar(character), utf8);
    Lock();
    const bool taken = utf8[0] && mList->EditorKey(utf8);
    const bool gone = closing;
    Unlock();
    if (taken || gone)
        return true;
    return EditPane::KeyDown(character, code, modifiers);
}

// The focus is moving on (a click elsewhere, say): editing ends with the
// text kept, once the move is over, since it may not close a pane midway.
void CellEditorPane::LoseFocus() {
    EditPane::LoseFocus();
    if (!closing && !mCloseSource)
        mCloseSource = g_idle_add(&CloseLater, this);
}

gboolean CellEditorPane::CloseLater(gpointer data) {
    auto *pane = static_cast<CellEditorPane *>(data);
    pane->mCloseSource = 0;
    if (!pane->closing && FocusPane() != pane)
        pane->mList->EndEditing(true, false);
    return FALSE;
}

RuntimeObject *NewCellEditor(ListPane *list, RuntimeObject *listControl, const KelpRect &at,
                             std::string_view text) {
    RuntimeObject *field = RuntimeNewObject(ClassForDefinition(EditFieldDefinition()));
    if (!field)
        return nullptr;
    RuntimeControl *control = Ctl(field), *owner = Ctl(listControl);
    control->view = owner->view;
    control->paneWindow = owner->paneWindow;
    control->bounds = at;
    EditRecord(field)->border = 0; // the cell's own lines frame it
    if (!WindowForControl(control)) {
        RuntimeUnlockObject(field);
        return nullptr;
    }
    auto *pane = new CellEditorPane(EditRecord(field), list);
    control->pane = pane;
    pane->BindControl(field);
    pane->panelIndex = owner->tabPanelIndex + 1;
    KelpString value = MakeUtf8(text);
    editTextSetter(field, 0, value);
    RuntimeUnlockString(value);
    gtk_widget_show(pane->GetWidget());
    gtk_widget_grab_focus(pane->Inner());
    pane->SelectAll();
    return field;
}

} // namespace kelp::listbox
