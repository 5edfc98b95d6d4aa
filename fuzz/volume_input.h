#pragma once
// The fuzz entry for the volume reader, shared by the fuzzer, the corpus
// replay of the test suite and the tests of damaged volumes.
#include <cstddef>
#include <cstdint>
#include <string>

namespace kelp::volume {

struct VolumeWalk {
    bool valid = false;    // the volume opened
    bool readOnly = false; // ... and was found damaged
    size_t folders = 0;    // folders listed, the root included
    size_t files = 0;      // files opened
    size_t bytes = 0;      // content read from them
    std::string after;     // the volume's bytes after a write, "" when none was made
};

// Opens `data` as a volume, lists every folder and reads every file.  A
// volume that can be written to also gets a file made, written and deleted,
// and must open again afterwards.  Aborts on anything that is a fault of
// the volume code rather than of the input.
VolumeWalk WalkVolume(const uint8_t *data, size_t size);

} // namespace kelp::volume
