#pragma once
// Controls of plug-ins: a control object whose pane hands each toolkit event
// to the control's behaviour table.
#include "kelp/plugin.h"

namespace kelp::plugins {

// The control's record in the object, or null for an object that isn't a
// plug-in control.
const KELPcontrol *ControlRecordOf(RuntimeObject *object);

// For a control with the flag KELP_CONTROL_STORED_POSITION: Left and Top of
// the class, and of every class made from it so far, read and write the
// stored bounds as they are, in window coordinates, where other controls
// count from the container view they lie in.
void AnswerStoredPosition(RuntimeClass *control);

} // namespace kelp::plugins
