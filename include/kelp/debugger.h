/* The debugger link's exports: the calls a debug build makes, and the object
 * inspection an IDE asks of the program. */
#ifndef KELP_DEBUGGER_H
#define KELP_DEBUGGER_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Marks the program as built for debugging (KELPInDebugMode answers 1). */
void DebugRuntimeInit(void);
/* Stores the IDE's address, copied, before the first line runs: "127.0.0.1"
 * (any case) means the local socket of this user, anything else a host name
 * or address reached on TCP.  Null or empty keeps the local socket. */
void RemoteDebuggerStartup(stringStorage *address);
/* Called at each source line of a debug build.  The first call connects to
 * the IDE (or ends the process after 5 seconds with a report) and stops;
 * later calls stop at breakpoints and steps.  Returns when the IDE resumes. */
void RuntimeDebuggerEntry(int32_t line);
/* A Break statement: stops without a line, when a link is up or can be made. */
void RuntimeDebuggerBreak(void);
/* Drops the connection to the IDE; the program runs on, unwatched. */
void RuntimeDebuggerShutdown(void);
/* The end-of-object hook of the link: a watched object is taken off the
 * watch list and the IDE is told.  Null is ignored. */
void RuntimeDebugDestructor(RuntimeObject *object);
/* The number the IDE knows an object by: its address; 0 for nil. */
intptr_t RuntimeDebugObjectID(RuntimeObject *object);
/* The object the IDE shows as the project's root: the application object
 * with a new reference, or null before one is registered. */
RuntimeObject *RuntimeProjectObject(void);
/* Writes each live object (address, class, reference count) to standard
 * error, one line each, then the count. */
void debugDumpObjects(void);

#ifdef __cplusplus
}
#endif

#endif
