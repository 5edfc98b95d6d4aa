#pragma once
// The playback of one sound: a task of the run loop that gives the device
// one block of 4,096 samples each time it runs, while the device has room
// for it, so that feeding a sound never holds up the windows.
#include "runloop/background_task.h"
#include "sound/sndfile_api.h"

#include <cstdint>
#include <cstdio>
#include <string>

namespace kelp {

class SoundOutput;

class SoundBackgroundTask : public BackgroundTask {
public:
    static constexpr size_t kBlock = 4096;

    // Opens `path` at `offset` for decoding and joins the device.  When the
    // file, the decoder or the device fails, the task exists with
    // Playing() false.
    SoundBackgroundTask(const std::string &path, uint32_t offset, bool looping);
    ~SoundBackgroundTask() override;

    void Run() override;

    // True while samples remain to be given or heard.
    bool Playing() const { return mPlaying; }
    // The owner has gone: the task deletes itself when the sound ends.
    void DeleteWhenDone() { mDeleteWhenDone = true; }

private:
    void Feed();
    size_t ReadBlock(size_t wanted);
    void Finish();
    void Close();

    SoundOutput *mDevice = nullptr; // shared; null when none
    bool mDeleteWhenDone = false;
    FILE *mFile = nullptr;
    bool mPlaying = false;
    bool mLooping = false;
    bool mDraining = false; // all given, the device still sounding
    SNDFILE *mSndFile = nullptr;
    int mDecoderFd = -1;     // the decoder's own descriptor of mFile
    uint32_t mSubFormat = 0; // low 16 bits of the decoder's format
    size_t mChannels = 1;
};

} // namespace kelp
