/* Compiled as C11: the public headers must serve C code, and C must see the
 * same layout as the runtime's C++. */
#include "kelp/kelp.h"

size_t kelp_c_offset_of_string_encoding(void) { return offsetof(stringStorage, encoding); }
size_t kelp_c_offset_of_object_next(void) { return offsetof(RuntimeObject, next); }
size_t kelp_c_offset_of_class_interfaces(void) { return offsetof(RuntimeClass, interfaceTable); }
size_t kelp_c_offset_of_array_bounds(void) { return offsetof(RuntimeArray, upperBounds); }
size_t kelp_c_size_of_property_row(void) { return sizeof(RuntimePropertyRow); }
