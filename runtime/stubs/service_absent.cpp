// The exception a program meets when it asks for a service this platform
// does not have.
#include "stubs/absent.h"

#include "exceptions/raise.h"

#include <string>

namespace kelp {

void RaiseServiceAbsent(const char *service) {
    const std::string message = std::string(service) + " is not available on this system.";
    RaiseWithMessage("ServiceNotAvailableException", message.c_str());
}

} // namespace kelp
