// The wiring runs each step of a table once, in the table's order.
#include "base/wiring.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string gRan;

TEST(Wiring, EachStepRunsOnceInTheTablesOrder) {
    static const kelp::WiringStep table[] = {
        {"lowest", [] { gRan += "a"; }},
        {"empty", nullptr},
        {"middle", [] { gRan += "b"; }},
        {"highest", [] { gRan += "c"; }},
    };
    static const kelp::WiringStep other[] = {{"another table", [] { gRan += "x"; }}};
    gRan.clear();
    kelp::RunWiring(table);
    kelp::RunWiring(table);
    EXPECT_EQ(gRan, "abc");
    kelp::RunWiring(other);
    EXPECT_EQ(gRan, "abcx") << "a second table is a table of its own";
}

} // namespace
