/* The runtime's string exports, as compiled code calls them. */
#ifndef KELP_STRINGS_H
#define KELP_STRINGS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
