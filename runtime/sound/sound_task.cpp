#include "sound/sound_task.h"

#include "sound/sound_output.h"

#include <unistd.h>

#include <algorithm>

namespace kelp {
namespace {

// Shared by every task: they hold data only during one Run.
int16_t gShorts[SoundBackgroundTask::kBlock];
float gFloats[SoundBackgroundTask::kBlock];

// Scale for a floating-point sound, asked again before every block so that
// the loudest sample reaches nearly full scale; silence plays unscaled.
double FloatScale(const SndfileApi &sf, SNDFILE *file) {
    double peak = 0;
    sf.command(file, kSfcCalcSignalMax, &peak, sizeof peak);
    return peak < 1e-10 ? 1.0 : 32700.0 / peak;
}

} // namespace

SoundBackgroundTask::SoundBackgroundTask(const std::string &path, uint32_t offset, bool looping)
    : BackgroundTask(1), mLooping(looping) {
    const SndfileApi *sf = Sndfile();
    if (!sf || path.empty())
        return;
    mFile = std::fopen(path.c_str(), "rb");
    if (!mFile)
        return;
    std::fseek(mFile, long(offset), SEEK_SET);
    // The decoder gets a descriptor of its own, at the same position: it
    // closes what it was given when it refuses the file, whatever it was
    // asked, and mFile must stay ours to close.
    const int fd = dup(fileno(mFile));
    if (fd < 0)
        return;
    SF_INFO info{};
    mSndFile = sf->openFd(fd, kSfmRead, &info, 0);
    if (!mSndFile)
        return;
    mDecoderFd = fd;
    mDevice = OpenSoundDevice(info.channels, info.samplerate);
    mSubFormat = uint32_t(info.format) & 0xFFFF;
    mChannels = size_t(info.channels > 0 ? info.channels : 1);
    mPlaying = mDevice != nullptr;
}

SoundBackgroundTask::~SoundBackgroundTask() { Close(); }

void SoundBackgroundTask::Close() {
    if (mDevice)
        ReleaseSoundDevice();
    if (mSndFile)
        Sndfile()->close(mSndFile);
    if (mDecoderFd >= 0)
        close(mDecoderFd);
    if (mFile)
        std::fclose(mFile);
    mDevice = nullptr;
    mSndFile = nullptr;
    mDecoderFd = -1;
    mFile = nullptr;
}

void SoundBackgroundTask::Run() {
    if (!mPlaying)
        return;
    if (mDraining) {
        if (mDevice->Drained())
            Finish(); // may delete this task
        return;
    }
    Feed();
}

size_t SoundBackgroundTask::ReadBlock(size_t wanted) {
    const SndfileApi &sf = *Sndfile();
    if (mSubFormat != kSfFormatFloat && mSubFormat != kSfFormatDouble) {
        const sf_count_t got = sf.readShort(mSndFile, gShorts, sf_count_t(wanted));
        return got > 0 ? size_t(got) : 0;
    }
    const double scale = FloatScale(sf, mSndFile);
    const sf_count_t got = sf.readFloat(mSndFile, gFloats, sf_count_t(wanted));
    for (sf_count_t i = 0; i < got; ++i)
        gShorts[i] = int16_t(double(gFloats[i]) * scale); // truncated toward zero
    return got > 0 ? size_t(got) : 0;
}

void SoundBackgroundTask::Feed() {
    // Wait for room for a whole block rather than block the loop in write;
    // a device whose whole buffer is smaller than a block takes what fits
    // once it is empty.
    size_t wanted = mDevice->Writable();
    if (wanted < kBlock && !(wanted > 0 && mDevice->Drained()))
        return;
    wanted = std::min(wanted, kBlock);
    wanted -= wanted % mChannels;
    if (wanted == 0)
        return;
    if (const size_t count = ReadBlock(wanted)) {
        mDevice->Write(gShorts, count);
        return;
    }
    if (mLooping) {
        Sndfile()->seek(mSndFile, 0, SEEK_SET);
        return;
    }
    mDraining = true; // playing until the device has sounded the last block
}

void SoundBackgroundTask::Finish() {
    mPlaying = false;
    mDraining = false;
    Close();
    if (mDeleteWhenDone)
        delete this;
}

} // namespace kelp
