#pragma once
#include "kelp/records.h"

namespace kelp {

// The pulses of an open-ended bar so far, or -1 while it has a maximum.
int32_t ProgressBarPulses(RuntimeObject *control);

} // namespace kelp
