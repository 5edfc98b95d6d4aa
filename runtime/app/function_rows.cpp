// The application's and the windows' functions as rows of the intrinsic
// function table, the hidden start-up calls among them (their names begin
// with "_": compiled code calls them, a program does not).
#include "app/function_rows.h"

#include "app/application.h"
#include "objects/definitions.h"
#include "windows/runtime_view.h"

#include "kelp/exceptions.h"
#include "kelp/objects.h"
#include "kelp/runloop.h"
#include "kelp/startup.h"
#include "kelp/windows.h"

namespace kelp {
namespace {

const TypeRecord kWindowType{kTypeObjectOf, nullptr, nullptr, 0, &WindowDefinition};
const TypeRecord kApplicationType{kTypeObjectOf, nullptr, nullptr, 0, &ApplicationDefinition};

const ParameterRow kClassName[] = {{"className", &kTypeString}};
const ParameterRow kIndex[] = {{"index", &kTypeInteger}};
const ParameterRow kException[] = {{"error", &kTypePtr}};
const ParameterRow kHandler[] = {
    {"target", &kTypePtr}, {"eventName", &kTypeString}, {"handler", &kTypePtr}};
const ParameterRow kApplication[] = {{"app", &kApplicationType}};
const ParameterRow kConsoleApplication[] = {{"app", &kTypePtr}, {"isService", &kTypeBoolean}};

const MethodRow kRows[] = {
    {"Quit", nullptr, nullptr, 0, KELP_ENTRY(KP_ApplicationQuit)},
    {"UserCancelled", &kTypeBoolean, nullptr, 0, KELP_ENTRY(getUserCancelled)},
    {"WindowCount", &kTypeInteger, nullptr, 0, KELP_ENTRY(getWindowCount)},
    {"Window", &kWindowType, kIndex, 1, KELP_ENTRY(getWindow)},
    {"_GetImplicitWindow", &kWindowType, kClassName, 1, KELP_ENTRY(RuntimeGetImplicitWindow)},
    {"_UnhandledException", nullptr, kException, 1, KELP_ENTRY(RuntimeUnhandledException)},
    {"_InstallInstanceEventHandler", nullptr, kHandler, 3,
     KELP_ENTRY(RuntimeInstallInstanceEventHandler)},
    {"_RuntimeRun", nullptr, nullptr, 0, KELP_ENTRY(RuntimeRun)},
    {"_RuntimeRegisterAppObject", nullptr, kApplication, 1, KELP_ENTRY(RuntimeRegisterAppObject)},
    {"_RuntimeRegisterConsoleAppObject", nullptr, kConsoleApplication, 2,
     KELP_ENTRY(RuntimeRegisterConsoleAppObject)},
};

} // namespace

std::span<const MethodRow> ApplicationFunctionRows() { return kRows; }

} // namespace kelp
