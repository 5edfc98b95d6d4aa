/*
 * Everything compiled code may use of the runtime: the shared records and the
 * prototype of every exported function, under the names the export table
 * binds.  Plain C11 and C++ alike.
 */
#ifndef KELP_KELP_H
#define KELP_KELP_H

#include "kelp/arrays.h"
#include "kelp/controls.h"
#include "kelp/cursors.h"
#include "kelp/exceptions.h"
#include "kelp/graphics.h"
#include "kelp/image.h"
#include "kelp/numbers.h"
#include "kelp/objects.h"
#include "kelp/random.h"
#include "kelp/records.h"
#include "kelp/resources.h"
#include "kelp/runloop.h"
#include "kelp/sound.h"
#include "kelp/startup.h"
#include "kelp/string_functions.h"
#include "kelp/strings.h"
#include "kelp/system.h"
#include "kelp/threads.h"
#include "kelp/windows.h"
/* Core values */
#include "kelp/encodings.h"
#include "kelp/memory.h"
/* Dates and variants */
#include "kelp/dates.h"
#include "kelp/variants.h"
/* Streams, folder items and pictures. */
#include "kelp/files.h"
#include "kelp/pictures.h"
#include "kelp/streams.h"
/* Canvas, drag and clipboard */
#include "kelp/canvas.h"

/* Edit fields and styled text */
#include "kelp/edit_fields.h"

#include "kelp/plugin.h"
/* Menus */
#include "kelp/menus.h"
/* Print, dialogs and the keyboard */
#include "kelp/dialogs.h"
#include "kelp/print.h"
/* The ListBox */
#include "kelp/listbox.h"
/* 2D shapes */
#include "kelp/shapes.h"
/* Virtual volumes */
#include "kelp/volumes.h"
/* Serial ports */
#include "kelp/serial.h"
/* Sockets */
#include "kelp/sockets.h"
/* The database classes */
#include "kelp/database.h"
/* The debugger link */
#include "kelp/debugger.h"
/* Platform stubs */
#include "kelp/stubs.h"

#endif
