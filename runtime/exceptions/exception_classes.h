#pragma once
// The definitions of RuntimeException and its subclasses.
#include "objects/definitions.h"

namespace kelp {

ObjectDefinition *RuntimeExceptionDefinition();
// The definition of a RuntimeException subclass (or RuntimeException itself)
// by name, without case; null for a name that is none of them.
ObjectDefinition *ExceptionDefinitionNamed(const char *name);

} // namespace kelp
