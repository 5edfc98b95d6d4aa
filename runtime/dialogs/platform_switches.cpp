// Switches that other platforms' programs call and that have nothing to
// switch here.
#include "kelp/dialogs.h"

// Text is drawn by Pango on cairo on this platform whatever the program
// asks: there is no older text renderer to turn away from.
extern "C" void EnableCoreGraphicsTextOnOSX() {}
