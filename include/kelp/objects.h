/* The runtime's object and class exports, as compiled code calls them. */
#ifndef KELP_OBJECTS_H
#define KELP_OBJECTS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
