/* The runtime's exception exports, as compiled code calls them. */
#ifndef KELP_EXCEPTIONS_H
#define KELP_EXCEPTIONS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
