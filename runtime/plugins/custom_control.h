#pragma once
// Controls of plug-ins: a control object whose pane hands each toolkit event
// to the control's behaviour table.
#include "kelp/plugin.h"

namespace kelp::plugins {

// The control's record in the object, or null for an object that isn't a
// plug-in control.
const KELPcontrol *ControlRecordOf(RuntimeObject *object);

} // namespace kelp::plugins
