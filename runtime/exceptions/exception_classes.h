#pragma once
// The definitions of RuntimeException and its subclasses.
#include "objects/definitions.h"

namespace kelp {

ObjectDefinition *RuntimeExceptionDefinition();
// The definition of a RuntimeException subclass (or RuntimeException itself)
// by name, without case; null for a name that is none of them.
ObjectDefinition *ExceptionDefinitionNamed(const char *name);

// Adds RuntimeException and each subclass to the library's classes, so that
// the export table lists the finalizer and RuntimeLookupClass finds every
// one by name.
void RegisterExceptionClasses();

// Creates an object of the definition's class, raises it and drops the
// creator's reference.
void RaiseOfDefinition(ObjectDefinition *definition);

} // namespace kelp
