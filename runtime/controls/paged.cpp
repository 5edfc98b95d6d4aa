#include "controls/paged.h"

#include <vector>

namespace kelp {

void PagedPane::SetPanelVisible(bool flag) {
    for (SubPane *child : std::vector<SubPane *>(mChildren))
        if (auto *pane = dynamic_cast<ControlPane *>(child))
            pane->SetPanelVisible(flag && (pane->panelIndex == 0 || pane->panelIndex == mCurrent));
    if (flag == panelVisible)
        return;
    panelVisible = flag;
    if (!visible)
        return;
    if (!flag && (FocusPane() == this || Contains(FocusPane())))
        SetFocus(nullptr);
    Invalidate(true);
    if (mWidget)
        flag ? gtk_widget_show(mWidget) : gtk_widget_hide(mWidget);
}

void PagedPane::ShiftChildren(int32_t fromPage, int32_t delta) {
    for (SubPane *child : mChildren)
        if (auto *pane = dynamic_cast<ControlPane *>(child); pane && pane->panelIndex > fromPage) {
            pane->panelIndex += delta;
            if (RuntimeObject *control = pane->Control())
                Ctl(control)->tabPanelIndex = pane->panelIndex - 1;
        }
}

bool PagedPane::MouseDown(int32_t x, int32_t y, int32_t modifiers) {
    std::vector<SubPane *> children = mChildren;
    for (size_t i = children.size(); i-- > 0;) {
        SubPane *child = children[i];
        if (closing)
            return true;
        auto *pane = dynamic_cast<ControlPane *>(child);
        if (!child->visible || (pane && !pane->panelVisible) || !child->HitTest(x, y))
            continue;
        if (child->MouseDown(x, y, modifiers))
            return false; // the child's own widget has the press (capture is the window's)
        if (!child->PassesClicksThrough())
            return false;
    }
    return false; // the panel's widget takes it (tabs), or it passes on
}

} // namespace kelp
