#include "menus/wiring.h"

#include "menus/classes.h"
#include "menus/dispatch.h"
#include "menus/menu.h"
#include "menus/popup.h"
#include "menus/window_bars.h"

#include "objects/definitions.h"

namespace kelp {

void WireMenus() {
    AddIntrinsicClassAccessor(&MenuItemDefinition);
    AddIntrinsicClassAccessor(&MenuBarDefinition);
    AddIntrinsicClassAccessor(&QuitMenuItemDefinition);
    AddIntrinsicClassAccessor(&PrefsMenuItemDefinition);
    AddIntrinsicClassAccessor(&AppleMenuItemDefinition);
    AddIntrinsicClassAccessor(&MenuBarInstallerDefinition);
    AddIntrinsicClassAccessor(&ContextualMenuDefinition);
    SetMenuChosenHandler(
        [](RuntimeObject *item, Window *window) { DispatchMenuItem(item, window); });
    SetMenuKeyOffer(&OfferMenuKey);
    SetContextualMenuOffer(&OfferContextualMenu);
    SetViewMenuClient(WindowBarClient());
}

} // namespace kelp
