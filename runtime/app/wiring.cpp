#include "app/wiring.h"

#include "app/application.h"
#include "app/function_rows.h"
#include "app/unhandled_exceptions.h"
#include "exceptions/unhandled.h"
#include "objects/definitions.h"
#include "runloop/main_loop.h"

namespace kelp {

void WireApp() {
    AddIntrinsicClassAccessor(&PollableInterfaceDefinition);
    AddIntrinsicClassAccessor(&ApplicationDefinition);
    AddIntrinsicClassAccessor(&ConsoleApplicationDefinition);
    AddIntrinsicClassAccessor(&ServiceApplicationDefinition);
    AddIntrinsicFunctions(ApplicationFunctionRows());
    SetApplicationLoopClient(RunLoopApplicationClient());
    SetUnhandledHandler(&StandardUnhandledHandler);
}

} // namespace kelp
