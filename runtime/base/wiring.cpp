#include "base/wiring.h"

#include <algorithm>
#include <vector>

namespace kelp {
namespace {
struct Step {
    int order;
    void (*run)();
};
std::vector<Step> &Steps() {
    static std::vector<Step> steps;
    return steps;
}
bool gRan = false;
} // namespace

BringUpStep::BringUpStep(int order, void (*step)()) {
    if (step)
        Steps().push_back({order, step});
}

void RunBringUpSteps() {
    if (gRan)
        return;
    gRan = true;
    auto steps = Steps();
    std::stable_sort(steps.begin(), steps.end(),
                     [](const Step &a, const Step &b) { return a.order < b.order; });
    for (const Step &s : steps)
        s.run();
}

} // namespace kelp
