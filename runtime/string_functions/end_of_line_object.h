#pragma once
// The class of the process's one EndOfLine object.
namespace kelp {
struct ObjectDefinition;
ObjectDefinition *EndOfLineDefinition();
} // namespace kelp
