#include "base/wiring.h"

#include <algorithm>
#include <vector>

namespace kelp {

void RunWiring(std::span<const WiringStep> steps) {
    static std::vector<const WiringStep *> wired; // the tables that ran
    if (std::find(wired.begin(), wired.end(), steps.data()) != wired.end())
        return;
    wired.push_back(steps.data());
    for (const WiringStep &step : steps)
        if (step.wire)
            step.wire();
}

} // namespace kelp
