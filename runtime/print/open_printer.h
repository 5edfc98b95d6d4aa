#pragma once
// The page target of a print in progress, and the one print at a time.
#include "graphics/graphics_target.h"
#include "print/print_job.h"

#include "kelp/records.h"

#include <memory>

namespace kelp {

struct PrintHelper;

// What the language's Graphics of a print draws on.  It owns the job; when
// the Graphics goes, the target goes with it, and that ends the print: the
// last page is sent and the job handed to the printer.
class PrintTarget : public GraphicsTarget {
public:
    PrintTarget(std::unique_ptr<PrintJob> job, PrintHelper *helper, RuntimeObject *activeSetup,
                int32_t width, int32_t height);
    ~PrintTarget() override;

    GdkDrawable *Drawable() override { return nullptr; }
    GdkGC *GetGC() override { return nullptr; }
    bool OnScreen() const override { return false; }
    Rect Bounds() const override;

    void NextPage() override;
    int32_t FirstPage() const override { return mFirstPage; }
    int32_t LastPage() const override { return mLastPage; }
    int32_t Copies() const override { return mCopies; }

    PrintJob &Job() { return *mJob; }
    void SetRange(int32_t first, int32_t last, int32_t copies) {
        mFirstPage = first, mLastPage = last, mCopies = copies;
    }

private:
    std::unique_ptr<PrintJob> mJob;
    PrintHelper *mHelper;        // the active setup's, which the print keeps alive
    RuntimeObject *mActiveSetup; // locked for the print's length
    int32_t mWidth, mHeight;     // the printable area in dots
    int32_t mFirstPage = 0, mLastPage = 65535, mCopies = 1;
};

// The name the next page gets: "1", "2", ... counting on from one print to
// the next for the life of the process.
std::string NextPageName();
// True while a print is in progress (its Graphics still held).
bool PrintInProgress();

} // namespace kelp
