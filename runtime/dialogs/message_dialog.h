#pragma once
// The language's MessageDialog: the properties a program sets, shown as
// the message window, and the simple MsgBox forms.
#include "kelp/records.h"

#include <span>

namespace kelp {

struct ObjectDefinition;
struct MessageWindowSpec;

struct MessageDialogRecord {
    RuntimeObject object;
    RuntimeObject *actionButton, *cancelButton, *alternateButton; // owned
    int32_t icon;                                                 // -1 to 3
    KelpString title, message, explanation;
    uint8_t cancelVisible, alternateVisible;
    KelpString actionCaption, cancelCaption, alternateCaption; // empty: the default
    int32_t defaultIndex, cancelIndex;                         // a button's number, or -1
    RuntimeObject *parent; // for the length of ShowModalWithin, not counted
};

struct MessageButtonRecord {
    RuntimeObject object;
    RuntimeObject *dialog; // not counted; null once the dialog has gone
    int32_t number;        // 0 cancel, 1 action, 2 alternate
};

ObjectDefinition *MessageDialogDefinition();
// MessageDialogButton and its three subclasses.
std::span<ObjectDefinition *(*const)()> MessageButtonDefinitions();

// MsgBox with flags: the window's buttons, default and icon from the flags,
// and the result number of the button pressed (-1: none was).
void ApplyVBFlags(MessageWindowSpec &spec, int32_t flags);
int32_t VBMsgBoxResult(int32_t flags, int32_t button);

} // namespace kelp
