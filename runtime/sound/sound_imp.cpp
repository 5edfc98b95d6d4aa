#include "sound/sound_imp.h"

#include "sound/sndfile_api.h"
#include "sound/sound_output.h"
#include "sound/sound_task.h"

#include <algorithm>

namespace kelp {

uint32_t VolumeMixerWord(int32_t volume) {
    // Multiplied before the division, so that a level below 100 isn't lost.
    const uint32_t level = uint32_t(std::clamp(volume, 0, 100) * 255 / 100);
    return level | (level << 8);
}

uint32_t PanMixerWord(int32_t volume, int32_t pan) {
    const int32_t base = std::clamp(volume, 0, 100) * 2;
    pan = std::clamp(pan, -100, 100);
    const int32_t left = pan < 0 ? base : base * (100 - pan) / 100;
    const int32_t right = pan < 0 ? (pan + 100) * base / 100 : base;
    return uint32_t(left) | (uint32_t(right) << 8);
}

int32_t VolumeOfMixerWord(uint32_t word) {
    const uint32_t louder = std::max(word & 0xFF, (word >> 8) & 0xFF);
    return int32_t(louder * 100 / 255);
}

SoundImpUnix::SoundImpUnix() {
    uint32_t word = 0;
    if (ReadMixerVolume(word))
        mVolume = VolumeOfMixerWord(word);
}

SoundImpUnix::~SoundImpUnix() {
    if (mTask && mTask->Playing())
        mTask->DeleteWhenDone(); // the sound plays to its end on its own
    else
        delete mTask;
}

SoundImp *SoundImpUnix::Clone() const {
    auto *copy = new SoundImpUnix;
    copy->mSource = mSource;
    copy->mDataOffset = mDataOffset;
    copy->mPan = mPan;
    copy->mVolume = mVolume;
    return copy;
}

void SoundImpUnix::Start(bool looping) {
    if (!Sndfile())
        return;
    // The file opens anew each time: a Play during playback starts over.
    delete mTask;
    mTask = new SoundBackgroundTask(mSource, mDataOffset, looping);
}

bool SoundImpUnix::IsPlaying() const { return mTask && mTask->Playing(); }

void SoundImpUnix::Stop() {
    delete mTask;
    mTask = nullptr;
}

void SoundImpUnix::SetVolume(int32_t volume) {
    mVolume = std::min(volume, 100);
    WriteMixerVolume(VolumeMixerWord(mVolume));
}

void SoundImpUnix::SetPan(int32_t pan) {
    mPan = std::clamp(pan, -100, 100);
    WriteMixerVolume(PanMixerWord(mVolume, mPan));
}

void SoundImpUnix::SetSource(const std::string &path, uint32_t offset) {
    mSource = path;
    mDataOffset = offset;
}

} // namespace kelp
