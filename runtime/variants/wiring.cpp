#include "variants/wiring.h"

#include "kelp/variants.h"
#include "objects/definitions.h"
#include "variants/collection.h"
#include "variants/dictionary.h"
#include "variants/random_class.h"
#include "variants/variant_classes.h"

namespace kelp {

void WireVariants() {
    AddIntrinsicClassAccessor(&DictionaryDefinition);
    AddIntrinsicClassAccessor(&CollectionDefinition);
    AddIntrinsicClassAccessor(&RandomDefinition);
    static const TypeRecord &variant = VariantType();
    static const ParameterRow value[] = {{"value", &variant}};
    static const MethodRow rows[] = {
        {"VarType", &kTypeInteger, value, 1, KELP_ENTRY(VarType)},
        {"IsNull", &kTypeBoolean, value, 1, KELP_ENTRY(IsNull)},
        {"IsNumeric", &kTypeBoolean, value, 1, KELP_ENTRY(RuntimeIsNumeric)},
        {"CStr", &kTypeString, value, 1, KELP_ENTRY(runCStr)},
    };
    AddIntrinsicFunctions(rows);
}

} // namespace kelp
