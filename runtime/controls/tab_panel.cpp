// TabPanel: a GtkNotebook whose pages hold only empty GtkFixeds; the
// controls on a page stay widgets of the window and are shown and hidden
// by the panel.  Facing 0 puts the tabs on top, where people expect them
// and where _TabClickedOn looks for them.
//
// PagePanel: the same pages with no widget and no tabs: a count and a
// current page.
#include "controls/caption.h"
#include "controls/classes.h"
#include "controls/paged.h"

#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "objects/text.h"

#include "kelp/controls.h"
#include "kelp/objects.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kelp {
namespace {

ObjectHook *gTabGotFocus, *gTabLostFocus, *gTabMouseDown, *gTabMouseDrag, *gTabMouseUp,
    *gPageChange;

struct PanelRecord {
    RuntimeControl control;
    KelpString tabDefinition; // counted; captions, one per line
    ControlFont font;
    int32_t value;      // current page, 0-based
    int32_t facing;     // 0 top, 1 bottom, 2 left, 3 right
    int32_t panelCount; // PagePanel's pages
    uint8_t smallTabs;
};

PanelRecord *Record(RuntimeObject *o) { return reinterpret_cast<PanelRecord *>(o); }

bool gSwitching = false; // "switch-page" while we switch ourselves

// The captions of a tab definition: CR, LF or CR LF end a caption.
std::vector<std::string> SplitLines(std::string_view text) {
    std::vector<std::string> lines;
    std::string line;
    for (size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '\r' || c == '\n') {
            lines.push_back(line);
            line.clear();
            if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
                ++i;
        } else {
            line += c;
        }
    }
    if (!line.empty())
        lines.push_back(line);
    return lines;
}

class TabPanelPane : public PagedPane {
public:
    explicit TabPanelPane(PanelRecord *record) : PagedPane(&record->control), mRecord(record) {
        SetWidget(gtk_notebook_new());
        gtk_notebook_set_scrollable(GTK_NOTEBOOK(mWidget), TRUE);
        SetFacing(record->facing);
        for (const std::string &caption : SplitLines(objtext::View(record->tabDefinition)))
            InsertTab(TabCount(), caption);
        ConnectCommonSignals();
        g_signal_connect(mWidget, "switch-page", G_CALLBACK(OnSwitchPage), this);
        gtk_widget_show(mWidget);
        if (TabCount() > 0)
            ShowPage(std::min(std::max(record->value, 0), TabCount() - 1) + 1, false);
    }

    int32_t TabCount() const { return gtk_notebook_get_n_pages(GTK_NOTEBOOK(mWidget)); }

    void SetFacing(int32_t side) {
        if (side >= 0 && side <= 3) {
            static const GtkPositionType kSides[] = {GTK_POS_TOP, GTK_POS_BOTTOM, GTK_POS_LEFT,
                                                     GTK_POS_RIGHT};
            gtk_notebook_set_tab_pos(GTK_NOTEBOOK(mWidget), kSides[side]);
        }
    }

    void InsertTab(int32_t index, const std::string &caption) {
        GtkWidget *page = gtk_fixed_new();
        gtk_widget_show(page);
        GtkWidget *label = gtk_label_new("");
        gtk_label_set_text_with_mnemonic(GTK_LABEL(label), caption.c_str());
        ApplyFont(label, mRecord->font);
        gSwitching = true;
        gtk_notebook_insert_page(GTK_NOTEBOOK(mWidget), page, label, index);
        gSwitching = false;
        ShiftChildren(index, 1);
        if (mCurrent > index)
            ++mCurrent;
        if (mCurrent == 0)
            mCurrent = 1;
        ApplyPages();
    }

    void RemoveTab(int32_t index) {
        // The controls on that page go with it.
        for (SubPane *child : std::vector<SubPane *>(mChildren)) {
            auto *pane = dynamic_cast<ControlPane *>(child);
            if (!pane || pane->panelIndex != index + 1)
                continue;
            if (pane->Control())
                ControlClose(pane->Control());
            else
                pane->Close();
        }
        gSwitching = true;
        gtk_notebook_remove_page(GTK_NOTEBOOK(mWidget), index);
        gSwitching = false;
        ShiftChildren(index + 1, -1);
        mCurrent = gtk_notebook_get_current_page(GTK_NOTEBOOK(mWidget)) + 1;
        ApplyPages();
    }

    std::string TabText(int32_t index) const {
        GtkWidget *page = gtk_notebook_get_nth_page(GTK_NOTEBOOK(mWidget), index);
        const char *text =
            page ? gtk_notebook_get_tab_label_text(GTK_NOTEBOOK(mWidget), page) : nullptr;
        return text ? text : "";
    }
    void SetTabText(int32_t index, const std::string &text) {
        GtkWidget *page = gtk_notebook_get_nth_page(GTK_NOTEBOOK(mWidget), index);
        if (GtkWidget *label =
                page ? gtk_notebook_get_tab_label(GTK_NOTEBOOK(mWidget), page) : nullptr)
            gtk_label_set_text_with_mnemonic(GTK_LABEL(label), text.c_str());
    }

    // n from 1.  The router's Change: the pages' visibility, then the event.
    void ShowPage(int32_t n, bool fire) {
        mCurrent = n;
        if (gtk_notebook_get_current_page(GTK_NOTEBOOK(mWidget)) != n - 1) {
            gSwitching = true;
            gtk_notebook_set_current_page(GTK_NOTEBOOK(mWidget), n - 1);
            gSwitching = false;
        }
        if (mRunControl)
            Record(mRunControl)->value = n - 1;
        ApplyPages();
        bool alive;
        if (fire)
            FireLocked(gPageChange, &alive);
    }

    // The tab under a point (window coordinates), or -1; for tabs on top or
    // bottom only.
    int32_t TabClickedOn(int32_t x, int32_t y) {
        if (!mRunControl || Record(mRunControl)->facing > 1)
            return -1;
        GtkWidget *page = gtk_notebook_get_nth_page(GTK_NOTEBOOK(mWidget), 0);
        GtkWidget *label = page ? gtk_notebook_get_tab_label(GTK_NOTEBOOK(mWidget), page) : nullptr;
        int textHeight = 0;
        if (label) {
            PangoLayout *layout = gtk_widget_create_pango_layout(label, "Ag");
            pango_layout_get_pixel_size(layout, nullptr, &textHeight);
            g_object_unref(layout);
        }
        int32_t strip = textHeight + 10;
        bool top = Record(mRunControl)->facing == 0;
        if (top ? (y < bounds.top || y >= bounds.top + strip)
                : (y < bounds.bottom - strip || y >= bounds.bottom))
            return -1;
        int32_t left = bounds.left;
        for (int32_t i = 0; i < TabCount(); ++i) {
            GtkWidget *tab = gtk_notebook_get_tab_label(
                GTK_NOTEBOOK(mWidget), gtk_notebook_get_nth_page(GTK_NOTEBOOK(mWidget), i));
            int w = 0;
            PangoLayout *layout = gtk_widget_create_pango_layout(tab, TabText(i).c_str());
            pango_layout_get_pixel_size(layout, &w, nullptr);
            g_object_unref(layout);
            if (x >= left && x < left + w + 10)
                return i;
            left += w + 10;
        }
        return -1;
    }

    // The font is the tabs' captions'.
    void SetFont(const ControlFont &font) override {
        for (int32_t i = 0; i < TabCount(); ++i)
            ApplyFont(
                gtk_notebook_get_tab_label(GTK_NOTEBOOK(mWidget),
                                           gtk_notebook_get_nth_page(GTK_NOTEBOOK(mWidget), i)),
                font);
    }

    void GainFocus() override { FireFocus(gTabGotFocus); }
    void LoseFocus() override { FireFocus(gTabLostFocus); }

private:
    PanelRecord *mRecord; // the control's record, alive while bound

    static void OnSwitchPage(GtkNotebook *, gpointer, guint page, gpointer data) {
        if (gSwitching)
            return;
        gSwitching = true;
        static_cast<TabPanelPane *>(data)->ShowPage(int32_t(page) + 1, true);
        gSwitching = false;
    }
};

class PagePanelPane : public PagedPane {
public:
    explicit PagePanelPane(PanelRecord *record) : PagedPane(&record->control) {
        mCurrent = record->panelCount > 0
                       ? std::min(std::max(record->value, 0), record->panelCount - 1) + 1
                       : 0;
    }
    void SetCurrent(int32_t n) { mCurrent = n; }
};

TabPanelPane *TabPaneOf(RuntimeObject *self) { return PaneOf<TabPanelPane>(self); }
PagePanelPane *PagePaneOf(RuntimeObject *self) { return PaneOf<PagePanelPane>(self); }

bool IsTabPanel(RuntimeObject *self) {
    static RuntimeClass *tab = ClassForDefinition(TabPanelDefinition());
    return self && ClassInherits(self->klass, tab);
}

int32_t PageCount(RuntimeObject *self) {
    if (IsTabPanel(self)) {
        if (TabPanelPane *pane = TabPaneOf(self))
            return pane->TabCount();
        return int32_t(SplitLines(objtext::View(Record(self)->tabDefinition)).size());
    }
    return Record(self)->panelCount;
}

// The captions back into the tab definition, so that it follows the tabs.
void StoreCaptions(RuntimeObject *self, const std::vector<std::string> &captions) {
    std::string text;
    for (size_t i = 0; i < captions.size(); ++i)
        text += (i ? "\r" : "") + captions[i];
    KelpString s = objtext::Make(text);
    objtext::Release(Record(self)->tabDefinition);
    Record(self)->tabDefinition = s;
}

std::vector<std::string> Captions(RuntimeObject *self) {
    if (TabPanelPane *pane = TabPaneOf(self)) {
        std::vector<std::string> captions;
        for (int32_t i = 0; i < pane->TabCount(); ++i)
            captions.push_back(pane->TabText(i));
        return captions;
    }
    return SplitLines(objtext::View(Record(self)->tabDefinition));
}

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" void PagePanelCreatePane(RuntimeObject *self) {
    if (IsTabPanel(self))
        MakePane<TabPanelPane, PanelRecord>(self);
    else
        MakePane<PagePanelPane, PanelRecord>(self);
}

extern "C" int32_t PagePanelCountGetter(RuntimeObject *self, int32_t) {
    return self ? PageCount(self) : 0;
}

extern "C" int32_t PagePanelValueGetter(RuntimeObject *self, int32_t) {
    return self ? Record(self)->value : 0;
}

// Raises OutOfBoundsException for a page past the last.
extern "C" void PagePanelValueSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (!self)
        return;
    int32_t count = PageCount(self);
    if (value < 0 || value >= count) {
        RaiseOutOfBounds();
        return;
    }
    Record(self)->value = value;
    if (TabPanelPane *tab = TabPaneOf(self)) {
        tab->ShowPage(value + 1, true);
    } else if (PagePanelPane *page = PagePaneOf(self)) {
        page->SetCurrent(value + 1);
        page->ApplyPages();
        bool alive = page->LockForEvent();
        if (alive) {
            CallEvent(self, gPageChange);
            page->UnlockAfterEvent();
        }
    }
}

// Inserts a page (a tab with `text` on a TabPanel) before `index`; the
// count itself appends.
extern "C" void PagePanelInsertPage(RuntimeObject *self, int32_t index, KelpString text) {
    if (!self)
        return;
    if (index < 0 || index > PageCount(self)) {
        RaiseOutOfBounds();
        return;
    }
    if (IsTabPanel(self)) {
        std::vector<std::string> captions = Captions(self);
        captions.insert(captions.begin() + index, MnemonicCaption(text));
        StoreCaptions(self, captions);
        if (TabPanelPane *tab = TabPaneOf(self))
            tab->InsertTab(index, MnemonicCaption(text));
        return;
    }
    ++Record(self)->panelCount;
    if (PagePanelPane *page = PagePaneOf(self)) {
        page->ShiftChildren(index, 1);
        if (page->CurrentPage() == 0)
            page->SetCurrent(1);
        else if (page->CurrentPage() > index)
            page->SetCurrent(page->CurrentPage() + 1);
        page->ApplyPages();
    }
}

extern "C" void PagePanelAppendPage(RuntimeObject *self, KelpString text) {
    if (self)
        PagePanelInsertPage(self, PageCount(self), text);
}

extern "C" void PagePanelRemovePage(RuntimeObject *self, int32_t index) {
    if (!self)
        return;
    if (index < 0 || index >= PageCount(self)) {
        RaiseOutOfBounds();
        return;
    }
    if (IsTabPanel(self)) {
        std::vector<std::string> captions = Captions(self);
        captions.erase(captions.begin() + index);
        StoreCaptions(self, captions);
        if (TabPanelPane *tab = TabPaneOf(self))
            tab->RemoveTab(index);
        return;
    }
    --Record(self)->panelCount;
    if (PagePanelPane *page = PagePaneOf(self)) {
        for (SubPane *child : std::vector<SubPane *>(page->Children()))
            if (auto *pane = dynamic_cast<ControlPane *>(child);
                pane && pane->panelIndex == index + 1 && pane->Control())
                ControlClose(pane->Control());
        page->ShiftChildren(index + 1, -1);
        int32_t count = Record(self)->panelCount;
        page->SetCurrent(std::min(page->CurrentPage(), count));
        page->ApplyPages();
    }
}

extern "C" KelpString TabPanelCaptionGetter(RuntimeObject *self, int32_t index) {
    std::vector<std::string> captions = self ? Captions(self) : std::vector<std::string>();
    if (index < 0 || index >= int32_t(captions.size())) {
        RaiseOutOfBounds();
        return nullptr;
    }
    return objtext::Make(captions[size_t(index)]);
}

extern "C" void TabPanelCaptionSetter(RuntimeObject *self, int32_t index, KelpString text) {
    std::vector<std::string> captions = self ? Captions(self) : std::vector<std::string>();
    if (index < 0 || index >= int32_t(captions.size())) {
        RaiseOutOfBounds();
        return;
    }
    captions[size_t(index)] = MnemonicCaption(text);
    StoreCaptions(self, captions);
    if (TabPanelPane *tab = TabPaneOf(self))
        tab->SetTabText(index, captions[size_t(index)]);
}

extern "C" void TabPanelFacingSetter(RuntimeObject *self, int32_t, int32_t value) {
    StoreAndShow(self, &PanelRecord::facing, value, &TabPanelPane::SetFacing);
}

extern "C" void tabPanelTextFontSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (self)
        SetFontName(self, Record(self)->font, value);
}

extern "C" void tabPanelTextSizeSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (self)
        SetFontSize(self, Record(self)->font, value);
}

// Bold, Italic and Underline, by the row's selector 0, 1, 2.
extern "C" void tabPanelStyleSetter(RuntimeObject *self, int32_t selector, uint8_t value) {
    if (self)
        SetFontStyle(self, Record(self)->font, selector, value);
}

extern "C" int32_t TabPanelTabClickedOn(RuntimeObject *self, int32_t x, int32_t y) {
    TabPanelPane *tab = TabPaneOf(self);
    return tab ? tab->TabClickedOn(x, y) : -1;
}

extern "C" void PagePanelFinalizer(RuntimeObject *self) {
    if (!self)
        return;
    objtext::Release(Record(self)->tabDefinition);
    objtext::Release(Record(self)->font.textFont);
    Record(self)->tabDefinition = Record(self)->font.textFont = nullptr;
}

namespace kelp {

ObjectDefinition *PagePanelDefinition() {
    static const PropertyRow properties[] = {
        {0, "Value", &kTypeInteger, KELP_ENTRY(PagePanelValueGetter),
         KELP_ENTRY(PagePanelValueSetter), -9},
        {0, "PanelCount", &kTypeInteger, KELP_ENTRY(PagePanelCountGetter), KELP_PLAIN_FIELD,
         offsetof(PanelRecord, panelCount)},
    };
    static const ParameterRow indexParams[] = {{"index", &kTypeInteger}};
    static const ParameterRow insertParams[] = {{"index", &kTypeInteger}, {"text", &kTypeString}};
    static const ParameterRow appendParams[] = {{"text", &kTypeString}};
    static const MethodRow methods[] = {
        {"Append", nullptr, appendParams, 1, KELP_ENTRY(PagePanelAppendPage)},
        {"Insert", nullptr, insertParams, 2, KELP_ENTRY(PagePanelInsertPage)},
        {"Remove", nullptr, indexParams, 1, KELP_ENTRY(PagePanelRemovePage)},
    };
    static const EventRow events[] = {{"Change", "", nullptr, &gPageChange}};
    static const HookInstanceRow hooks[] = {
        {"CreatePane", reinterpret_cast<void *>(&PagePanelCreatePane)}};
    static const ClassDescription description = {
        .name = "PagePanel",
        .super = RectControlDefinition,
        .instanceSize = sizeof(PanelRecord),
        .finalizer = KELP_ENTRY(PagePanelFinalizer),
        .properties = properties,
        .methods = methods,
        .events = events,
        .hookInstances = hooks,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *TabPanelDefinition() {
    static const PropertyRow properties[] = {
        {0, "TabDefinition", &kTypeString, KELP_ENTRY(stringGetter), KELP_PLAIN_FIELD,
         offsetof(PanelRecord, tabDefinition)},
        {0, "Facing", &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(TabPanelFacingSetter),
         offsetof(PanelRecord, facing)},
        {0, "SmallTabs", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_PLAIN_FIELD,
         offsetof(PanelRecord, smallTabs)},
        KELP_FONT_ROWS(PanelRecord, font, tabPanelTextFontSetter, tabPanelTextSizeSetter,
                       tabPanelStyleSetter),
    };
    static const ParameterRow xyParams[] = {{"x", &kTypeInteger}, {"y", &kTypeInteger}};
    static const ParameterRow indexParams[] = {{"index", &kTypeInteger}};
    static const MethodRow methods[] = {
        {"Caption", &kTypeString, indexParams, 1, KELP_ENTRY(TabPanelCaptionGetter),
         KELP_ENTRY(TabPanelCaptionSetter)},
        {"_TabClickedOn", &kTypeInteger, xyParams, 2, KELP_ENTRY(TabPanelTabClickedOn)},
    };
    static const EventRow events[] = {
        {"GotFocus", "", nullptr, &gTabGotFocus},
        {"LostFocus", "", nullptr, &gTabLostFocus},
        {"MouseDown", "X As Integer, Y As Integer", "Boolean", &gTabMouseDown},
        {"MouseDrag", "X As Integer, Y As Integer", nullptr, &gTabMouseDrag},
        {"MouseUp", "X As Integer, Y As Integer", nullptr, &gTabMouseUp},
    };
    static const ClassDescription description = {
        .name = "TabPanel",
        .super = PagePanelDefinition,
        .instanceSize = sizeof(PanelRecord),
        .properties = properties,
        .methods = methods,
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
