#pragma once
// The sound file decoder, found while the program runs: the six functions of
// libsndfile that playback needs.  Loaded once, at the first Play; when the
// library or one of the functions is missing, sound is simply absent and
// nothing is reported.
#include <cstdint>
#include <string>
#include <vector>

namespace kelp {

using sf_count_t = int64_t;
struct SNDFILE;

// The decoder's description of an open sound, laid out as the library has it.
struct SF_INFO {
    sf_count_t frames;
    int samplerate;
    int channels;
    int format;
    int sections;
    int seekable;
};

constexpr int kSfmRead = 0x10;
constexpr int kSfcCalcSignalMax = 0x1040;
constexpr int kSfFormatFloat = 6;
constexpr int kSfFormatDouble = 7;

struct SndfileApi {
    SNDFILE *(*openFd)(int fd, int mode, SF_INFO *info, int closeDesc);
    int (*close)(SNDFILE *file);
    int (*command)(SNDFILE *file, int command, void *data, int size);
    sf_count_t (*seek)(SNDFILE *file, sf_count_t frames, int whence);
    sf_count_t (*readFloat)(SNDFILE *file, float *samples, sf_count_t count);
    sf_count_t (*readShort)(SNDFILE *file, short *samples, sf_count_t count);
};

// The functions, or null when the decoder isn't available.  The first call
// tries the library names in order; the answer holds for the process.
const SndfileApi *Sndfile();

// Test hook: forget the answer and try these names next time instead (an
// empty list makes the decoder unavailable, as on a machine without it).
void SetSndfileLibraryNamesForTest(std::vector<std::string> names);

} // namespace kelp
