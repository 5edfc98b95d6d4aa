// The registry of the problems' models.
#include "bank_model.h"

namespace banktest {

std::map<int32_t, ModelFn> &Models() {
    static std::map<int32_t, ModelFn> models;
    return models;
}

} // namespace banktest
