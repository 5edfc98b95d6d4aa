#include "dialogs/wiring.h"

#include "kelp/dialogs.h"

#include "base/fatal_report.h"
#include "dialogs/alert.h"
#include "dialogs/file_dialogs.h"
#include "dialogs/keyboard.h"
#include "dialogs/message_dialog.h"
#include "objects/definitions.h"

namespace kelp {

void WireDialogs() {
    SetFatalReportHook(&PresentFatalReport);
    AddIntrinsicClassAccessor(&MessageDialogDefinition);
    for (auto accessor : MessageButtonDefinitions())
        AddIntrinsicClassAccessor(accessor);
    for (auto accessor : FileDialogDefinitions())
        AddIntrinsicClassAccessor(accessor);
    AddIntrinsicClassAccessor(&KeyboardDefinition);
    static const TypeRecord keyboardType{kTypeObjectOf, nullptr, nullptr, 0, &KeyboardDefinition};
    static const ParameterRow msgBoxParams[] = {{"text", &kTypeString}};
    static const ParameterRow vbParams[] = {
        {"text", &kTypeString}, {"flags", &kTypeInteger}, {"title", &kTypeString}};
    static const ParameterRow urlParams[] = {{"url", &kTypeString}};
    static const MethodRow functions[] = {
        {"MsgBox", nullptr, msgBoxParams, 1, KELP_ENTRY(RuntimeMsgBox)},
        {"MsgBox", &kTypeInteger, vbParams, 3, KELP_ENTRY(VB_RuntimeMsgBox)},
        {"ShowURL", nullptr, urlParams, 1, KELP_ENTRY(GlobalShowURL)},
        {"Keyboard", &keyboardType, nullptr, 0, KELP_ENTRY(getKeyboardObject)},
    };
    AddIntrinsicFunctions(functions);
}

} // namespace kelp
