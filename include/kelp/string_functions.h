/* The runtime's string function exports, as compiled code calls them. */
#ifndef KELP_STRING_FUNCTIONS_H
#define KELP_STRING_FUNCTIONS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
