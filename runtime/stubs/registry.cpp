// The registry: no system registry here.  Naming a path raises; every other
// member reads empty and writes nowhere.
#include "stubs/absent.h"

#include "kelp/stubs.h"

extern "C" void RegistryItemPathCtor(RuntimeObject *, KelpString) {
    kelp::RaiseServiceAbsent("The registry");
}

KELP_ABSENT(void, RegistryItemCopyCtor, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(void, RegistryItemDestructor, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, RuntimeGetDefaultApplicationRegistryItem)
KELP_ABSENT(RuntimeObject *, RegistryItemAddFolder, RuntimeObject *, KelpString)
KELP_ABSENT(RuntimeObject *, RegistryItemChild, RuntimeObject *, KelpString)
KELP_ABSENT(RuntimeObject *, RegistryItemItem, RuntimeObject *, int32_t)
KELP_ABSENT(RuntimeObject *, RegistryParentGetter, RuntimeObject *, int32_t)
KELP_ABSENT(void, RegistryItemDelete, RuntimeObject *, KelpString)
KELP_ABSENT(int32_t, RegistryItemFolderCountGetter, RuntimeObject *, int32_t)
KELP_ABSENT(int32_t, RegistryItemKeyCountGetter, RuntimeObject *, int32_t)
KELP_ABSENT(int32_t, RegistryItemKeyTypeGetter, RuntimeObject *, int32_t)
KELP_ABSENT(KelpString, RegistryItemNameGetter, RuntimeObject *, int32_t)
KELP_ABSENT(KelpString, RegistryItemPathGetter, RuntimeObject *, int32_t)
KELP_ABSENT(RuntimeObject *, RegistryItemValueGetter, RuntimeObject *, KelpString)
KELP_ABSENT(void, RegistryItemValueSetter, RuntimeObject *, KelpString, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, RegistryItemNumValueGetter, RuntimeObject *, int32_t)
KELP_ABSENT(void, RegistryItemNumValueSetter, RuntimeObject *, int32_t, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, RegistryItemDefaultValueGetter, RuntimeObject *, int32_t)
KELP_ABSENT(void, RegistryItemDefaultValueSetter, RuntimeObject *, int32_t, RuntimeObject *)
