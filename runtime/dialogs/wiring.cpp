#include "dialogs/wiring.h"

#include "kelp/dialogs.h"

#include "base/fatal_report.h"
#include "dialogs/alert.h"
#include "dialogs/file_dialogs.h"
#include "dialogs/keyboard.h"
#include "dialogs/message_dialog.h"
#include "folder_items/folder_item_object.h"
#include "objects/definitions.h"
#include "pictures/picture_object.h"

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
    static const TypeRecord itemType{kTypeObjectOf, nullptr, nullptr, 0, &FolderItemDefinition};
    static const TypeRecord pictureType{kTypeObjectOf, nullptr, nullptr, 0, &PictureDefinition};
    static const ParameterRow filterParams[] = {{"filter", &kTypeString},
                                                {"defaultName", &kTypeString}};
    static const ParameterRow colourParams[] = {{"color", &kTypeColor, nullptr, kParamByRef},
                                                {"prompt", &kTypeString}};
    static const ParameterRow pictureParams[] = {{"picture", &pictureType}};
    static const MethodRow functions[] = {
        {"MsgBox", nullptr, msgBoxParams, 1, KELP_ENTRY(RuntimeMsgBox)},
        {"MsgBox", &kTypeInteger, vbParams, 3, KELP_ENTRY(VB_RuntimeMsgBox)},
        {"ShowURL", nullptr, urlParams, 1, KELP_ENTRY(GlobalShowURL)},
        {"Keyboard", &keyboardType, nullptr, 0, KELP_ENTRY(getKeyboardObject)},
        {"GetOpenFolderItem", &itemType, filterParams, 1, KELP_ENTRY(RuntimeGetOpenFolderItem)},
        {"GetSaveFolderItem", &itemType, filterParams, 2, KELP_ENTRY(RuntimeGetSaveFolderItem)},
        {"SelectFolder", &itemType, nullptr, 0, KELP_ENTRY(RuntimeSelectFolder)},
        {"SelectColor", &kTypeBoolean, colourParams, 2, KELP_ENTRY(selectColor)},
        {"ExportPicture", &kTypeBoolean, pictureParams, 1, KELP_ENTRY(exportPicture)},
    };
    AddIntrinsicFunctions(functions);
}

} // namespace kelp
