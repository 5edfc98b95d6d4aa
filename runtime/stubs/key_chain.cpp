// The key chain: no password store here.  Opening a key chain raises; an
// item exists but finds and keeps nothing.
#include "stubs/absent.h"

#include "kelp/stubs.h"

extern "C" void KeyChainConstructor(RuntimeObject *, int32_t) {
    kelp::RaiseServiceAbsent("The key chain");
}

KELP_ABSENT(void, KeyChainItemConstructor, RuntimeObject *)
KELP_ABSENT(void, KeyChainItemDestructor, RuntimeObject *)
KELP_ABSENT(void, KeyChainLock, RuntimeObject *)
KELP_ABSENT(uint8_t, KeyChainUnlock, RuntimeObject *, KelpString)
KELP_ABSENT(void, KeyChainAddPassword, RuntimeObject *, RuntimeObject *, KelpString)
KELP_ABSENT(KelpString, KeyChainFindPassword, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(KelpString, KeyChainItemAttributeGetter, RuntimeObject *, int32_t)
KELP_ABSENT(void, KeyChainItemAttributeSetter, RuntimeObject *, int32_t, KelpString)
KELP_ABSENT(void, KeyChainItemDelete, RuntimeObject *)
