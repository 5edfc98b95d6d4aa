// Print jobs on cairo surfaces: a PDF file, or the toolkit's print job.
#include "print/print_job.h"

#include <cairo-pdf.h>
#include <cairo-ps.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace kelp {

namespace {

// How long Finish waits for the print service to take a document.  A
// local backend takes it at once; a network queue that is gone must not
// hang the program that printed.
constexpr guint kDeliveryTimeoutMs = 60 * 1000;

void Report(const std::string &what) { std::fprintf(stderr, "Printing: %s\n", what.c_str()); }

} // namespace

std::string PrintToFilePath() {
    const char *path = std::getenv("KELP_PRINT_TO_FILE");
    return path ? path : "";
}

// ------------------------------------------------------------ PrintJob

PrintJob::PrintJob(GtkPageSetup *pageSetup, int32_t horizontalDpi, int32_t verticalDpi)
    : mPageSetup(GTK_PAGE_SETUP(g_object_ref(pageSetup))),
      mScaleX(72.0 / (horizontalDpi > 0 ? horizontalDpi : 72)),
      mScaleY(72.0 / (verticalDpi > 0 ? verticalDpi : 72)) {}

PrintJob::~PrintJob() {
    if (mCairo)
        cairo_destroy(mCairo);
    g_object_unref(mPageSetup);
}

double PrintJob::PaperWidth() const {
    return gtk_page_setup_get_paper_width(mPageSetup, GTK_UNIT_POINTS);
}

double PrintJob::PaperHeight() const {
    return gtk_page_setup_get_paper_height(mPageSetup, GTK_UNIT_POINTS);
}

bool PrintJob::Start(const std::string &pageName) {
    std::string why;
    mSurface = OpenSurface(why);
    if (!mSurface) {
        Report(why);
        return false;
    }
    mCairo = cairo_create(mSurface);
    if (cairo_status(mCairo) != CAIRO_STATUS_SUCCESS) {
        Report(cairo_status_to_string(cairo_status(mCairo)));
        cairo_destroy(mCairo);
        mCairo = nullptr;
        return false;
    }
    BeginPage(pageName);
    return true;
}

void PrintJob::BeginPage(const std::string &pageName) {
    // Each page says its own size, so a landscape page setup turns the
    // paper whatever the surface started with.
    switch (cairo_surface_get_type(mSurface)) {
    case CAIRO_SURFACE_TYPE_PDF:
        cairo_pdf_surface_set_size(mSurface, PaperWidth(), PaperHeight());
        cairo_pdf_surface_set_page_label(mSurface, pageName.c_str());
        break;
    case CAIRO_SURFACE_TYPE_PS:
        cairo_ps_surface_set_size(mSurface, PaperWidth(), PaperHeight());
        break;
    default: break;
    }
    cairo_save(mCairo);
    cairo_translate(mCairo, gtk_page_setup_get_left_margin(mPageSetup, GTK_UNIT_POINTS),
                    gtk_page_setup_get_top_margin(mPageSetup, GTK_UNIT_POINTS));
    cairo_scale(mCairo, mScaleX, mScaleY);
}

void PrintJob::NextPage(const std::string &pageName) {
    if (!mCairo)
        return;
    cairo_restore(mCairo);
    cairo_show_page(mCairo);
    BeginPage(pageName);
}

bool PrintJob::Finish() {
    if (!mCairo || mFinished)
        return false;
    mFinished = true;
    cairo_restore(mCairo);
    cairo_show_page(mCairo);
    cairo_destroy(mCairo);
    mCairo = nullptr;
    cairo_surface_finish(mSurface);
    std::string why;
    if (cairo_surface_status(mSurface) != CAIRO_STATUS_SUCCESS)
        why = cairo_status_to_string(cairo_surface_status(mSurface));
    else if (Deliver(why))
        return true;
    Report(why);
    return false;
}

// ------------------------------------------------------------ to a file

FilePrintJob::~FilePrintJob() {
    if (mOwnSurface)
        cairo_surface_destroy(mOwnSurface);
}

cairo_surface_t *FilePrintJob::OpenSurface(std::string &why) {
    mOwnSurface = cairo_pdf_surface_create(mPath.c_str(), PaperWidth(), PaperHeight());
    if (cairo_surface_status(mOwnSurface) != CAIRO_STATUS_SUCCESS) {
        why = mPath + ": " + cairo_status_to_string(cairo_surface_status(mOwnSurface));
        return nullptr;
    }
    return mOwnSurface;
}

bool FilePrintJob::Deliver(std::string &) { return true; } // cairo wrote it as it went

// ------------------------------------------------------------ to a printer

PrinterPrintJob::PrinterPrintJob(GtkPrinter *printer, GtkPrintSettings *settings,
                                 GtkPageSetup *pageSetup, int32_t horizontalDpi,
                                 int32_t verticalDpi)
    : PrintJob(pageSetup, horizontalDpi, verticalDpi),
      mJob(gtk_print_job_new("Print", printer, settings, pageSetup)) {}

PrinterPrintJob::~PrinterPrintJob() { g_object_unref(mJob); }

cairo_surface_t *PrinterPrintJob::OpenSurface(std::string &why) {
    GError *error = nullptr;
    cairo_surface_t *surface = gtk_print_job_get_surface(mJob, &error); // the job's
    if (!surface) {
        why = error ? error->message : "the printer gave no page to draw on";
        if (error)
            g_error_free(error);
    }
    return surface;
}

namespace {

struct Delivery {
    bool done = false;
    bool timedOut = false;
    std::string error;
};

// The backend holds its own share: a send that outlives our wait still
// reports into live memory.
using DeliveryShare = std::shared_ptr<Delivery>;

void Delivered(GtkPrintJob *, gpointer data, GError *error) {
    Delivery &d = **static_cast<DeliveryShare *>(data);
    d.done = true;
    if (error)
        d.error = error->message;
}

void DropShare(gpointer data) { delete static_cast<DeliveryShare *>(data); }

gboolean DeliveryTimedOut(gpointer data) {
    static_cast<Delivery *>(data)->timedOut = true;
    return FALSE;
}

} // namespace

bool PrinterPrintJob::Deliver(std::string &why) {
    // The backend copies the spooled document from the toolkit's loop: run
    // it until the document is taken, or for a bounded time.
    auto share = std::make_shared<Delivery>();
    Delivery &delivery = *share;
    gtk_print_job_send(mJob, &Delivered, new DeliveryShare(share), &DropShare);
    const guint timer = g_timeout_add(kDeliveryTimeoutMs, &DeliveryTimedOut, &delivery);
    while (!delivery.done && !delivery.timedOut)
        g_main_context_iteration(nullptr, TRUE);
    if (!delivery.timedOut)
        g_source_remove(timer);
    if (!delivery.done) {
        why = "the print service did not take the document in time";
        return false;
    }
    why = delivery.error;
    return why.empty();
}

} // namespace kelp
