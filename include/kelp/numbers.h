/* The runtime's number exports, as compiled code calls them. */
#ifndef KELP_NUMBERS_H
#define KELP_NUMBERS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
