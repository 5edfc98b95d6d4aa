// Opening a printer: the print dialog (or the default printer, or the
// file a run with no person names), the job, and the Graphics it is drawn
// with.  One print at a time: the setup of the print in progress is held
// until its Graphics goes.
#include "print/open_printer.h"

#include "kelp/objects.h"
#include "kelp/print.h"

#include "base/fatal_report.h"
#include "graphics/graphics_object.h"
#include "objects/definitions.h"
#include "print/page_graphics.h"
#include "print/printer_setup.h"
#include "process/display.h"
#include "windows/dialog_placement.h"

#include <gtk/gtkunixprint.h>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace kelp {

namespace {

const char kFile[] = "runtime/print/open_printer.cpp";

RuntimeObject *gActivePrintObject = nullptr; // the setup of the print in progress
int32_t gPageNameCounter = 1;

// How long to wait for the print services to list their printers when
// there is no dialog to choose one.
constexpr guint kPrinterListTimeoutMs = 10 * 1000;

// "All pages" leaves the program to stop when its text ends.
constexpr int32_t kLastPossiblePage = 65535;

// A resolution of the settings, held to the helper's limit (-1 lifts it)
// and, when the program passed a setup, to what its page setup found.
int32_t Resolution(int32_t fromSettings, int32_t limit, const int32_t *setupLimit) {
    int32_t dpi = fromSettings > 0 ? fromSettings : 72;
    if (limit != -1 && dpi > limit)
        dpi = limit;
    if (setupLimit && dpi > *setupLimit)
        dpi = *setupLimit;
    return std::max(dpi, 1);
}

void SetResolutions(PrintHelper &h, RuntimeObject *setupGiven) {
    GtkPrintSettings *s = h.settings;
    const bool has = gtk_print_settings_has_key(s, GTK_PRINT_SETTINGS_RESOLUTION) ||
                     gtk_print_settings_has_key(s, GTK_PRINT_SETTINGS_RESOLUTION_X);
    const auto *given = reinterpret_cast<PrinterSetupObject *>(setupGiven);
    h.horizontalResolution =
        Resolution(has ? gtk_print_settings_get_resolution_x(s) : 0, h.maxHorizontalResolution,
                   given ? &given->setupHorizontalResolution : nullptr);
    h.verticalResolution =
        Resolution(has ? gtk_print_settings_get_resolution_y(s) : 0, h.maxVerticalResolution,
                   given ? &given->setupVerticalResolution : nullptr);
}

// The pages the dialog asked for, 1-based, and the copies; the program
// draws only those, so the job itself is told to print all it is given.
void TakeRange(GtkPrintSettings *s, int32_t &first, int32_t &last, int32_t &copies) {
    first = 1;
    last = kLastPossiblePage;
    if (gtk_print_settings_get_print_pages(s) == GTK_PRINT_PAGES_RANGES) {
        gint count = 0;
        GtkPageRange *ranges = gtk_print_settings_get_page_ranges(s, &count);
        if (ranges && count > 0) {
            first = kLastPossiblePage, last = 1;
            for (gint i = 0; i < count; ++i) {
                first = std::min<int32_t>(first, ranges[i].start + 1);
                last = std::max<int32_t>(last, ranges[i].end + 1);
            }
        }
        g_free(ranges);
    }
    copies = std::max(1, gtk_print_settings_get_n_copies(s));
    gtk_print_settings_set_print_pages(s, GTK_PRINT_PAGES_ALL);
}

// Runs the print dialog on the helper's choices.  Print answers the chosen
// printer (a reference the caller drops) and stores the choices; anything
// else answers null and leaves the helper as it was.
GtkPrinter *RunPrintDialog(PrintHelper &h, RuntimeObject *parentWindow) {
    GtkWidget *dialog = gtk_print_unix_dialog_new("Print", nullptr);
    PlaceOverParent(dialog, parentWindow);
    auto *printDialog = GTK_PRINT_UNIX_DIALOG(dialog);
    gtk_print_unix_dialog_set_settings(printDialog, h.settings);
    gtk_print_unix_dialog_set_page_setup(printDialog, h.pageSetup);
    gtk_print_unix_dialog_set_manual_capabilities(
        printDialog,
        GtkPrintCapabilities(GTK_PRINT_CAPABILITY_PAGE_SET | GTK_PRINT_CAPABILITY_GENERATE_PDF |
                             GTK_PRINT_CAPABILITY_GENERATE_PS));
    GtkPrinter *printer = nullptr;
    if (gtk_dialog_run(GTK_DIALOG(dialog)) == GTK_RESPONSE_OK) {
        printer = gtk_print_unix_dialog_get_selected_printer(printDialog);
        if (printer) {
            g_object_ref(printer);
            GtkPrintSettings *chosen = gtk_print_unix_dialog_get_settings(printDialog); // ours
            g_object_unref(h.settings);
            h.settings = chosen;
            g_object_unref(h.pageSetup);
            h.pageSetup = gtk_page_setup_copy(gtk_print_unix_dialog_get_page_setup(printDialog));
        }
    }
    gtk_widget_destroy(dialog);
    gdk_flush(); // gone from the screen now, not at the next event
    return printer;
}

struct PrinterSearch {
    GtkPrinter *found = nullptr; // referenced
    bool done = false;
};
using SearchShare = std::shared_ptr<PrinterSearch>;

gboolean ConsiderPrinter(GtkPrinter *printer, gpointer data) {
    PrinterSearch &search = **static_cast<SearchShare *>(data);
    // "Print to File" and its kind need a dialog to say where: only a real
    // printer that the service calls the default will do.
    if (search.found || gtk_printer_is_virtual(printer) || !gtk_printer_is_default(printer))
        return FALSE;
    search.found = GTK_PRINTER(g_object_ref(printer));
    return TRUE;
}

void SearchEnded(gpointer data) {
    auto *share = static_cast<SearchShare *>(data);
    (*share)->done = true;
    delete share;
}

gboolean SearchTimedOut(gpointer data) {
    *static_cast<bool *>(data) = true;
    return FALSE;
}

// The print service's default printer, or null when there is none.
GtkPrinter *DefaultPrinter() {
    auto share = std::make_shared<PrinterSearch>();
    gtk_enumerate_printers(&ConsiderPrinter, new SearchShare(share), &SearchEnded, FALSE);
    bool timedOut = false;
    const guint timer = g_timeout_add(kPrinterListTimeoutMs, &SearchTimedOut, &timedOut);
    while (!share->done && !share->found && !timedOut)
        g_main_context_iteration(nullptr, TRUE);
    if (!timedOut)
        g_source_remove(timer);
    GtkPrinter *found = share->found;
    share->found = nullptr;
    return found;
}

// Both entry points.  Takes the setup given, or a new one, as the active
// object; makes the job; begins the first page; answers the Graphics (the
// caller's) or null with nothing printed and the active object let go.
RuntimeObject *OpenPrint(RuntimeObject *setup, bool withDialog, RuntimeObject *parentWindow) {
    if (!DisplayAvailable())
        return nullptr;
    if (gActivePrintObject) {
        std::fprintf(stderr, "Printing: a print is already in progress; this one is not made\n");
        return nullptr;
    }
    RuntimeObject *active = setup;
    if (active)
        RuntimeLockObject(active);
    else
        active = NewObjectOfDefinition(PrinterSetupDefinition());
    PrintHelper *helper = HelperOf(active);
    KELP_ASSERT(active != nullptr, kFile, "activePrintObject");
    KELP_ASSERT(helper != nullptr, kFile, "activePrintObject->mHelper");
    if (!helper) {
        RuntimeUnlockObject(active);
        return nullptr;
    }

    int32_t first = withDialog ? 1 : 0, last = kLastPossiblePage, copies = 1;
    GtkPrinter *printer = nullptr;
    const std::string path = PrintToFilePath();
    if (path.empty()) {
        printer = withDialog ? RunPrintDialog(*helper, parentWindow) : DefaultPrinter();
        if (!printer) {
            RuntimeUnlockObject(active);
            return nullptr; // cancelled, or no printer: nothing printed
        }
        if (withDialog)
            TakeRange(helper->settings, first, last, copies);
        else
            copies = std::max(1, gtk_print_settings_get_n_copies(helper->settings));
    }
    SetResolutions(*helper, setup);
    std::unique_ptr<PrintJob> job;
    if (printer) {
        job = std::make_unique<PrinterPrintJob>(printer, helper->settings, helper->pageSetup,
                                                helper->horizontalResolution,
                                                helper->verticalResolution);
        g_object_unref(printer);
    } else {
        job = std::make_unique<FilePrintJob>(path, helper->pageSetup, helper->horizontalResolution,
                                             helper->verticalResolution);
    }
    if (!job->Start(NextPageName())) {
        RuntimeUnlockObject(active);
        return nullptr;
    }
    gActivePrintObject = active;
    auto *target = new PrintTarget(std::move(job), helper, active, QueryPage(*helper, kQueryWidth),
                                   QueryPage(*helper, kQueryHeight));
    target->SetRange(first, last, copies);
    auto *graphics = new PageGraphics(target, helper->verticalResolution);
    graphics->SetContext(target->Job().Page());
    helper->printPane = target;
    return NewGraphicsObject(graphics, true);
}

} // namespace

std::string NextPageName() { return std::to_string(gPageNameCounter++); }

bool PrintInProgress() { return gActivePrintObject != nullptr; }

PrintTarget::PrintTarget(std::unique_ptr<PrintJob> job, PrintHelper *helper,
                         RuntimeObject *activeSetup, int32_t width, int32_t height)
    : mJob(std::move(job)), mHelper(helper), mActiveSetup(activeSetup), mWidth(width),
      mHeight(height) {}

PrintTarget::~PrintTarget() {
    // The end of the print: the last page goes and the job goes to the printer.
    mJob->Finish();
    mJob.reset();
    mHelper->printPane = nullptr;
    gActivePrintObject = nullptr;
    RuntimeUnlockObject(mActiveSetup); // may free the helper: last
}

Rect PrintTarget::Bounds() const {
    return Rect{0, 0, static_cast<int16_t>(std::clamp<int32_t>(mHeight, 0, INT16_MAX)),
                static_cast<int16_t>(std::clamp<int32_t>(mWidth, 0, INT16_MAX))};
}

// The page drawn so far is sent and a blank one begins: what was drawn
// belongs to its page only.
void PrintTarget::NextPage() { mJob->NextPage(NextPageName()); }

} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *RuntimeOpenPrinterDialog(RuntimeObject *setup, RuntimeObject *parent) {
    return OpenPrint(setup, true, parent);
}

extern "C" RuntimeObject *RuntimeOpenPrinter(RuntimeObject *setup) {
    return OpenPrint(setup, false, nullptr);
}
