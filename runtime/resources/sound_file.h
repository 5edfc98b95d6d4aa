#pragma once
// Where a sound resource can be played from: a temporary file of its own,
// removed at the run-down, or the executable itself at the data's offset.
#include <cstdint>
#include <string>

namespace kelp {

struct SoundSource {
    std::string path;    // file to play
    uint32_t offset = 0; // of the sound's first byte in that file
};

// For resource ("WAVE", id): writes a new temporary file each call (named
// like "/tmp/kp_XXXXXX" under the temporary folder) and schedules its removal
// at the run-down.  Without a temporary file the executable's own file at the
// resource's file offset is used.  False when there is no such resource.
bool SoundResourceSource(uint32_t id, const std::string &executable, SoundSource &out);

} // namespace kelp
