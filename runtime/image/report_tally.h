#pragma once
// Reports of faults that a damaged image may repeat thousands of times (a
// junk options segment has one unknown record per byte, a garbled link table
// one missing export per record).  Each kind is reported once, with a count,
// when the walk that found them is over: one dialog, not one per byte.
#include <cstddef>
#include <string>
#include <vector>

namespace kelp::image {

class ReportTally {
public:
    // source and condition are kept by pointer: give string literals.
    ReportTally(const char *source) : mSource(source) {}
    ReportTally(const ReportTally &) = delete;
    ReportTally &operator=(const ReportTally &) = delete;
    // Reports what is still held.
    ~ReportTally() { Flush(); }

    // Counts one fault of the kind named by line and condition; the first
    // message of a kind is the one reported.
    void Add(int line, const char *condition, std::string message);

    // One assertion report per kind seen since the last flush, in the order
    // the kinds first came: the message alone when it came once, followed by
    // "(N times in all)" otherwise.  Returns the number of reports made.
    size_t Flush();

private:
    struct Kind {
        int line;
        const char *condition;
        std::string first; // message of the first fault of this kind
        size_t count;
    };
    const char *mSource;
    std::vector<Kind> mKinds;
};

} // namespace kelp::image
