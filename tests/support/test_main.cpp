// The main of every test program that links the whole runtime: the layers
// are wired as the programs wire them, then the tests run.
#include "exceptions/unhandled.h"
#include "main/wiring_table.h"

#include <gtest/gtest.h>

int main(int argc, char **argv) {
    kelp::WireRuntime();
    // A test meets an exception that no code took as a failed assertion
    // (which it can record) rather than as the end of the run; a test of
    // the standard handler installs it itself.
    kelp::SetUnhandledHandler(nullptr);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
