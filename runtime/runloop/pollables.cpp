#include "runloop/pollable.h"

#include <algorithm>
#include <vector>

namespace kelp {
namespace {
std::vector<Pollable *> &Registry() {
    static std::vector<Pollable *> registry;
    return registry;
}
} // namespace

Pollable::~Pollable() { RemovePollable(this); }

void AddPollable(Pollable *item) {
    if (item)
        Registry().push_back(item);
}

void RemovePollable(Pollable *item) {
    auto &r = Registry();
    r.erase(std::remove(r.begin(), r.end(), item), r.end());
}

int PollableCount() { return static_cast<int>(Registry().size()); }

void PollAllPollables() {
    auto &r = Registry();
    for (int i = static_cast<int>(r.size()) - 1; i >= 0; --i) {
        if (i >= static_cast<int>(r.size())) {
            i = static_cast<int>(r.size());
            continue;
        }
        r[static_cast<size_t>(i)]->Poll();
    }
}

} // namespace kelp
