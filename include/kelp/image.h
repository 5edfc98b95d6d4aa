/* The runtime's export table exports, as compiled code calls them. */
#ifndef KELP_IMAGE_H
#define KELP_IMAGE_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
