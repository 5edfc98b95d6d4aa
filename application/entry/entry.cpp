// The drill's entry, where an image's entry would stand.
#include "kelp/kelp.h"

#include <cstdio>

extern "C" void SumbrookEntry(void) { std::puts("Sumbrook"); }
