// The public headers are compiled as C in c_layout.c; C and C++ must agree
// on every offset that compiled code uses.
#include "kelp/kelp.h"

#include <gtest/gtest.h>

extern "C" {
size_t kelp_c_offset_of_string_encoding(void);
size_t kelp_c_offset_of_object_next(void);
size_t kelp_c_offset_of_class_interfaces(void);
size_t kelp_c_offset_of_array_bounds(void);
size_t kelp_c_size_of_property_row(void);
}

TEST(SharedRecords, CAndCxxAgreeOnLayout) {
    EXPECT_EQ(kelp_c_offset_of_string_encoding(), offsetof(stringStorage, encoding));
    EXPECT_EQ(kelp_c_offset_of_object_next(), offsetof(RuntimeObject, next));
    EXPECT_EQ(kelp_c_offset_of_class_interfaces(), offsetof(RuntimeClass, interfaceTable));
    EXPECT_EQ(kelp_c_offset_of_array_bounds(), offsetof(RuntimeArray, upperBounds));
    EXPECT_EQ(kelp_c_size_of_property_row(), sizeof(RuntimePropertyRow));
}
