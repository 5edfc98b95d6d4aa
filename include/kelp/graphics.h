/* The runtime's graphics exports, as compiled code calls them. */
#ifndef KELP_GRAPHICS_H
#define KELP_GRAPHICS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
