#include "image/report_tally.h"

#include "base/fatal_report.h"

#include <cstring>

namespace kelp::image {

void ReportTally::Add(int line, const char *condition, std::string message) {
    for (Kind &k : mKinds)
        if (k.line == line && std::strcmp(k.condition, condition) == 0) {
            ++k.count;
            return;
        }
    mKinds.push_back(Kind{line, condition, std::move(message), 1});
}

size_t ReportTally::Flush() {
    // Taken out first: a report's presenter may run code that adds again.
    std::vector<Kind> kinds;
    kinds.swap(mKinds);
    for (const Kind &k : kinds) {
        std::string text = k.first;
        if (k.count > 1)
            text += " (" + std::to_string(k.count) + " times in all)";
        FatalReport(kFatalFailedAssertion, mSource, k.line, k.condition, text.c_str());
    }
    return kinds.size();
}

} // namespace kelp::image
