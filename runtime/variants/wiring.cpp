#include "variants/wiring.h"

#include "kelp/variants.h"
#include "objects/definitions.h"
#include "variants/dictionary.h"
#include "variants/variant_classes.h"

namespace kelp {

void WireVariants() {
    AddIntrinsicClassAccessor(&DictionaryDefinition);
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
