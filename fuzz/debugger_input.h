#pragma once
// The debugger link's fuzz entry, shared by the libFuzzer program and the
// replay driver the test suite runs over the corpus.
#include <cstddef>
#include <cstdint>

// fuzz_debugger_wire: the bytes are what an IDE sends, in reads of the sizes
// the first bytes pick.  Every line is split into command and fields and
// every field read as a number and as a string; the splitter's buffer stays
// within one line, and what was read writes back to the same value.
// Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
