#include "panes/button_role.h"

#include "panes/pane_root.h"

namespace kelp {
namespace {

ButtonRole *FindButton(PaneRoot *root, bool wantDefault) {
    if (!root)
        return nullptr;
    for (SubPane *pane : root->PanesInCreationOrder()) {
        auto *button = dynamic_cast<ButtonRole *>(pane);
        if (!button || !pane->enabled || !pane->visible || pane->closing)
            continue;
        if (wantDefault ? button->IsDefaultButton() : button->IsCancelButton())
            return button;
    }
    return nullptr;
}

} // namespace

ButtonRole *FindDefaultButton(PaneRoot *root) { return FindButton(root, true); }
ButtonRole *FindCancelButton(PaneRoot *root) { return FindButton(root, false); }

} // namespace kelp
