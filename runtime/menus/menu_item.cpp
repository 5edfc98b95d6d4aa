// The MenuItem class and its subclasses: the objects compiled code holds,
// each with its master implementation, and every accessor and method of
// the language on them.
#include "menus/classes.h"
#include "menus/menu.h"

#include "base/fatal_report.h"
#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "objects/text.h"

#include "kelp/menus.h"
#include "kelp/objects.h"

#include <cstddef>
#include <string>

namespace kelp {
namespace {

constexpr const char *kFile = "menubar";

ObjectHook *gAction, *gEnableMenu;

RuntimeMenuItem *Record(RuntimeObject *item) { return reinterpret_cast<RuntimeMenuItem *>(item); }

// The item's implementation for an accessor: nil raises, a missing
// implementation is reported; either way the caller returns 0.
XMenuGTK *Imp(RuntimeObject *self, int line) {
    if (!self) {
        RaiseNilObject();
        return nullptr;
    }
    XMenuGTK *imp = MenuImpOf(self);
    if (!imp)
        AssertionFailed(kFile, line, "self->mImp");
    return imp;
}
#define IMP_OR(self, result)                                                                       \
    XMenuGTK *imp = Imp(self, __LINE__);                                                           \
    if (!imp)                                                                                      \
        return result;

std::string Text(KelpString s) { return std::string(objtext::View(s)); }
KelpString NewText(const std::string &s) { return objtext::Make(s); }

bool InChildren(const Menu *menu, int32_t index) {
    if (index >= 0 && index < menu->Count())
        return true;
    RaiseOutOfBounds();
    return false;
}

RuntimeObject *Counted(RuntimeObject *object) {
    RuntimeLockObject(object);
    return object;
}

// Breadth first over the items below `menu`: the first of that name and
// index (kMenuNotInArray for an item outside any array).
RuntimeObject *Lookup(XMenuGTK *menu, std::string_view name, int32_t index) {
    std::vector<XMenuGTK *> menus{menu};
    for (size_t i = 0; i < menus.size(); ++i)
        for (RuntimeObject *child : menus[i]->mChildren) {
            XMenuGTK *imp = MenuImpOf(child);
            if (!imp)
                continue;
            if (objtext::SameName(imp->mName, name) && imp->mIndex == index)
                return child;
            if (imp->HasChildren())
                menus.push_back(imp);
        }
    return nullptr;
}

const TypeRecord kMenuItemType{kTypeObjectOf, nullptr, nullptr, 0, &MenuItemDefinition};

} // namespace

ObjectHook *MenuActionHook() { return gAction; }
ObjectHook *EnableMenuHook() { return gEnableMenu; }

ObjectDefinition *MenuItemDefinition() {
    static const PropertyRow properties[] = {
        {0, "Name", &kTypeString, KELP_ENTRY(RuntimeMenuItemNameGetter),
         KELP_ENTRY(RuntimeMenuItemNameSetter)},
        {0, "Index", &kTypeInteger, KELP_ENTRY(RuntimeMenuItemIndexGetter),
         KELP_ENTRY(RuntimeMenuItemIndexSetter)},
        {0, "Tag", &kTypePtr, KELP_ENTRY(RuntimeMenuItemTagGetter),
         KELP_ENTRY(RuntimeMenuItemTagSetter)},
        {0, "BalloonHelp", &kTypeString, KELP_ENTRY(RuntimeMenuItemBalloonHelpGetter),
         KELP_ENTRY(RuntimeMenuItemBalloonHelpSetter)},
        {0, "DisabledBalloonHelp", &kTypeString, KELP_ENTRY(RuntimeMenuItemDisabledHelpGetter),
         KELP_ENTRY(RuntimeMenuItemDisabledHelpSetter)},
        {0, "Text", &kTypeString, KELP_ENTRY(RuntimeMenuItemTextGetter),
         KELP_ENTRY(RuntimeMenuItemTextSetter)},
        {0, "Checked", &kTypeBoolean, KELP_ENTRY(RuntimeMenuItemCheckedGetter),
         KELP_ENTRY(RuntimeMenuItemCheckedSetter)},
        {0, "Enabled", &kTypeBoolean, KELP_ENTRY(RuntimeMenuItemEnabledGetter),
         KELP_ENTRY(RuntimeMenuItemEnabledSetter)},
        {0, "Visible", &kTypeBoolean, KELP_ENTRY(RuntimeMenuItemVisibleGetter),
         KELP_ENTRY(RuntimeMenuItemVisibleSetter)},
        {0, "CommandKey", &kTypeString, KELP_ENTRY(RuntimeMenuItemCommandKeyGetter),
         KELP_ENTRY(RuntimeMenuItemCommandKeySetter)},
        {0, "KeyboardShortcut", &kTypeString, KELP_ENTRY(RuntimeMenuItemCommandKeyGetter),
         KELP_ENTRY(RuntimeMenuItemCommandKeySetter)},
        {0, "_Bold", &kTypeBoolean, KELP_ENTRY(RuntimeMenuItemBoldGetter),
         KELP_ENTRY(RuntimeMenuItemBoldSetter)},
        {0, "_Italic", &kTypeBoolean, KELP_ENTRY(RuntimeMenuItemItalicsGetter),
         KELP_ENTRY(RuntimeMenuItemItalicsSetter)},
        {0, "_Underline", &kTypeBoolean, KELP_ENTRY(RuntimeMenuItemUnderlineGetter),
         KELP_ENTRY(RuntimeMenuItemUnderlineSetter)},
        {0, "AutoEnable", &kTypeBoolean, KELP_ENTRY(RuntimeMenuItemAutoEnableGetter),
         KELP_ENTRY(RuntimeMenuItemAutoEnableSetter)},
    };
    static const ParameterRow indexParams[] = {{"index", &kTypeInteger}};
    static const ParameterRow nameParams[] = {{"name", &kTypeString}};
    static const ParameterRow itemParams[] = {{"item", &kMenuItemType}};
    static const ParameterRow insertParams[] = {{"index", &kTypeInteger}, {"item", &kMenuItemType}};
    static const ParameterRow lookupArrayParams[] = {{"name", &kTypeString},
                                                     {"index", &kTypeInteger}};
    static const ParameterRow constructorParams[] = {{"Text", &kTypeString},
                                                     {"tag", &kTypePtr, "Nil"}};
    static const ParameterRow pointParams[] = {{"x", &kTypeInteger}, {"y", &kTypeInteger}};
    static const ParameterRow swapParams[] = {{"name", &kTypeString}, {"swapWith", &kMenuItemType}};
    static const MethodRow methods[] = {
        {"Enable", nullptr, nullptr, 0, KELP_ENTRY(RuntimeEnableMenu)},
        {"Close", nullptr, nullptr, 0, KELP_ENTRY(RuntimeCloseMenuItem)},
        {"Item", &kMenuItemType, indexParams, 1, KELP_ENTRY(RuntimeMenuItemItem)},
        {"Count", &kTypeInteger, nullptr, 0, KELP_ENTRY(RuntimeMenuItemCount)},
        {"Child", &kMenuItemType, nameParams, 1, KELP_ENTRY(RuntimeMenuItemChild)},
        {"Append", nullptr, itemParams, 1, KELP_ENTRY(RuntimeMenuItemAppend)},
        {"Insert", nullptr, insertParams, 2, KELP_ENTRY(RuntimeMenuItemInsert)},
        {"Remove", nullptr, indexParams, 1, KELP_ENTRY(RuntimeMenuItemRemoveIndex)},
        {"Remove", nullptr, itemParams, 1, KELP_ENTRY(RuntimeMenuItemRemoveItem)},
        {"Remove", nullptr, nameParams, 1, KELP_ENTRY(RuntimeMenuItemRemoveByName)},
        {"_Lookup", &kMenuItemType, nameParams, 1, KELP_ENTRY(RuntimeMenuItemLookup)},
        {"_Lookup", &kMenuItemType, lookupArrayParams, 2, KELP_ENTRY(RuntimeMenuItemLookupArray)},
        {"MenuItem", nullptr, nullptr, 0, KELP_ENTRY(RuntimeMenuItemDefaultConstructor)},
        {"MenuItem", nullptr, constructorParams, 2, KELP_ENTRY(MenuItemConstructor)},
        {"PopUp", &kMenuItemType, nullptr, 0, KELP_ENTRY(RuntimeMenuItemPopUpByCursor)},
        {"PopUp", &kMenuItemType, pointParams, 2, KELP_ENTRY(RuntimeMenuItemPopUp)},
        {"_Swap", nullptr, swapParams, 2, KELP_ENTRY(RuntimeMenuItemSwap)},
    };
    static const EventRow events[] = {
        {"Action", "", "Boolean", &gAction},
        {"EnableMenu", "", nullptr, &gEnableMenu},
    };
    static const ClassDescription description = {
        .name = "MenuItem",
        .instanceSize = sizeof(RuntimeMenuItem),
        .initializer = KELP_ENTRY(MenuItemInitializer),
        .finalizer = KELP_ENTRY(MenuItemFinalizer),
        .properties = properties,
        .methods = methods,
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *MenuBarDefinition() {
    static const ParameterRow installParams[] = {{"installThis", &kMenuItemType}};
    static const MethodRow methods[] = {
        {"_InstallClone", nullptr, installParams, 1, KELP_ENTRY(MenuBarInstallClone)},
    };
    static const ClassDescription description = {
        .name = "MenuBar",
        .super = MenuItemDefinition,
        .instanceSize = sizeof(RuntimeMenuItem),
        .initializer = KELP_ENTRY(MenuBarInitializer),
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *QuitMenuItemDefinition() {
    static const HookInstanceRow actions[] = {
        {"Action", reinterpret_cast<void *>(&QuitMenuAction)}};
    static const ClassDescription description = {
        .name = "QuitMenuItem",
        .super = MenuItemDefinition,
        .instanceSize = sizeof(RuntimeMenuItem),
        .hookInstances = actions,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *PrefsMenuItemDefinition() {
    static const HookInstanceRow actions[] = {
        {"Action", reinterpret_cast<void *>(&PrefsMenuAction)}};
    static const ClassDescription description = {
        .name = "PrefsMenuItem",
        .super = MenuItemDefinition,
        .instanceSize = sizeof(RuntimeMenuItem),
        .hookInstances = actions,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *AppleMenuItemDefinition() {
    static const ClassDescription description = {
        .name = "AppleMenuItem",
        .super = MenuItemDefinition,
        .instanceSize = sizeof(RuntimeMenuItem),
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

// Compiled code overrides _Install to build its bar; the library's does
// nothing.
ObjectDefinition *MenuBarInstallerDefinition() {
    static const TypeRecord barType{kTypeObjectOf, nullptr, nullptr, 0, &MenuBarDefinition};
    static const ParameterRow installParams[] = {{"owner", &barType}};
    static const MethodRow methods[] = {{"_Install", nullptr, installParams, 1, {}}};
    static const ClassDescription description = {
        .name = "_MenuBarInstaller",
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

// ------------------------------------------------------------- life cycle

extern "C" void MenuItemInitializer(RuntimeObject *self) {
    if (self)
        Record(self)->mImp = new XMenuGTK(false);
}

extern "C" void MenuBarInitializer(RuntimeObject *self) {
    if (!self)
        return;
    delete MenuImpOf(self);
    Record(self)->mImp = new XMenuGTK(true);
}

extern "C" void MenuItemFinalizer(RuntimeObject *self) {
    if (!self)
        return;
    XMenuGTK *imp = MenuImpOf(self);
    Record(self)->mImp = nullptr;
    delete imp;
}

extern "C" void RuntimeMenuItemDefaultConstructor(RuntimeObject *self) {
    if (!self)
        RaiseNilObject();
}

extern "C" void MenuItemConstructor(RuntimeObject *self, KelpString text, RuntimeObject *tag) {
    IMP_OR(self, );
    imp->SetText(Text(text));
    imp->SetTag(tag);
}

// ------------------------------------------------------------- properties

extern "C" KelpString RuntimeMenuItemNameGetter(RuntimeObject *self, int32_t) {
    IMP_OR(self, nullptr);
    return NewText(imp->mName);
}
extern "C" void RuntimeMenuItemNameSetter(RuntimeObject *self, int32_t, KelpString value) {
    IMP_OR(self, );
    imp->SetName(Text(value));
}
extern "C" int32_t RuntimeMenuItemIndexGetter(RuntimeObject *self, int32_t) {
    IMP_OR(self, 0);
    return imp->mIndex;
}
extern "C" void RuntimeMenuItemIndexSetter(RuntimeObject *self, int32_t, int32_t value) {
    IMP_OR(self, );
    imp->SetIndex(value);
}
extern "C" RuntimeObject *RuntimeMenuItemTagGetter(RuntimeObject *self, int32_t) {
    IMP_OR(self, nullptr);
    return Counted(imp->mTag);
}
extern "C" void RuntimeMenuItemTagSetter(RuntimeObject *self, int32_t, RuntimeObject *value) {
    IMP_OR(self, );
    imp->SetTag(value);
}
extern "C" KelpString RuntimeMenuItemBalloonHelpGetter(RuntimeObject *self, int32_t) {
    IMP_OR(self, nullptr);
    return NewText(imp->mBalloonHelp);
}
extern "C" void RuntimeMenuItemBalloonHelpSetter(RuntimeObject *self, int32_t, KelpString value) {
    IMP_OR(self, );
    imp->SetBalloonHelp(Text(value));
}
extern "C" KelpString RuntimeMenuItemDisabledHelpGetter(RuntimeObject *self, int32_t) {
    IMP_OR(self, nullptr);
    return NewText(imp->mDisabledHelp);
}
extern "C" void RuntimeMenuItemDisabledHelpSetter(RuntimeObject *self, int32_t, KelpString value) {
    IMP_OR(self, );
    imp->SetDisabledHelp(Text(value));
}
extern "C" KelpString RuntimeMenuItemTextGetter(RuntimeObject *self, int32_t) {
    IMP_OR(self, nullptr);
    return NewText(imp->mText);
}
extern "C" void RuntimeMenuItemTextSetter(RuntimeObject *self, int32_t, KelpString value) {
    IMP_OR(self, );
    imp->SetText(Text(value));
}
extern "C" uint8_t RuntimeMenuItemCheckedGetter(RuntimeObject *self, int32_t) {
    IMP_OR(self, 0);
    return imp->mChecked;
}
extern "C" void RuntimeMenuItemCheckedSetter(RuntimeObject *self, int32_t, uint8_t value) {
    IMP_OR(self, );
    imp->SetChecked(value != 0);
}
extern "C" uint8_t RuntimeMenuItemEnabledGetter(RuntimeObject *self, int32_t) {
    IMP_OR(self, 0);
    return imp->mEnabled;
}
extern "C" void RuntimeMenuItemEnabledSetter(RuntimeObject *self, int32_t, uint8_t value) {
    IMP_OR(self, );
    value ? imp->Enable() : imp->Disable();
}
extern "C" uint8_t RuntimeMenuItemVisibleGetter(RuntimeObject *self, int32_t) {
    IMP_OR(self, 0);
    return imp->mVisible;
}
extern "C" void RuntimeMenuItemVisibleSetter(RuntimeObject *self, int32_t, uint8_t value) {
    IMP_OR(self, );
    imp->SetVisible(value != 0);
}
extern "C" KelpString RuntimeMenuItemCommandKeyGetter(RuntimeObject *self, int32_t) {
    IMP_OR(self, nullptr);
    return NewText(imp->mCommandKey);
}
extern "C" void RuntimeMenuItemCommandKeySetter(RuntimeObject *self, int32_t, KelpString value) {
    IMP_OR(self, );
    imp->SetCommandKey(Text(value));
}
extern "C" uint8_t RuntimeMenuItemBoldGetter(RuntimeObject *self, int32_t) {
    IMP_OR(self, 0);
    return imp->mBold;
}
extern "C" void RuntimeMenuItemBoldSetter(RuntimeObject *self, int32_t, uint8_t value) {
    IMP_OR(self, );
    imp->SetBold(value != 0);
}
extern "C" uint8_t RuntimeMenuItemItalicsGetter(RuntimeObject *self, int32_t) {
    IMP_OR(self, 0);
    return imp->mItalic;
}
extern "C" void RuntimeMenuItemItalicsSetter(RuntimeObject *self, int32_t, uint8_t value) {
    IMP_OR(self, );
    imp->SetItalic(value != 0);
}
extern "C" uint8_t RuntimeMenuItemUnderlineGetter(RuntimeObject *self, int32_t) {
    IMP_OR(self, 0);
    return imp->mUnderline;
}
extern "C" void RuntimeMenuItemUnderlineSetter(RuntimeObject *self, int32_t, uint8_t value) {
    IMP_OR(self, );
    imp->SetUnderline(value != 0);
}
extern "C" uint8_t RuntimeMenuItemAutoEnableGetter(RuntimeObject *self, int32_t) {
    IMP_OR(self, 0);
    return imp->mAutoEnable;
}
extern "C" void RuntimeMenuItemAutoEnableSetter(RuntimeObject *self, int32_t, uint8_t value) {
    IMP_OR(self, );
    imp->SetAutoEnable(value != 0);
}

// ------------------------------------------------------------- methods

extern "C" void RuntimeEnableMenu(RuntimeObject *self) { RuntimeMenuItemEnabledSetter(self, 0, 1); }

extern "C" void RuntimeCloseMenuItem(RuntimeObject *) {}

extern "C" RuntimeObject *RuntimeMenuItemItem(RuntimeObject *self, int32_t index) {
    IMP_OR(self, nullptr);
    return InChildren(imp, index) ? Counted(imp->Child(index)) : nullptr;
}

extern "C" int32_t RuntimeMenuItemCount(RuntimeObject *self) {
    IMP_OR(self, 0);
    return imp->Count();
}

extern "C" RuntimeObject *RuntimeMenuItemChild(RuntimeObject *self, KelpString name) {
    IMP_OR(self, nullptr);
    for (RuntimeObject *child : imp->mChildren)
        if (XMenuGTK *c = MenuImpOf(child); c && objtext::SameName(c->mName, objtext::View(name)))
            return Counted(child);
    return nullptr;
}

extern "C" void RuntimeMenuItemAppend(RuntimeObject *self, RuntimeObject *item) {
    IMP_OR(self, );
    if (!item || !MenuImpOf(item)) {
        RaiseNilObject();
        return;
    }
    imp->Append(item);
}

extern "C" void RuntimeMenuItemInsert(RuntimeObject *self, int32_t index, RuntimeObject *item) {
    IMP_OR(self, );
    if (!item || !MenuImpOf(item)) {
        RaiseNilObject();
        return;
    }
    if (index < 0 || index > imp->Count()) {
        RaiseOutOfBounds();
        return;
    }
    imp->Insert(item, index);
}

extern "C" void RuntimeMenuItemRemoveIndex(RuntimeObject *self, int32_t index) {
    IMP_OR(self, );
    if (InChildren(imp, index))
        imp->RemoveIndex(index);
}

extern "C" void RuntimeMenuItemRemoveItem(RuntimeObject *self, RuntimeObject *item) {
    IMP_OR(self, );
    imp->RemoveItem(item);
}

extern "C" void RuntimeMenuItemRemoveByName(RuntimeObject *self, KelpString name) {
    IMP_OR(self, );
    for (int32_t i = 0; i < imp->Count(); ++i)
        if (XMenuGTK *c = MenuImpOf(imp->Child(i));
            c && objtext::SameName(c->mName, objtext::View(name))) {
            imp->RemoveIndex(i);
            return;
        }
}

extern "C" RuntimeObject *RuntimeMenuItemLookup(RuntimeObject *self, KelpString name) {
    IMP_OR(self, nullptr);
    return Counted(Lookup(imp, objtext::View(name), kMenuNotInArray));
}

extern "C" RuntimeObject *RuntimeMenuItemLookupArray(RuntimeObject *self, KelpString name,
                                                     int32_t index) {
    IMP_OR(self, nullptr);
    return Counted(Lookup(imp, objtext::View(name), index));
}

extern "C" void RuntimeMenuItemSwap(RuntimeObject *self, KelpString name, RuntimeObject *swapWith) {
    IMP_OR(self, );
    if (!swapWith || !MenuImpOf(swapWith))
        return;
    for (int32_t i = 0; i < imp->Count(); ++i)
        if (XMenuGTK *c = MenuImpOf(imp->Child(i));
            c && objtext::SameName(c->mName, objtext::View(name))) {
            RuntimeLockObject(swapWith); // it may be the very child removed
            imp->RemoveIndex(i);
            imp->Insert(swapWith, i);
            RuntimeUnlockObject(swapWith);
            return;
        }
}

extern "C" void MenuBarInstallClone(RuntimeObject *self, RuntimeObject *item) {
    IMP_OR(self, );
    XMenuGTK *add = item ? MenuImpOf(item) : nullptr;
    if (!add)
        return;
    std::vector<XMenuGTK *> menus{imp};
    for (size_t m = 0; m < menus.size(); ++m) {
        XMenuGTK *menu = menus[m];
        bool inGroup = false;
        int32_t highest = kMenuNotInArray;
        for (int32_t i = 0; i < menu->Count(); ++i) {
            XMenuGTK *child = MenuImpOf(menu->Child(i));
            if (!child)
                continue;
            if (objtext::SameName(child->mName, add->mName)) {
                inGroup = true;
                if (highest == kMenuNotInArray || child->mIndex > highest)
                    highest = child->mIndex;
            } else if (inGroup) {
                add->SetIndex(highest + 1);
                menu->Insert(item, i);
                return;
            }
            if (child->HasChildren())
                menus.push_back(child);
        }
        if (inGroup) {
            add->SetIndex(highest + 1);
            menu->Append(item);
            return;
        }
    }
}
