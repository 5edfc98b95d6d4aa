// The dock: there is none, so Application.DockItem is nil and a DockItem's
// icon is never drawn.
#include "stubs/absent.h"

#include "kelp/stubs.h"

KELP_ABSENT(RuntimeObject *, AppDockItemGetter, RuntimeObject *, int32_t)
KELP_ABSENT(void, DockItemInitializer, RuntimeObject *)
KELP_ABSENT(void, DockItemFinalizer, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, DockItemIconGraphicsGetter, RuntimeObject *, int32_t)
KELP_ABSENT(void, DockItemIconUpdate, RuntimeObject *)
KELP_ABSENT(void, DockItemResetIcon, RuntimeObject *)
