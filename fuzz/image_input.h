#pragma once
// One fuzz input run through the image reader and the binder, as the runtime
// meets an image: from a file with a trailer, or from loose segment files of
// which some may be folders or FIFOs.  Shared by the libFuzzer target and the
// replay driver that the test suite runs over the corpus.
//
// Input layout:
//   byte 0, bit 0   0: the rest is a file read as an executable with an image
//                   1: the rest is six loose files, each a u32 size (cut to
//                      what is left) and its bytes
//   byte 0, bits 1-2  appended: what the file is (0, 1 regular, 2 a folder,
//                     3 a FIFO)
//   bytes 1-6       loose: what each file is (value % 4: 0 regular, 1
//                   missing, 2 a folder, 3 a FIFO), in segment order
#include <cstddef>
#include <cstdint>

// Reads, binds and parses; never calls the image's code.  Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
