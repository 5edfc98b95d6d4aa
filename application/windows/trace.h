// A record of what the drill's windows show, for tests that drive the real
// program from outside: with SUMBROOK_TRACE naming a file, each line
// written there is one moment ("open wResults") or one label's text read
// back from its control ("text wResults StaticText1 You scored 3 ...").
// Without the variable nothing is written.
#pragma once

#include "kelp/kelp.h"

#include <initializer_list>

namespace sumbrook::ui {

void TraceEvent(const char *what, RuntimeObject *view);
// The texts of the named StaticText controls of the view, as they stand.
void TraceLabels(RuntimeObject *view, std::initializer_list<const char *> labels);

} // namespace sumbrook::ui
