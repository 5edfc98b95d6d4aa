// Definitions of the classes whose service is absent: enough members that a
// program can create one and use it, every member a neutral answer.
#include "stubs/stub_classes.h"

#include "variants/variant_classes.h"

#include "kelp/stubs.h"

namespace kelp {
namespace {

const TypeRecord kOLEParameterType{kTypeObjectOf, nullptr, nullptr, 0, &OLEParameterDefinition};
const TypeRecord kRegistryItemType{kTypeObjectOf, nullptr, nullptr, 0, &RegistryItemDefinition};
const TypeRecord kKeyChainItemType{kTypeObjectOf, nullptr, nullptr, 0, &KeyChainItemDefinition};

ObjectDefinition *Build(const ClassDescription &description) {
    return BuildDefinition(description);
}

} // namespace

ObjectDefinition *OLEObjectDefinition() {
    static const TypeRecord &variant = VariantType();
    static const ParameterRow program[] = {{"programID", &kTypeString}};
    static const ParameterRow programNew[] = {{"programID", &kTypeString},
                                              {"newInstance", &kTypeBoolean}};
    static const ParameterRow name[] = {{"name", &kTypeString}};
    static const ParameterRow nameParams[] = {
        {"name", &kTypeString}, {"parameters", &kOLEParameterType, nullptr, kParamArray}};
    static const MethodRow methods[] = {
        {"Constructor", nullptr, program, 1, KELP_ENTRY(OLEObjectProgramIDConstructor)},
        {"Constructor", nullptr, programNew, 2, KELP_ENTRY(OLEObjectNewInstanceConstructor)},
        {"Invoke", &variant, name, 1, KELP_ENTRY(OLEObjectInvoke)},
        {"Invoke", &variant, nameParams, 2, KELP_ENTRY(OLEObjectInvokeWithParams)},
        {"Value", &variant, name, 1, KELP_ENTRY(OLEObjectPropertyGetter),
         KELP_ENTRY(OLEObjectPropertySetter)},
    };
    static const ClassDescription description = {
        .name = "OLEObject",
        .initializer = KELP_ENTRY(OLEObjectConstructor),
        .finalizer = KELP_ENTRY(OLEObjectDestructor),
        .methods = methods,
    };
    static ObjectDefinition *definition = Build(description);
    return definition;
}

ObjectDefinition *OLEParameterDefinition() {
    static const TypeRecord &variant = VariantType();
    static const PropertyRow properties[] = {
        {0, "Value", &variant, KELP_ENTRY(OLEParameterValueGetter),
         KELP_ENTRY(OLEParameterValueSetter)},
    };
    static const ClassDescription description = {
        .name = "OLEParameter",
        .finalizer = KELP_ENTRY(OLEParameterDestructor),
        .properties = properties,
    };
    static ObjectDefinition *definition = Build(description);
    return definition;
}

ObjectDefinition *RegistryItemDefinition() {
    static const TypeRecord &variant = VariantType();
    static const ParameterRow path[] = {{"path", &kTypeString}};
    static const ParameterRow name[] = {{"name", &kTypeString}};
    static const ParameterRow index[] = {{"index", &kTypeInteger}};
    static const PropertyRow properties[] = {
        {0, "Path", &kTypeString, KELP_ENTRY(RegistryItemPathGetter), {}},
        {0, "FolderCount", &kTypeInteger, KELP_ENTRY(RegistryItemFolderCountGetter), {}},
        {0, "KeyCount", &kTypeInteger, KELP_ENTRY(RegistryItemKeyCountGetter), {}},
        {0, "Parent", &kRegistryItemType, KELP_ENTRY(RegistryParentGetter), {}},
        {0, "DefaultValue", &variant, KELP_ENTRY(RegistryItemDefaultValueGetter),
         KELP_ENTRY(RegistryItemDefaultValueSetter)},
    };
    static const MethodRow methods[] = {
        {"Constructor", nullptr, path, 1, KELP_ENTRY(RegistryItemPathCtor)},
        {"AddFolder", &kRegistryItemType, name, 1, KELP_ENTRY(RegistryItemAddFolder)},
        {"Child", &kRegistryItemType, name, 1, KELP_ENTRY(RegistryItemChild)},
        {"Item", &kRegistryItemType, index, 1, KELP_ENTRY(RegistryItemItem)},
        {"Delete", nullptr, name, 1, KELP_ENTRY(RegistryItemDelete)},
        {"Name", &kTypeString, index, 1, KELP_ENTRY(RegistryItemNameGetter)},
        {"KeyType", &kTypeInteger, index, 1, KELP_ENTRY(RegistryItemKeyTypeGetter)},
        {"Value", &variant, name, 1, KELP_ENTRY(RegistryItemValueGetter),
         KELP_ENTRY(RegistryItemValueSetter)},
    };
    static const ClassDescription description = {
        .name = "RegistryItem",
        .finalizer = KELP_ENTRY(RegistryItemDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = Build(description);
    return definition;
}

ObjectDefinition *KeyChainDefinition() {
    static const ParameterRow index[] = {{"index", &kTypeInteger}};
    static const ParameterRow password[] = {{"password", &kTypeString}};
    static const ParameterRow item[] = {{"item", &kKeyChainItemType}};
    static const ParameterRow itemPassword[] = {{"item", &kKeyChainItemType},
                                                {"password", &kTypeString}};
    static const MethodRow methods[] = {
        {"Constructor", nullptr, index, 1, KELP_ENTRY(KeyChainConstructor)},
        {"Lock", nullptr, nullptr, 0, KELP_ENTRY(KeyChainLock)},
        {"Unlock", &kTypeBoolean, password, 1, KELP_ENTRY(KeyChainUnlock)},
        {"AddPassword", nullptr, itemPassword, 2, KELP_ENTRY(KeyChainAddPassword)},
        {"FindPassword", &kTypeString, item, 1, KELP_ENTRY(KeyChainFindPassword)},
    };
    static const ClassDescription description = {.name = "KeyChain", .methods = methods};
    static ObjectDefinition *definition = Build(description);
    return definition;
}

ObjectDefinition *KeyChainItemDefinition() {
    // One accessor pair serves every attribute, told apart by the selector.
    static const PropertyRow properties[] = {
        {0, "AccountName", &kTypeString, KELP_ENTRY(KeyChainItemAttributeGetter),
         KELP_ENTRY(KeyChainItemAttributeSetter), 0},
        {0, "Comment", &kTypeString, KELP_ENTRY(KeyChainItemAttributeGetter),
         KELP_ENTRY(KeyChainItemAttributeSetter), 1},
        {0, "Description", &kTypeString, KELP_ENTRY(KeyChainItemAttributeGetter),
         KELP_ENTRY(KeyChainItemAttributeSetter), 2},
        {0, "Label", &kTypeString, KELP_ENTRY(KeyChainItemAttributeGetter),
         KELP_ENTRY(KeyChainItemAttributeSetter), 3},
        {0, "ServiceName", &kTypeString, KELP_ENTRY(KeyChainItemAttributeGetter),
         KELP_ENTRY(KeyChainItemAttributeSetter), 4},
    };
    static const MethodRow methods[] = {
        {"Delete", nullptr, nullptr, 0, KELP_ENTRY(KeyChainItemDelete)},
    };
    static const ClassDescription description = {
        .name = "KeyChainItem",
        .initializer = KELP_ENTRY(KeyChainItemConstructor),
        .finalizer = KELP_ENTRY(KeyChainItemDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = Build(description);
    return definition;
}

ObjectDefinition *AppleEventDescListDefinition() {
    static const ParameterRow index[] = {{"index", &kTypeInteger}};
    static const ParameterRow integer[] = {{"value", &kTypeInteger}};
    static const ParameterRow text[] = {{"value", &kTypeString}};
    static const ParameterRow boolean[] = {{"value", &kTypeBoolean}};
    static const MethodRow methods[] = {
        {"Count", &kTypeInteger, nullptr, 0, KELP_ENTRY(appleEventDescListCount)},
        {"AppendInteger", nullptr, integer, 1, KELP_ENTRY(appleEventDescListAppendInteger)},
        {"AppendString", nullptr, text, 1, KELP_ENTRY(appleEventDescListAppendString)},
        {"AppendBoolean", nullptr, boolean, 1, KELP_ENTRY(appleEventDescListAppendBoolean)},
        {"IntegerItem", &kTypeInteger, index, 1, KELP_ENTRY(appleEventDescListGetIntItem)},
        {"StringItem", &kTypeString, index, 1, KELP_ENTRY(appleEventDescListGetStrItem)},
        {"BooleanItem", &kTypeBoolean, index, 1, KELP_ENTRY(appleEventDescListGetBooleanItem)},
    };
    static const ClassDescription description = {
        .name = "AppleEventDescList",
        .initializer = KELP_ENTRY(appleEventDescListConstructor),
        .finalizer = KELP_ENTRY(appleEventItemDestructor),
        .methods = methods,
    };
    static ObjectDefinition *definition = Build(description);
    return definition;
}

ObjectDefinition *AppleEventRecordDefinition() {
    static const ClassDescription description = {
        .name = "AppleEventRecord",
        .initializer = KELP_ENTRY(appleEventRecordConstructor),
        .finalizer = KELP_ENTRY(appleEventItemDestructor),
    };
    static ObjectDefinition *definition = Build(description);
    return definition;
}

ObjectDefinition *DockItemDefinition() {
    static const MethodRow methods[] = {
        {"ResetIcon", nullptr, nullptr, 0, KELP_ENTRY(DockItemResetIcon)},
        {"UpdateNow", nullptr, nullptr, 0, KELP_ENTRY(DockItemIconUpdate)},
    };
    static const ClassDescription description = {
        .name = "DockItem",
        .initializer = KELP_ENTRY(DockItemInitializer),
        .finalizer = KELP_ENTRY(DockItemFinalizer),
        .methods = methods,
    };
    static ObjectDefinition *definition = Build(description);
    return definition;
}

ObjectDefinition *MovieDefinition() {
    static const PropertyRow properties[] = {
        {0, "Width", &kTypeInteger, KELP_ENTRY(movieWidthGetter), {}},
        {0, "Height", &kTypeInteger, KELP_ENTRY(movieHeightGetter), {}},
        {0, "BaseWidth", &kTypeInteger, KELP_ENTRY(movieBaseWidthGetter), {}},
        {0, "BaseHeight", &kTypeInteger, KELP_ENTRY(movieBaseHeightGetter), {}},
        {0, "Handle", &kTypePtr, KELP_ENTRY(movieHandleGetter), {}},
    };
    static const ClassDescription description = {
        .name = "Movie",
        .finalizer = KELP_ENTRY(RuntimeMovieDestructor),
        .properties = properties,
    };
    static ObjectDefinition *definition = Build(description);
    return definition;
}

} // namespace kelp
