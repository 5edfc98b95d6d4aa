#pragma once
// What a window asks of a pane that can be its default or cancel button:
// Return and Enter press the default button, Escape the cancel button.  The
// button controls implement it; the window finds them by walking its panes.
#include "panes/pane.h"

namespace kelp {

class ButtonRole {
public:
    virtual ~ButtonRole() = default;
    virtual bool IsDefaultButton() const = 0;
    virtual bool IsCancelButton() const = 0;
    // The button's action at once, whether it is enabled or not.
    virtual void Press() = 0;
};

// The first pane of the tree (creation order) that is a default (or cancel)
// button and is enabled and shown, or null.
ButtonRole *FindDefaultButton(PaneRoot *root);
ButtonRole *FindCancelButton(PaneRoot *root);

} // namespace kelp
