#include "dialogs/wiring.h"

#include "base/fatal_report.h"
#include "dialogs/alert.h"

namespace kelp {

void WireDialogs() { SetFatalReportHook(&PresentFatalReport); }

} // namespace kelp
