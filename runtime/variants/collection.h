#pragma once
// The Collection class: values in the order they were added, each with an
// optional text key.  Indexes count from 1; keys compare as the language
// compares strings, without regard to case, and the first match wins.  The
// workload is small lists kept by older programs, so a key is found by a
// walk rather than through an index.

namespace kelp {
struct ObjectDefinition;
ObjectDefinition *CollectionDefinition();
} // namespace kelp
