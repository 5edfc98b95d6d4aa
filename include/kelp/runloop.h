/* The runtime's run loop, timers and shutdown task exports, as compiled code calls them. */
#ifndef KELP_RUNLOOP_H
#define KELP_RUNLOOP_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
