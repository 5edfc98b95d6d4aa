#pragma once
// What a Sound object holds: where its samples are and the playback in
// progress.  SoundImp is all the rest of the runtime sees, so another back
// end can stand behind it.
#include <cstdint>
#include <memory>
#include <string>

namespace kelp {

class SoundBackgroundTask;

class SoundImp {
public:
    virtual ~SoundImp() = default;
    virtual SoundImp *Clone() const = 0;
    virtual void Play() = 0;
    virtual void PlayLooping() = 0;
    virtual bool IsPlaying() const = 0;
    virtual void Stop() = 0;
    virtual void SetVolume(int32_t) {}
    virtual void SetPan(int32_t) {}
    virtual int32_t GetVolume() const { return 100; }
    virtual int32_t GetPan() const { return 0; }
};

class SoundImpUnix : public SoundImp {
public:
    // Reads the master level into the volume (0 without a mixer).
    SoundImpUnix();
    // A sound still playing plays to its end, then its task goes.
    ~SoundImpUnix() override;

    SoundImp *Clone() const override;
    void Play() override { Start(false); }
    void PlayLooping() override { Start(true); }
    bool IsPlaying() const override;
    void Stop() override;
    void SetVolume(int32_t volume) override;
    void SetPan(int32_t pan) override;
    int32_t GetVolume() const override { return mVolume; }
    int32_t GetPan() const override { return mPan; }

    // The file the sound is in, and where in it the sound starts.  An empty
    // path leaves the sound silent.
    void SetSource(const std::string &path, uint32_t offset);

private:
    void Start(bool looping);
    void WriteLevels() const;

    std::string mSource; // empty until set
    uint32_t mDataOffset = 0;
    int32_t mPan = 0;    // -100 (left) to 100 (right)
    int32_t mVolume = 0; // 0 to 100
    SoundBackgroundTask *mTask = nullptr;
};

// Mixer words (the left level in the low byte, the right in the next).  A
// volume sets both channels to its share of 255; a pan splits twice the
// volume between the channels, the far side taking less.
uint32_t VolumeMixerWord(int32_t volume);
uint32_t PanMixerWord(int32_t volume, int32_t pan);
// The volume a mixer word stands for: the louder channel, 0 to 100.
int32_t VolumeOfMixerWord(uint32_t word);

} // namespace kelp
