#include "app/wiring.h"

#include "app/application.h"
#include "app/function_rows.h"
#include "app/unhandled_exceptions.h"
#include "exceptions/unhandled.h"
#include "menus/dispatch.h"
#include "objects/definitions.h"
#include "panes/pane.h"
#include "runloop/main_loop.h"

namespace kelp {

void WireApp() {
    AddIntrinsicClassAccessor(&PollableInterfaceDefinition);
    AddIntrinsicClassAccessor(&ApplicationDefinition);
    AddIntrinsicClassAccessor(&ConsoleApplicationDefinition);
    AddIntrinsicClassAccessor(&ServiceApplicationDefinition);
    AddIntrinsicFunctions(ApplicationFunctionRows());
    SetApplicationLoopClient(RunLoopApplicationClient());
    SetApplicationMenuClient(MenusApplicationClient());
    SetUnhandledHandler(&StandardUnhandledHandler);
    SetApplicationCursorSource(&ApplicationCursor);
}

} // namespace kelp
