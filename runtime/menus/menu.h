#pragma once
// The implementation behind a MenuItem object.  `Menu` holds what the
// language sees; `XMenuGTK` puts it on the toolkit.  An item's object owns
// one master; every menu the item is appended to holds a clone of it, its
// native entry there, and so does every window that shows a bar holding
// it.  A change made on any of them goes to the master and from there to
// each clone, so all show the same.  Trees are small (tens of items), so
// masters keep their clones in plain vectors.
#include "kelp/records.h"

#include <gtk/gtk.h>

#include <cstdint>
#include <string>
#include <vector>

namespace kelp {

class Window;
class XMenuGTK;

// The index of an item outside any control array, and _Lookup's default.
constexpr int32_t kMenuNotInArray = KELP_NOT_IN_ARRAY;

// Called instead of the dispatch when an item of a popped-up menu is chosen.
using PopupCallback = void (*)(XMenuGTK *chosen);

class Menu {
public:
    Menu() = default;
    virtual ~Menu();
    Menu(const Menu &) = delete;
    Menu &operator=(const Menu &) = delete;

    virtual void Enable() { mEnabled = true; }
    virtual void Disable() { mEnabled = false; }
    virtual void SetText(const std::string &text) { mText = text; }
    virtual void SetName(const std::string &name) { mName = name; }
    virtual void SetIndex(int32_t index) { mIndex = index; }
    virtual void SetTag(RuntimeObject *tag);
    virtual void SetBalloonHelp(const std::string &text) { mBalloonHelp = text; }
    virtual void SetDisabledHelp(const std::string &text) { mDisabledHelp = text; }
    virtual void SetChecked(bool flag) { mChecked = flag; }
    virtual void SetVisible(bool flag) { mVisible = flag; }
    virtual void SetCommandKey(const std::string &key) { mCommandKey = key; }
    virtual void SetBold(bool flag) { mBold = flag; }
    virtual void SetItalic(bool flag) { mItalic = flag; }
    virtual void SetUnderline(bool flag) { mUnderline = flag; }
    virtual void SetAutoEnable(bool flag) { mAutoEnable = flag; }
    virtual void Append(RuntimeObject *item) = 0;
    // `index` is 0 to Count(); the caller checks it.
    virtual void Insert(RuntimeObject *item, int32_t index) = 0;
    virtual void RemoveItem(RuntimeObject *item) = 0;
    // `index` is below Count(); the caller checks it.
    virtual void RemoveIndex(int32_t index) = 0;

    int32_t Count() const { return static_cast<int32_t>(mChildren.size()); }
    RuntimeObject *Child(int32_t index) const { return mChildren[static_cast<size_t>(index)]; }

    std::vector<RuntimeObject *> mChildren; // MenuItem objects, each counted
    int32_t mIndex = kMenuNotInArray;
    std::string mText, mName, mCommandKey;
    RuntimeObject *mTag = nullptr; // counted
    std::string mBalloonHelp, mDisabledHelp;
    bool mEnabled = true, mChecked = false, mVisible = true;
    bool mBold = false, mItalic = false, mUnderline = false, mAutoEnable = true;
};

class XMenuGTK : public Menu {
public:
    explicit XMenuGTK(bool isMenuBar);
    ~XMenuGTK() override;

    void Enable() override;
    void Disable() override;
    void SetText(const std::string &text) override;
    void SetName(const std::string &name) override;
    void SetIndex(int32_t index) override;
    void SetTag(RuntimeObject *tag) override;
    void SetChecked(bool flag) override;
    void SetVisible(bool flag) override;
    void SetCommandKey(const std::string &key) override;
    void SetBold(bool flag) override;
    void SetItalic(bool flag) override;
    void SetUnderline(bool flag) override;
    void SetAutoEnable(bool flag) override;
    void Append(RuntimeObject *item) override;
    void Insert(RuntimeObject *item, int32_t index) override;
    void RemoveItem(RuntimeObject *item) override;
    void RemoveIndex(int32_t index) override;

    // A new native entry of this item, with its children, counted among
    // the master's clones.
    XMenuGTK *Clone();
    void CopyChildrenTo(XMenuGTK *clone);
    XMenuGTK *GetMaster() const { return mMaster; }
    // The window of the tree's root, or null.
    Window *GetWindow() const;
    XMenuGTK *GetOwner() const { return mOwner; }
    XMenuGTK *Root();
    bool IsSeparator() const { return mIsSeparator; }
    bool HasChildren() const { return mHasChildren; }
    bool IsMenuBar() const { return mIsMenuBar; }
    // The MenuItem object whose master `item` is a clone of, searched in
    // this tree; a borrowed reference, or null.
    RuntimeObject *FindObject(XMenuGTK *item) const;
    void SetPopupCallback(PopupCallback callback) { mPopupCallback = callback; }
    PopupCallback GetPopupCallback() const { return mPopupCallback; }
    // A bar clone shown in a window: it takes the accelerators' group.
    void AttachToWindow(Window *window);

    // The entry of child `index` in this menu.
    XMenuGTK *Native(int32_t index) const { return mNativeChildren[static_cast<size_t>(index)]; }
    GtkWidget *BarWidget() const { return mBarWidget; }
    GtkWidget *MenuWidget() const { return mMenuWidget; }
    GtkWidget *ItemWidget() const { return mItemWidget; }
    // The text the entry shows, after the mnemonic rules; for tests.
    std::string LabelText() const;

private:
    // The one-object parts of the setters: master and clones each run them.
    void ApplyText();
    void ApplyEnabled(bool flag);
    void ApplyFont();
    void ApplyVisible();
    // The prefix that keeps labels in line in a menu with a checked item.
    std::string CheckPrefix() const;
    void ReplaceItemWidget(GtkWidget *widget);
    void ConnectItemSignals();
    void AttachSubmenu();
    GtkWidget *Shell() const { return mIsMenuBar ? mBarWidget : mMenuWidget; }
    void InsertNative(RuntimeObject *item, int32_t index);
    void RemoveNative(int32_t index);
    void DestroyWidgets();
    template <typename F> void ForMasterAndClones(F each);

    PopupCallback mPopupCallback = nullptr;
    Window *mWindow = nullptr;
    XMenuGTK *mOwner = nullptr;
    bool mHasChildren = false, mIsSeparator = false;
    std::string mAccelKey; // the command key whose accelerator the entry has
    XMenuGTK *mMaster;
    std::vector<XMenuGTK *> mClones;
    std::vector<XMenuGTK *> mNativeChildren; // in step with mChildren
    bool mIsMenuBar;
    GtkWidget *mBarWidget = nullptr, *mMenuWidget = nullptr, *mItemWidget = nullptr;
};

// The implementation of a MenuItem object (its master); null for null or an
// object of another class.
XMenuGTK *MenuImpOf(RuntimeObject *item);

// Modifiers of a command key as toolkit masks: 0 for an empty key, else
// Control always, Shift for "shift" or "shft", Alt for "option" or "alt",
// the words found without regard to case.
uint32_t CommandKeyModifiers(std::string_view key);
// A menu text as the toolkit's label: "&&" is "&", "&" marks the mnemonic,
// "_" stays literal.
std::string MnemonicLabel(std::string_view text);

// What choosing an entry of a bar does, set by the dispatch: the item's
// object, with the window that showed it (null: the front window).
void SetMenuChosenHandler(void (*chosen)(RuntimeObject *item, Window *window));

// One row of the accelerator table.
struct AccelRow {
    XMenuGTK *item;
    std::string key; // the command key's last character
    uint32_t modifiers;
};
const std::vector<AccelRow> &AcceleratorTable();

} // namespace kelp
