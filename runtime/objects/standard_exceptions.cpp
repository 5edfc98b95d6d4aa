#include "objects/standard_exceptions.h"

#include "base/fatal_report.h"

namespace kelp {
namespace {
StandardExceptionRaiser gRaiser = nullptr;
} // namespace

void SetStandardExceptionRaiser(StandardExceptionRaiser raiser) { gRaiser = raiser; }

void RaiseStandardException(StandardException which) {
    KELP_ASSERT(gRaiser, "runtime/objects/standard_exceptions.cpp", "gRaiser",
                "An exception was raised before the exception classes were wired");
    if (gRaiser)
        gRaiser(which);
}

} // namespace kelp
