#include "exceptions/wiring.h"

#include "exceptions/exception_classes.h"
#include "exceptions/raise.h"
#include "objects/standard_exceptions.h"

namespace kelp {
namespace {

void RaiseStandard(StandardException which) {
    switch (which) {
    case StandardException::kNilObject: RaiseNilObject(); break;
    case StandardException::kIllegalCast: RaiseIllegalCast(); break;
    case StandardException::kOutOfBounds: RaiseOutOfBounds(); break;
    }
}

} // namespace

void WireExceptions() {
    RegisterExceptionClasses();
    SetStandardExceptionRaiser(&RaiseStandard);
}

} // namespace kelp
