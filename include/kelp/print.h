/*
 * Printing, as compiled code calls it: the PrinterSetup class and the two
 * ways to open a printer Graphics.  A print ends, and goes to the printer,
 * when the last reference to its Graphics is released.
 *
 * Failure channels: none raises.  A cancelled dialog, no printer, no
 * display or a print already in progress give nil, with nothing printed; a
 * job the print service refuses is reported on standard error.  Page
 * queries are whole dots.  A returned object is the caller's reference.
 */
#ifndef KELP_PRINT_H
#define KELP_PRINT_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

void PrinterSetupConstructor(RuntimeObject *self);
void PrinterSetupDestructor(RuntimeObject *self);
/* Selectors 0 to 11: resolutions, the printable area, the paper, the limits. */
int32_t printerSetupInfoGetter(RuntimeObject *setup, int32_t selector);
/* Selector 10 the vertical limit, 11 the horizontal; -1 lifts it. */
void printerSetupMaxResSetter(RuntimeObject *setup, int32_t selector, int32_t value);
KelpString printerSetupStringGetter(RuntimeObject *setup, int32_t unused);
void printerSetupStringSetter(RuntimeObject *setup, int32_t unused, KelpString value);
/* The page setup dialog: true on OK. */
uint8_t printerSetupPageSetup(RuntimeObject *setup, RuntimeObject *parent);

/* The print dialog, then a printer Graphics; `setup` may be nil. */
RuntimeObject *RuntimeOpenPrinterDialog(RuntimeObject *setup, RuntimeObject *parent);
/* The default printer without a dialog. */
RuntimeObject *RuntimeOpenPrinter(RuntimeObject *setup);

#ifdef __cplusplus
}
#endif

#endif
