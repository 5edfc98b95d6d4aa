/* The runtime's the random source, as compiled code calls them. */
#ifndef KELP_RANDOM_H
#define KELP_RANDOM_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
