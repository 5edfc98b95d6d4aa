/* The runtime's run loop, application object and timer exports, as compiled
 * code calls them. */
#ifndef KELP_RUNLOOP_H
#define KELP_RUNLOOP_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------ run loop */

/* Stores the application object (taking a reference), or makes a plain
 * Application for null; then fires Open, and OpenDocument per document
 * argument or NewDocument. */
void RuntimeRegisterAppObject(RuntimeObject *app);
/* The same for a console program: a ServiceApplication or ConsoleApplication
 * is made for null.  No events fire. */
void RuntimeRegisterConsoleAppObject(RuntimeObject *app, uint8_t isService);

/* Runs the loop until quit is requested, then closes the windows left and
 * releases the application object.  A second call does nothing. */
void RuntimeRun(void);

/* One pass of the loop that does not wait for events, then a pause of
 * `milliseconds` when that is 0 or more. */
void RuntimeDoEvents(RuntimeObject *self, int32_t milliseconds);

/* The service call at every loop back-edge of compiled code: runs due
 * background tasks and the cancel check, at most once a tick. */
void RuntimeBackgroundTask(void);

/* Counters of the wait cursor of long calculations. */
void DisableAutoWaitCursor(void);
void EnableAutoWaitCursor(void);

/* Pumps the toolkit once without waiting, then reads whether Escape is held. */
uint8_t getUserCancelled(void);

/* Sleeps the whole process; no other thread gets a turn. */
void AppSleepCurrentThread(RuntimeObject *self, int32_t milliseconds);

/* ------------------------------------------------------- application */

/* The quit sequence: CancelClose, the windows' CancelClose and close, Close.
 * Agreed, it raises EndException when raiseEnd is set (and no
 * UnhandledException event runs), else it sets the quit flag. */
void ApplicationQuit(RuntimeObject *self, uint8_t raiseEnd);
/* Quit: ApplicationQuit(self, true). */
void KP_ApplicationQuit(RuntimeObject *self);
/* Fires the application's NewDocument event. */
void ApplicationNewDocument(RuntimeObject *self);

/* Life cycle of Application: the initialiser sets AutoQuit; the finaliser
 * drops the pollers, the cursor, the MDI window and the menu bar, and stops
 * being the registered application. */
void ApplicationInitializer(RuntimeObject *self);
void ApplicationFinalizer(RuntimeObject *self);

/* Polls `object` once a pass of the loop through its _Poll (when its class
 * implements _Pollable).  Remove drops every registration of the object. */
void ApplicationAddPollableObject(RuntimeObject *self, RuntimeObject *object);
void ApplicationRemovePollableObject(RuntimeObject *self, RuntimeObject *object);

/* Application.AutoQuit: with it set, the run ends once no window is left. */
uint8_t AppAutoCloseGetter(RuntimeObject *self, int32_t parameter);
void AppAutoCloseSetter(RuntimeObject *self, int32_t parameter, uint8_t value);

/* Fires the application's OpenDocument event with `item` (a FolderItem). */
void ApplicationOpenDocument(RuntimeObject *self, RuntimeObject *item);
/* Application.BalloonHelpVisible: a stored flag. */
uint8_t AppBalloonHelpVisibleGetter(RuntimeObject *self, int32_t parameter);
void AppBalloonHelpVisibleSetter(RuntimeObject *self, int32_t parameter, uint8_t value);
/* Application.MouseCursor: the counted cursor object of the application. */
void appMouseCursorSetter(RuntimeObject *self, int32_t parameter, RuntimeObject *cursor);
/* Application.MenuBar: the counted menu bar object; the getter returns it
 * with a new reference. */
RuntimeObject *AppMenuBarGetter(RuntimeObject *self, int32_t parameter);
/* Application.ResourceFork: a new, empty ResourceFork on each read (the
 * caller's reference); the application's resources are in its image. */
RuntimeObject *appResourceForkGetter(RuntimeObject *self, int32_t parameter);
void AppMenuBarSetter(RuntimeObject *self, int32_t parameter, RuntimeObject *menuBar);
/* Stores `Boolean handler(app, index)` under a menu item's Name; nil code
 * does nothing, a nil self or name is a failed assertion. */
void ApplicationAddMenuHandler(RuntimeObject *self, KelpString name, void *code);

/* Application._CurrentEventTime: the toolkit's current event time in ticks. */
int32_t AppGetCurrentEventTime(RuntimeObject *self, int32_t unused);

/* ------------------------------------------------------------- timers */

/* Initialiser and finaliser of Timer: Period 1000, Enabled, Mode off; the
 * finaliser removes a pending timeout and drops the receivers. */
void RuntimeTimerConstructor(RuntimeObject *self);
void RuntimeTimerDestructor(RuntimeObject *self);
/* Property setters (object, row parameter, value).  Assigning Mode, even the
 * same value, restarts the full period; ModeOff cancels.  A Period below 1
 * is stored as 1. */
void timerModeSetter(RuntimeObject *self, int32_t parameter, int32_t mode);
void timerPeriodSetter(RuntimeObject *self, int32_t parameter, int32_t period);
/* Timer.Reset: records the time; the armed timeout is left alone. */
void RuntimeTimerReset(RuntimeObject *self);
/* actionSource of Timer: the list holds a reference to each receiver. */
void TimerAddActionNotificationReceiver(RuntimeObject *self, RuntimeObject *receiver);
void TimerRemoveActionNotificationReceiver(RuntimeObject *self, RuntimeObject *receiver);

/* Ticks: sixtieths of a second of the run loop's clock (the monotonic clock,
 * from the system's start), wrapping as a signed 32-bit count. */
int32_t RuntimeTicks(void);
/* Microseconds: the monotonic clock in microseconds, as a double so that it
 * does not wrap. */
double RuntimeMicroseconds(void);

/* ConsoleApplication's initializer: a console application keeps no state of
 * its own. */
void ConsoleApplicationInitializer(RuntimeObject *self);
/* Daemonize: the program goes on detached (a new session, in "/", standard
 * streams on /dev/null) and the starting process exits with 0.  False when
 * the detached process can't be made. */
uint8_t DaemonizeApp(RuntimeObject *self);
/* App.ExecutableFile: the program's own file as a new FolderItem. */
RuntimeObject *AppFolderItemGetter(RuntimeObject *self, int32_t unused);

#ifdef __cplusplus
}
#endif

#endif
