/* The runtime's resource store exports, as compiled code calls them. */
#ifndef KELP_RESOURCES_H
#define KELP_RESOURCES_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
