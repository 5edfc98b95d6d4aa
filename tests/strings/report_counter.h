#pragma once
// Counts the assertion reports raised while it lives, remembering the last
// condition text, so a test can tell that a bad call was reported (and
// that a good call was not).
#include "base/fatal_report.h"

#include <string>

namespace strings_test {

class ReportCounter {
public:
    ReportCounter() {
        Count() = 0;
        LastCondition().clear();
        mPrevious = kelp::SetFatalReportHook(&Record);
    }
    ~ReportCounter() { kelp::SetFatalReportHook(mPrevious); }
    int count() const { return Count(); }
    std::string last() const { return LastCondition(); }

private:
    static int &Count() {
        static int n = 0;
        return n;
    }
    static std::string &LastCondition() {
        static std::string s;
        return s;
    }
    static void Record(int, const char *, int, const char *condition, const char *) {
        ++Count();
        LastCondition() = condition ? condition : "";
    }
    kelp::FatalReportHook mPrevious;
};

} // namespace strings_test
