/* The runtime's process start-up and run-down exports, as compiled code calls them. */
#ifndef KELP_STARTUP_H
#define KELP_STARTUP_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The image calls this first.  Nothing is left to do by then. */
void RuntimeInit(void);
/* The image stores the result in its exit-code global; always 0. */
int32_t RuntimeExit(void);
/* Compiled code calls this on entry to each function; no check is made here. */
void RuntimeStackCheck(void);
/* Records (current stack position - bytes) as the current thread's stack limit. */
void KELPInitStackChecker(uint32_t bytes);
/* The argument vector as the process received it, copied before the toolkit
 * removed its own options. */
char **KELPGetCommandLineForUnix(void);
/* The application object, not locked; null before one is registered. */
RuntimeObject *getAppObject(void);

#ifdef __cplusplus
}
#endif

#endif
