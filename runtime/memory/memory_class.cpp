// The MemoryBlock class as the language sees it.
#include "memory/memory_block.h"

#include "objects/definitions.h"

#include "kelp/memory.h"

#include <cstddef>

namespace kelp {

ObjectDefinition *MemoryBlockDefinition() {
    static const TypeRecord blockType{kTypeObjectOf, nullptr, nullptr, 0, &MemoryBlockDefinition};
    static const ParameterRow bytes[] = {{"bytes", &kTypeInteger}};
    static const ParameterRow offset[] = {{"offset", &kTypeInteger}};
    static const ParameterRow offsetLength[] = {{"offset", &kTypeInteger},
                                                {"length", &kTypeInteger}};
    static const ParameterRow offsetBits[] = {{"offset", &kTypeInteger}, {"bits", &kTypeInteger}};
    static const ParameterRow value[] = {{"value", &blockType}};
    static const ParameterRow text[] = {{"value", &kTypeString}};
    static const ParameterRow address[] = {{"value", &kTypePtr}};
    static const PropertyRow properties[] = {
        {0, "Size", &kTypeInteger, KELP_ENTRY(memoryBlockGetSize), KELP_ENTRY(memoryBlockSetSize)},
        {0, "LittleEndian", &kTypeBoolean, KELP_PLAIN_FIELD, KELP_PLAIN_FIELD,
         offsetof(MemoryBlockObject, littleEndian)},
    };
    // Each accessor reads through its entry and is assigned through the
    // second one.
    static const MethodRow methods[] = {
        {"Constructor", nullptr, bytes, 1, KELP_ENTRY(memoryBlockNewConstructor)},
        {"Long", &kTypeInteger, offset, 1, KELP_ENTRY(memoryGetLong), KELP_ENTRY(memorySetLong)},
        {"Short", &kTypeInteger, offset, 1, KELP_ENTRY(memoryGetShort), KELP_ENTRY(memorySetShort)},
        {"UShort", &kTypeInteger, offset, 1, KELP_ENTRY(memoryGetUShort),
         KELP_ENTRY(memorySetShort)},
        {"Byte", &kTypeInteger, offset, 1, KELP_ENTRY(memoryGetByte), KELP_ENTRY(memorySetByte)},
        {"Ptr", &blockType, offset, 1, KELP_ENTRY(memoryGetPtr), KELP_ENTRY(memorySetPtr)},
        {"SingleValue", &kTypeDouble, offset, 1, KELP_ENTRY(memoryGetSingle),
         KELP_ENTRY(memorySetSingle)},
        {"DoubleValue", &kTypeDouble, offset, 1, KELP_ENTRY(memoryGetDouble),
         KELP_ENTRY(memorySetDouble)},
        {"BooleanValue", &kTypeBoolean, offset, 1, KELP_ENTRY(memoryGetBoolean),
         KELP_ENTRY(memorySetBoolean)},
        {"PString", &kTypeString, offset, 1, KELP_ENTRY(memoryGetPString),
         KELP_ENTRY(memorySetPString)},
        {"CString", &kTypeString, offset, 1, KELP_ENTRY(memoryGetCString),
         KELP_ENTRY(memorySetCString)},
        {"WString", &kTypeString, offset, 1, KELP_ENTRY(memoryGetWString),
         KELP_ENTRY(memorySetWString)},
        {"StringValue", &kTypeString, offsetLength, 2, KELP_ENTRY(memoryGetString),
         KELP_ENTRY(memorySetString)},
        {"ColorValue", &kTypeColor, offsetBits, 2, KELP_ENTRY(memoryGetColor),
         KELP_ENTRY(memorySetColor)},
        {"LeftB", &blockType, bytes, 1, KELP_ENTRY(MemoryBlockLeftB)},
        {"RightB", &blockType, bytes, 1, KELP_ENTRY(MemoryBlockRightB)},
        {"MidB", &blockType, offset, 1, KELP_ENTRY(MemoryBlockMidB2)},
        {"MidB", &blockType, offsetLength, 2, KELP_ENTRY(MemoryBlockMidB3)},
        {"Operator_Add", &blockType, value, 1, KELP_ENTRY(MemoryBlockAddOperator)},
        {"Operator_Compare", &kTypeInteger, value, 1, KELP_ENTRY(MemoryBlockCompareOperator)},
        {"Operator_Convert", &kTypeString, nullptr, 0, KELP_ENTRY(MemoryBlockToStringOperator)},
        {"Operator_Convert", nullptr, text, 1, KELP_ENTRY(MemoryBlockFromStringOperator)},
        {"Operator_Convert", &kTypePtr, nullptr, 0, KELP_ENTRY(memoryBlockGetPtr)},
        {"Operator_Convert", nullptr, address, 1, KELP_ENTRY(ConvertPtrToMemoryBlock)},
    };
    static const ClassDescription description = {
        .name = "MemoryBlock",
        .instanceSize = sizeof(MemoryBlockObject),
        .targetFlags = {1, 0, 0},
        .initializer = KELP_ENTRY(MemoryBlockInitializer),
        .finalizer = KELP_ENTRY(MemoryBlockFinalizer),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
