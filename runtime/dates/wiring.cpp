#include "dates/wiring.h"

#include "dates/date_common.h"
#include "kelp/dates.h"
#include "objects/definitions.h"

namespace kelp {

void WireDates() {
    AddIntrinsicClassAccessor(&DateDefinition);
    static const TypeRecord dateType{kTypeObjectOf, nullptr, nullptr, 0, &DateDefinition};
    static const ParameterRow parameters[] = {{"text", &kTypeString},
                                              {"result", &dateType, nullptr, kParamByRef}};
    static const MethodRow rows[] = {
        {"ParseDate", &kTypeBoolean, parameters, 2, KELP_ENTRY(parseDate)},
    };
    AddIntrinsicFunctions(rows);
}

} // namespace kelp
