/* Building this file is the check: the public headers must stay valid strict
 * C11 (-pedantic-errors), and their static asserts pin in C the same offsets
 * the runtime's C++ relies on, so a layout that drifts fails to compile. */
#include "kelp/kelp.h"

/* Something to compile into the object, as ISO C wants. */
size_t kelp_c_size_of_property_row(void) { return sizeof(RuntimePropertyRow); }
