/* The runtime's process start-up and run-down exports, as compiled code calls them. */
#ifndef KELP_STARTUP_H
#define KELP_STARTUP_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
