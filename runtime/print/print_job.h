#pragma once
// Where the pages of one print go.  Compiled code draws a page at a time
// and never says "done": the job ends when its Graphics goes.  So a job is
// a cairo surface that takes pages as they come, and, at the end, hands
// the document on: to the system's print service through the toolkit's
// print job, or straight into a PDF file.
//
// Failure channel: Start() reports a job that could not begin (false, with
// the reason on standard error); a document the print service refuses is
// reported the same way at Finish().  Nothing raises.
#include <gtk/gtk.h>
#include <gtk/gtkunixprint.h>

#include <cairo.h>

#include <cstdint>
#include <string>

namespace kelp {

class PrintJob {
public:
    // The page's paper and margins come from `pageSetup` (a reference is
    // taken).  `dotsPerInch` is the drawing's resolution: a page's dots
    // are scaled to the paper's points.
    PrintJob(GtkPageSetup *pageSetup, int32_t horizontalDpi, int32_t verticalDpi);
    virtual ~PrintJob();
    PrintJob(const PrintJob &) = delete;
    PrintJob &operator=(const PrintJob &) = delete;

    // Opens the surface and begins the first page, named `pageName`.
    bool Start(const std::string &pageName);
    // The page being drawn: its origin is the printable area's corner, one
    // unit a dot.  Null when the job could not start.
    cairo_t *Page() const { return mCairo; }
    // Sends the page being drawn and begins the next, named `pageName`.
    void NextPage(const std::string &pageName);
    // Sends the last page and hands the document on; waits (a bounded
    // time) until the print service has taken it.  True when it has.
    bool Finish();

protected:
    // The surface pages are drawn on, in points; null with the reason
    // filled in when there is none.
    virtual cairo_surface_t *OpenSurface(std::string &why) = 0;
    // After the surface is finished: give the document to its destination.
    virtual bool Deliver(std::string &why) = 0;
    double PaperWidth() const;  // points
    double PaperHeight() const; // points

private:
    void BeginPage(const std::string &pageName);

    GtkPageSetup *mPageSetup;
    double mScaleX, mScaleY; // points per dot
    cairo_surface_t *mSurface = nullptr;
    cairo_t *mCairo = nullptr;
    bool mFinished = false;
};

// A job written as PDF into a file, with no printer in between.
class FilePrintJob : public PrintJob {
public:
    FilePrintJob(const std::string &path, GtkPageSetup *pageSetup, int32_t horizontalDpi,
                 int32_t verticalDpi)
        : PrintJob(pageSetup, horizontalDpi, verticalDpi), mPath(path) {}
    ~FilePrintJob() override;

protected:
    cairo_surface_t *OpenSurface(std::string &why) override;
    bool Deliver(std::string &why) override;

private:
    std::string mPath;
    cairo_surface_t *mOwnSurface = nullptr;
};

// A job for a printer the print dialog (or the default) chose; the
// printer's backend spools it and sends it on ("Print to File" writes the
// file the dialog named).
class PrinterPrintJob : public PrintJob {
public:
    PrinterPrintJob(GtkPrinter *printer, GtkPrintSettings *settings, GtkPageSetup *pageSetup,
                    int32_t horizontalDpi, int32_t verticalDpi);
    ~PrinterPrintJob() override;

protected:
    cairo_surface_t *OpenSurface(std::string &why) override;
    bool Deliver(std::string &why) override;

private:
    GtkPrintJob *mJob;
};

// The file that jobs go to instead of a printer, when the environment names
// one in KELP_PRINT_TO_FILE: no dialog is shown and the whole print lands
// there as PDF.  For runs with no person at the screen (tests, scripts).
// Empty when unset.
std::string PrintToFilePath();

} // namespace kelp
