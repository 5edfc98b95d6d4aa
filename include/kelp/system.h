/* The System object: the process and the display as compiled code reaches
 * them.  Members that have no counterpart on this platform answer 0, false
 * or nothing and do nothing. */
#ifndef KELP_SYSTEM_H
#define KELP_SYSTEM_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The one instance of _SystemClass, with a new reference. */
RuntimeObject *getSystemObject(void);

/* The pointer in root window coordinates, and whether the first button is
 * down, read at the moment of the call; 0 without a display. */
int32_t getMouseX(RuntimeObject *system, int32_t parameter);
int32_t getMouseY(RuntimeObject *system, int32_t parameter);
uint8_t getMouseDown(RuntimeObject *system, int32_t parameter);
/* The colour of a screen pixel as 0xRRGGBB; 0 without a display. */
int32_t systemPixel(RuntimeObject *system, int32_t x, int32_t y);

/* Every argument from the program's path on, joined by one blank, made at
 * the first call.  A new reference. */
stringStorage *SystemGetCommandLine(RuntimeObject *system);
/* The empty string for an unset variable or a nil name. */
stringStorage *SystemGetEnvVariable(RuntimeObject *system, stringStorage *name);
/* A nil value sets the empty string; a nil name does nothing. */
void SystemSetEnvVariable(RuntimeObject *system, stringStorage *name, stringStorage *value);
/* The system log at the level's priority (levels 1000 to 1008; any other is
 * informational), named after the program; the message is logged as it is,
 * "%" included.  A nil message does nothing. */
void SystemLogger(RuntimeObject *system, int32_t level, stringStorage *message);
/* The message and a newline on standard error. */
void SystemDebugLogger(RuntimeObject *system, stringStorage *message);

/* A function found while the program runs: remembered by name (a name found
 * once answers whatever library is given later), libraries remembered by
 * name (one that failed to open isn't tried again).  Null when not found. */
void *LoadFunctionPointerFromLibrary(stringStorage *function, stringStorage *library);
uint8_t IsFunctionAvailable(RuntimeObject *system, stringStorage *function, stringStorage *library);

/* A Picture (depth 32, the caller's reference) of a window's content with
 * no frame: filled with pictureFillColor, with the backdrop picture drawn
 * from its top left corner, or stretched over the whole when asked.  The
 * title, frame and box arguments are taken and not used.  Nil without a
 * display. */
RuntimeObject *SystemDrawWindow(RuntimeObject *system, stringStorage *title, int32_t width,
                                int32_t height, int32_t frameType, uint8_t minBox, uint8_t maxBox,
                                uint8_t closeBox, uint8_t growBox, RuntimeObject *backDrop,
                                uint8_t stretchBackDrop, uint32_t pictureFillColor);

/* Members without a counterpart here. */
int32_t systemGetKeyScript(RuntimeObject *system, int32_t parameter);
void systemSetKeyScript(RuntimeObject *system, int32_t parameter, int32_t value);
uint8_t systemGestalt(RuntimeObject *system, int32_t selector, int32_t *result);
void SystemGetWindowMetrics(RuntimeObject *system, int32_t *a, int32_t *b, int32_t *c);
double SystemGetPenPressure(RuntimeObject *system, int32_t parameter);
int32_t SystemGetPenType(RuntimeObject *system, int32_t parameter);
uint8_t SystemGetPenButton(RuntimeObject *system, int32_t index);
RuntimeObject *systemGetDefaultKeyChain(RuntimeObject *system, int32_t parameter);
void systemSetDefaultKeyChain(RuntimeObject *system, int32_t parameter, RuntimeObject *chain);
int32_t systemGetKeyChainCount(RuntimeObject *system, int32_t parameter);
/* A new _QuicktimeInstallStatus object, whose Installed answers false. */
RuntimeObject *systemGetQTInstallStatus(RuntimeObject *system, int32_t parameter);
uint8_t QTInstalledGetter(RuntimeObject *status, int32_t parameter);

#ifdef __cplusplus
}
#endif

#endif
