/* The runtime's array exports, as compiled code calls them. */
#ifndef KELP_ARRAYS_H
#define KELP_ARRAYS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
