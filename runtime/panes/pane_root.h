#pragma once
// The root of a pane tree: the toolkit window.  Panes never reach into the
// window that holds them; they register with their root through this narrow
// interface, which keeps every pane of the tree in creation order (the tab
// order) and the pane that takes the focus back when the window is
// activated again.
#include "panes/pane.h"

#include <cstdint>
#include <vector>

namespace kelp {

class PaneRoot : public ContainerPane {
public:
    using ContainerPane::ContainerPane;

    // The toolkit container that holds the widgets of the tree's panes
    // (a GtkFixed), or null while there is none.
    GtkWidget *Fixed() const { return mWidget; }

    // Every pane of the tree, in creation order.
    const std::vector<SubPane *> &PanesInCreationOrder() const { return mPanes; }

    // The colour a pane of the tree erases to: the window's back colour,
    // when it has one (else the toolkit's own background shows).
    virtual bool BackColor(uint32_t &colorWord) const {
        (void)colorWord;
        return false;
    }

    // Where the content starts in the root's own GdkWindow: below the menu
    // bar, when there is one.  Panes without a window of their own draw and
    // invalidate there, moved down by this.
    virtual int32_t ContentTop() const { return 0; }

    // The pane that regains the focus when the window is activated again.
    SubPane *StoredFocus() const { return mStoredFocus; }
    void SetStoredFocus(SubPane *pane) { mStoredFocus = pane; }

    // For SubPane: where a new pane given to the root itself goes (the last
    // registered pane that encloses it, else the root), joining and leaving
    // the creation order.  A pane that leaves is no longer the stored focus.
    SubPane *HolderFor(const SubPane *pane);
    void Register(SubPane *pane);
    void Unregister(SubPane *pane);

private:
    std::vector<SubPane *> mPanes;
    SubPane *mStoredFocus = nullptr;
};

} // namespace kelp
