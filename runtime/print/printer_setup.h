#pragma once
// The language's PrinterSetup: the paper, margins and printer settings one
// print uses, and the resolutions its drawing is made at.  Its helper keeps
// the toolkit's page setup and print settings, so that a page setup dialog
// and a later print dialog see the same choices.
#include "kelp/records.h"

#include <gtk/gtk.h>

#include <cstdint>

namespace kelp {

class PrintTarget;
struct ObjectDefinition;

struct PrintHelper {
    GtkPageSetup *pageSetup;    // owned; the default paper until a dialog says
    GtkPrintSettings *settings; // owned; what the last dialog chose
    int32_t verticalResolution = 72;
    int32_t horizontalResolution = 72;
    int32_t maxVerticalResolution = 72;   // -1: no limit
    int32_t maxHorizontalResolution = 72; // -1: no limit
    PrintTarget *printPane = nullptr;     // the print in progress, not owned

    PrintHelper();
    ~PrintHelper();
    PrintHelper(const PrintHelper &) = delete;
    PrintHelper &operator=(const PrintHelper &) = delete;
};

struct PrinterSetupObject {
    RuntimeObject object;
    PrintHelper *mHelper;
    int32_t setupVerticalResolution; // a print's resolutions are held to these
    int32_t setupHorizontalResolution;
    int32_t setupMaxVerticalResolution;
    int32_t setupMaxHorizontalResolution;
};

enum PageQuery : int32_t {
    kQueryVerticalResolution = 0,
    kQueryHorizontalResolution = 1,
    kQueryLeft = 2,
    kQueryTop = 3,
    kQueryWidth = 4, // the printable area, in dots
    kQueryHeight = 5,
    kQueryPageLeft = 6, // the paper's edge from the printable corner: never above 0
    kQueryPageTop = 7,
    kQueryPageWidth = 8, // the paper, in dots
    kQueryPageHeight = 9,
    kQueryMaxVerticalResolution = 10,
    kQueryMaxHorizontalResolution = 11,
};

ObjectDefinition *PrinterSetupDefinition();
// The helper of a PrinterSetup object; null for null.
PrintHelper *HelperOf(RuntimeObject *setup);
// A page query of the helper, in whole dots, truncated toward zero; 0 for
// a selector outside 0..11.
int32_t QueryPage(const PrintHelper &helper, int32_t selector);

} // namespace kelp
