#pragma once
// What TabPanel and PagePanel share: pages numbered from 1 inside the pane
// (the language's Value is 0-based), and the controls lying on the panel
// shown only on their page.  A child with panelIndex 0 shows on every page.
#include "controls/control.h"

namespace kelp {

class PagedPane : public ControlPane {
public:
    using ControlPane::ControlPane;
    bool HoldsControls() const override { return true; }

    int32_t CurrentPage() const { return mCurrent; } // from 1; 0 with no pages
    // Shows the children of the current page and hides the others.
    void ApplyPages() { SetPanelVisible(panelVisible); }
    void SetPanelVisible(bool flag) override;

    // Pages come and go: children above `page` renumber.
    void ShiftChildren(int32_t fromPage, int32_t delta);

    // A press on the panel goes to the panes lying on it first.
    bool MouseDown(int32_t x, int32_t y, int32_t modifiers) override;

protected:
    int32_t mCurrent = 0;
};

} // namespace kelp
