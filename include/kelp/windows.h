/* The runtime's window and pane exports, as compiled code calls them. */
#ifndef KELP_WINDOWS_H
#define KELP_WINDOWS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
