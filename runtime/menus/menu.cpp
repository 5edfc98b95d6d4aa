#include "menus/menu.h"

#include "menus/classes.h"

#include "base/ascii.h"
#include "objects/definitions.h"
#include "windows/window.h"

#include "kelp/objects.h"

#include <algorithm>

namespace kelp {
namespace {

// One group serves every menu: a window showing a bar takes it, so the
// toolkit draws each item's shortcut beside it.
GtkAccelGroup *gAccelGroup = nullptr;
std::vector<AccelRow> gAccelTable;

constexpr const char *kCheckPrefix = "    ";
constexpr int kCheckSquare = 20; // the mark's square at the item's left

void RemoveAccelRows(const XMenuGTK *item) {
    std::erase_if(gAccelTable, [item](const AccelRow &row) { return row.item == item; });
}

bool Contains(std::string_view text, std::string_view word) {
    return AsciiLowered(text).find(word) != std::string::npos;
}

guint KeyvalOf(const std::string &key) {
    return key.empty()
               ? 0
               : gdk_keyval_to_lower(gdk_unicode_to_keyval(static_cast<unsigned char>(key.back())));
}

// Takes a widget for good: toolkit containers drop theirs when destroyed.
GtkWidget *Keep(GtkWidget *widget) {
    g_object_ref_sink(widget);
    return widget;
}

void Drop(GtkWidget *&widget, gpointer data) {
    if (!widget)
        return;
    g_signal_handlers_disconnect_matched(widget, G_SIGNAL_MATCH_DATA, 0, 0, nullptr, nullptr, data);
    gtk_widget_destroy(widget);
    g_object_unref(widget);
    widget = nullptr;
}

// The native entry was chosen.
void OnActivate(GtkMenuItem *, gpointer data);

// Draws the check mark of a checked entry over what the toolkit drew.
gboolean OnItemExpose(GtkWidget *widget, GdkEventExpose *event, gpointer data) {
    auto *item = static_cast<XMenuGTK *>(data);
    if (!item->mChecked || item->HasChildren() || item->IsSeparator())
        return FALSE;
    GTK_WIDGET_GET_CLASS(widget)->expose_event(widget, event);
    const int y = widget->allocation.y + (widget->allocation.height - kCheckSquare) / 2;
    gtk_paint_check(widget->style, widget->window, GTK_STATE_NORMAL, GTK_SHADOW_IN, &event->area,
                    widget, "check", widget->allocation.x + 2, y, kCheckSquare, kCheckSquare);
    return TRUE;
}

// The window's key handler searches the shortcuts itself and says when it
// took one; the toolkit shows them beside the items but never chooses an
// item by its accelerator, which would choose it a second time, or choose
// an item of another window's bar.
gboolean NeverByAccelerator(GtkWidget *, guint, gpointer) { return FALSE; }

PopupCallback RootPopupCallback(XMenuGTK *item) {
    for (XMenuGTK *at = item; at; at = at->GetOwner())
        if (at->GetPopupCallback())
            return at->GetPopupCallback();
    return nullptr;
}

// Set by the dispatch layer: what choosing an item of a bar does.
void (*gChosen)(RuntimeObject *item, Window *window) = nullptr;

void OnActivate(GtkMenuItem *, gpointer data) {
    auto *item = static_cast<XMenuGTK *>(data);
    if (item->HasChildren() || !item->mEnabled)
        return;
    if (PopupCallback callback = RootPopupCallback(item)) {
        callback(item);
        return;
    }
    XMenuGTK *root = item->Root();
    RuntimeObject *object = root->FindObject(item);
    if (object && gChosen) {
        RuntimeLockObject(object);
        gChosen(object, nullptr);
        RuntimeUnlockObject(object);
    }
}

} // namespace

void SetMenuChosenHandler(void (*chosen)(RuntimeObject *item, Window *window)) { gChosen = chosen; }

// ------------------------------------------------------------- helpers

uint32_t CommandKeyModifiers(std::string_view key) {
    if (key.empty())
        return 0;
    uint32_t modifiers = GDK_CONTROL_MASK;
    if (Contains(key, "shift") || Contains(key, "shft"))
        modifiers |= GDK_SHIFT_MASK;
    if (Contains(key, "option") || Contains(key, "alt"))
        modifiers |= GDK_MOD1_MASK;
    return modifiers;
}

std::string MnemonicLabel(std::string_view text) {
    std::string label;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '&' && i + 1 < text.size() && text[i + 1] == '&') {
            label += '&';
            ++i;
        } else if (text[i] == '&') {
            label += '_';
        } else if (text[i] == '_') {
            label += "__";
        } else {
            label += text[i];
        }
    }
    return label;
}

const std::vector<AccelRow> &AcceleratorTable() { return gAccelTable; }

XMenuGTK *MenuImpOf(RuntimeObject *item) {
    // A property of type MenuBar may have been given any object at all.
    static RuntimeClass *menuItem = ClassForDefinition(MenuItemDefinition());
    if (!item || !RuntimeObjectIsa(item, menuItem))
        return nullptr;
    return static_cast<XMenuGTK *>(reinterpret_cast<RuntimeMenuItem *>(item)->mImp);
}

// ------------------------------------------------------------- Menu

Menu::~Menu() { RuntimeUnlockObject(mTag); }

void Menu::SetTag(RuntimeObject *tag) {
    RuntimeLockObject(tag);
    RuntimeUnlockObject(mTag);
    mTag = tag;
}

// ------------------------------------------------------------- XMenuGTK

XMenuGTK::XMenuGTK(bool isMenuBar) : mMaster(this), mIsMenuBar(isMenuBar) {
    if (!gAccelGroup)
        gAccelGroup = gtk_accel_group_new();
    if (mIsMenuBar)
        mBarWidget = Keep(gtk_menu_bar_new());
    mMenuWidget = Keep(gtk_menu_new());
    mItemWidget = Keep(gtk_menu_item_new_with_label(""));
    ConnectItemSignals();
    gtk_menu_set_accel_group(GTK_MENU(mMenuWidget), gAccelGroup);
}

XMenuGTK::~XMenuGTK() {
    RemoveAccelRows(this);
    if (mMaster != this) {
        std::erase(mMaster->mClones, this);
    } else {
        // Clones outliving their master stand on their own from now on.
        for (XMenuGTK *clone : mClones)
            clone->mMaster = clone;
    }
    if (mWindow && mWindow->GtkWin())
        gtk_window_remove_accel_group(GTK_WINDOW(mWindow->GtkWin()), gAccelGroup);
    for (XMenuGTK *native : mNativeChildren)
        delete native;
    mNativeChildren.clear();
    std::vector<RuntimeObject *> children = std::move(mChildren);
    mChildren.clear();
    for (RuntimeObject *child : children)
        RuntimeUnlockObject(child);
    DestroyWidgets();
}

void XMenuGTK::DestroyWidgets() {
    // The submenu first: destroying the entry would take it along.
    Drop(mMenuWidget, this);
    Drop(mItemWidget, this);
    Drop(mBarWidget, this);
}

void XMenuGTK::ConnectItemSignals() {
    g_signal_connect(mItemWidget, "activate", G_CALLBACK(OnActivate), this);
    g_signal_connect(mItemWidget, "expose-event", G_CALLBACK(OnItemExpose), this);
    g_signal_connect(mItemWidget, "can-activate-accel", G_CALLBACK(NeverByAccelerator), this);
}

template <typename F> void XMenuGTK::ForMasterAndClones(F each) {
    XMenuGTK *master = mMaster;
    each(master);
    for (XMenuGTK *clone : std::vector<XMenuGTK *>(master->mClones))
        each(clone);
}

XMenuGTK *XMenuGTK::Root() {
    XMenuGTK *at = this;
    while (at->mOwner)
        at = at->mOwner;
    return at;
}

Window *XMenuGTK::GetWindow() const {
    const XMenuGTK *at = this;
    while (at->mOwner)
        at = at->mOwner;
    return at->mWindow;
}

std::string XMenuGTK::LabelText() const {
    if (mIsSeparator || !mItemWidget)
        return "";
    GtkWidget *label = gtk_bin_get_child(GTK_BIN(mItemWidget));
    return label && GTK_IS_LABEL(label) ? gtk_label_get_label(GTK_LABEL(label)) : "";
}

// ------------------------------------------------------------- text

std::string XMenuGTK::CheckPrefix() const {
    if (!mOwner)
        return mChecked ? kCheckPrefix : "";
    for (RuntimeObject *child : mOwner->mChildren)
        if (XMenuGTK *imp = MenuImpOf(child); imp && imp->mChecked)
            return kCheckPrefix;
    return "";
}

void XMenuGTK::ReplaceItemWidget(GtkWidget *widget) {
    GtkWidget *old = mItemWidget;
    GtkWidget *shell = old->parent;
    int position = -1;
    if (shell) {
        GList *items = gtk_container_get_children(GTK_CONTAINER(shell));
        position = g_list_index(items, old);
        g_list_free(items);
    }
    // The submenu stays ours: destroying the entry would take it along.
    if (GTK_MENU_ITEM(old)->submenu == mMenuWidget)
        gtk_menu_item_remove_submenu(GTK_MENU_ITEM(old));
    Drop(mItemWidget, this);
    mAccelKey.clear(); // went with the widget
    mItemWidget = Keep(widget);
    ConnectItemSignals();
    if (shell) {
        gtk_menu_shell_insert(GTK_MENU_SHELL(shell), mItemWidget, position);
        if (mVisible)
            gtk_widget_show(mItemWidget);
    }
    if (mHasChildren && !mIsMenuBar && !mIsSeparator)
        AttachSubmenu();
}

void XMenuGTK::AttachSubmenu() {
    if (gtk_menu_get_attach_widget(GTK_MENU(mMenuWidget)) != mItemWidget)
        gtk_menu_item_set_submenu(GTK_MENU_ITEM(mItemWidget), mMenuWidget);
}

void XMenuGTK::ApplyText() {
    if (mText == "-") {
        RemoveAccelRows(this);
        mAccelKey.clear();
        if (!mIsSeparator) {
            mIsSeparator = true;
            ReplaceItemWidget(gtk_separator_menu_item_new());
        }
        return;
    }
    if (mIsSeparator) {
        mIsSeparator = false;
        ReplaceItemWidget(gtk_menu_item_new_with_label(""));
    }
    const std::string label = CheckPrefix() + MnemonicLabel(mText);
    if (GtkWidget *child = gtk_bin_get_child(GTK_BIN(mItemWidget)); child && GTK_IS_LABEL(child))
        gtk_label_set_text_with_mnemonic(GTK_LABEL(child), label.c_str());
    RemoveAccelRows(this);
    if (uint32_t old = CommandKeyModifiers(mAccelKey))
        gtk_widget_remove_accelerator(mItemWidget, gAccelGroup, KeyvalOf(mAccelKey),
                                      GdkModifierType(old));
    mAccelKey.clear();
    if (uint32_t modifiers = CommandKeyModifiers(mCommandKey)) {
        gtk_widget_add_accelerator(mItemWidget, "activate", gAccelGroup, KeyvalOf(mCommandKey),
                                   GdkModifierType(modifiers), GTK_ACCEL_VISIBLE);
        mAccelKey = mCommandKey;
        gAccelTable.push_back({this, std::string(1, mCommandKey.back()), modifiers});
    }
    ApplyFont();
}

void XMenuGTK::SetText(const std::string &text) {
    ForMasterAndClones([&](XMenuGTK *m) {
        m->mText = text;
        m->ApplyText();
    });
}

void XMenuGTK::SetCommandKey(const std::string &key) {
    ForMasterAndClones([&](XMenuGTK *m) {
        m->mCommandKey = key;
        m->ApplyText();
    });
}

void XMenuGTK::SetName(const std::string &name) {
    ForMasterAndClones([&](XMenuGTK *m) { m->mName = name; });
}

void XMenuGTK::SetIndex(int32_t index) {
    ForMasterAndClones([&](XMenuGTK *m) { m->mIndex = index; });
}

void XMenuGTK::SetTag(RuntimeObject *tag) {
    ForMasterAndClones([&](XMenuGTK *m) { m->Menu::SetTag(tag); });
}

void XMenuGTK::SetAutoEnable(bool flag) {
    ForMasterAndClones([&](XMenuGTK *m) { m->mAutoEnable = flag; });
}

// ------------------------------------------------------------- marks, fonts

void XMenuGTK::SetChecked(bool flag) {
    ForMasterAndClones([&](XMenuGTK *m) {
        m->mChecked = flag;
        if (!m->mIsSeparator)
            m->ApplyText();
        // A menu with any checked entry indents all of them alike.
        if (XMenuGTK *owner = m->mOwner)
            for (XMenuGTK *sibling : owner->mNativeChildren)
                if (sibling != m && !sibling->mIsSeparator)
                    sibling->ApplyText();
        if (m->mItemWidget)
            gtk_widget_queue_draw(m->mItemWidget);
    });
}

void XMenuGTK::ApplyFont() {
    if (mIsSeparator)
        return;
    PangoFontDescription *font = pango_font_description_new();
    pango_font_description_set_weight(font, mBold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
    pango_font_description_set_style(font, mItalic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
    GtkWidget *label = gtk_bin_get_child(GTK_BIN(mItemWidget));
    if (label && GTK_IS_LABEL(label)) {
        gtk_widget_modify_font(label, font);
        PangoAttrList *attributes = pango_attr_list_new();
        if (mUnderline)
            pango_attr_list_insert(attributes, pango_attr_underline_new(PANGO_UNDERLINE_SINGLE));
        gtk_label_set_attributes(GTK_LABEL(label), attributes);
        pango_attr_list_unref(attributes);
    }
    pango_font_description_free(font);
}

void XMenuGTK::SetBold(bool flag) {
    ForMasterAndClones([&](XMenuGTK *m) {
        m->mBold = flag;
        m->ApplyFont();
    });
}

void XMenuGTK::SetItalic(bool flag) {
    ForMasterAndClones([&](XMenuGTK *m) {
        m->mItalic = flag;
        m->ApplyFont();
    });
}

void XMenuGTK::SetUnderline(bool flag) {
    ForMasterAndClones([&](XMenuGTK *m) {
        m->mUnderline = flag;
        m->ApplyFont();
    });
}

void XMenuGTK::ApplyVisible() {
    mVisible ? gtk_widget_show(mItemWidget) : gtk_widget_hide(mItemWidget);
}

void XMenuGTK::SetVisible(bool flag) {
    ForMasterAndClones([&](XMenuGTK *m) {
        m->mVisible = flag;
        m->ApplyVisible();
    });
}

// ------------------------------------------------------------- enabling

void XMenuGTK::ApplyEnabled(bool flag) {
    mEnabled = flag;
    if (mIsSeparator)
        return;
    // A title standing in the bar stays sensitive: it still opens.
    const bool sensitive = flag || (mOwner && mOwner->mIsMenuBar);
    gtk_widget_set_sensitive(mItemWidget, sensitive ? TRUE : FALSE);
}

void XMenuGTK::Enable() {
    ForMasterAndClones([](XMenuGTK *m) {
        // The titles above an enabled entry are enabled with it.
        if (!m->mIsSeparator && m->mOwner && !m->mOwner->mMaster->mEnabled)
            m->mOwner->Enable();
        m->ApplyEnabled(true);
    });
}

void XMenuGTK::Disable() {
    ForMasterAndClones([](XMenuGTK *m) { m->ApplyEnabled(false); });
}

// ------------------------------------------------------------- clones

XMenuGTK *XMenuGTK::Clone() {
    auto *clone = new XMenuGTK(mIsMenuBar);
    clone->mIndex = mIndex;
    clone->mName = mName;
    clone->mText = mText;
    clone->mBold = mBold;
    clone->mItalic = mItalic;
    clone->mUnderline = mUnderline;
    clone->mAutoEnable = mAutoEnable;
    clone->mCommandKey = mCommandKey;
    clone->mVisible = mVisible;
    clone->mChecked = mChecked;
    clone->Menu::SetTag(mTag);
    clone->ApplyText();
    clone->ApplyEnabled(mEnabled);
    clone->mMaster = mMaster;
    CopyChildrenTo(clone);
    mMaster->mClones.push_back(clone);
    return clone;
}

void XMenuGTK::CopyChildrenTo(XMenuGTK *clone) {
    for (RuntimeObject *child : mChildren)
        clone->InsertNative(child, clone->Count());
}

void XMenuGTK::AttachToWindow(Window *window) {
    mWindow = window;
    if (window && window->GtkWin())
        gtk_window_add_accel_group(GTK_WINDOW(window->GtkWin()), gAccelGroup);
}

RuntimeObject *XMenuGTK::FindObject(XMenuGTK *item) const {
    if (!item)
        return nullptr;
    XMenuGTK *master = item->mMaster;
    // Breadth first, as the tree is walked everywhere else.
    std::vector<const XMenuGTK *> menus{this};
    for (size_t i = 0; i < menus.size(); ++i)
        for (RuntimeObject *child : menus[i]->mChildren) {
            XMenuGTK *imp = MenuImpOf(child);
            if (imp == master)
                return child;
            if (imp && imp->mHasChildren)
                menus.push_back(imp);
        }
    return nullptr;
}

// ------------------------------------------------------------- children

// This menu's own part of Insert: the item's clone becomes its entry here.
void XMenuGTK::InsertNative(RuntimeObject *item, int32_t index) {
    XMenuGTK *native = MenuImpOf(item)->Clone();
    RuntimeLockObject(item);
    mChildren.insert(mChildren.begin() + index, item);
    mNativeChildren.insert(mNativeChildren.begin() + index, native);
    if (!mIsMenuBar && !mHasChildren) {
        AttachSubmenu();
        mHasChildren = true;
        ApplyText();
    }
    mHasChildren = true;
    native->mOwner = this;
    // Its label may now need the check prefix of its new menu.
    if (!native->mIsSeparator)
        native->ApplyText();
    native->ApplyEnabled(native->mEnabled);
    gtk_menu_shell_insert(GTK_MENU_SHELL(Shell()), native->mItemWidget, index);
    if (mIsMenuBar || native->mVisible)
        gtk_widget_show(native->mItemWidget);
}

void XMenuGTK::Append(RuntimeObject *item) { Insert(item, Count()); }

void XMenuGTK::Insert(RuntimeObject *item, int32_t index) {
    if (!MenuImpOf(item))
        return;
    ForMasterAndClones([&](XMenuGTK *m) { m->InsertNative(item, index); });
}

void XMenuGTK::RemoveNative(int32_t index) {
    XMenuGTK *native = mNativeChildren[static_cast<size_t>(index)];
    RuntimeObject *child = mChildren[static_cast<size_t>(index)];
    gtk_container_remove(GTK_CONTAINER(Shell()), native->mItemWidget);
    mNativeChildren.erase(mNativeChildren.begin() + index);
    mChildren.erase(mChildren.begin() + index);
    delete native;
    RuntimeUnlockObject(child);
}

void XMenuGTK::RemoveIndex(int32_t index) {
    if (index < 0 || index >= Count())
        return;
    ForMasterAndClones([&](XMenuGTK *m) { m->RemoveNative(index); });
}

void XMenuGTK::RemoveItem(RuntimeObject *item) {
    auto it = std::find(mChildren.begin(), mChildren.end(), item);
    if (it != mChildren.end())
        RemoveIndex(static_cast<int32_t>(it - mChildren.begin()));
}

} // namespace kelp
