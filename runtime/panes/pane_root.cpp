#include "panes/pane_root.h"

#include <algorithm>

namespace kelp {

SubPane *PaneRoot::HolderFor(const SubPane *pane) {
    SubPane *holder = this;
    for (SubPane *candidate : mPanes)
        if (candidate != pane && candidate->Encloses(pane))
            holder = candidate;
    return holder;
}

void PaneRoot::Register(SubPane *pane) { mPanes.push_back(pane); }

void PaneRoot::Unregister(SubPane *pane) {
    mPanes.erase(std::remove(mPanes.begin(), mPanes.end(), pane), mPanes.end());
    if (mStoredFocus == pane)
        mStoredFocus = nullptr;
}

} // namespace kelp
