#include "timers/wiring.h"

#include "objects/definitions.h"
#include "timers/timer.h"

namespace kelp {

void WireTimers() { AddIntrinsicClassAccessor(&TimerDefinition); }

} // namespace kelp
