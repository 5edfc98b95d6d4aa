// Handles of other systems' drivers and windows, and their contextual-menu
// click: there are none here, so each reads 0 or false.
#include "stubs/absent.h"

#include "kelp/stubs.h"

KELP_ABSENT(uint8_t, IsCMMClick)
KELP_ABSENT(int32_t, GetMacInputDriverRef, RuntimeObject *, int32_t)
KELP_ABSENT(int32_t, GetMacOutputDriverRef, RuntimeObject *, int32_t)
KELP_ABSENT(int32_t, GetWin32DriverHandle, RuntimeObject *, int32_t)
KELP_ABSENT(int32_t, getterWinHWND, RuntimeObject *, int32_t)
