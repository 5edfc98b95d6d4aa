#pragma once
// Where samples go: one open output device shared by every sound that plays
// at the same time, and the machine's master level.
//
// The device is chosen when it is first opened: a file sink when the
// environment names one (KELP_SOUND_SINK, for tests and for machines without
// speakers), else the OSS device, else the ALSA device "default", else none.
// The first sound to open it sets its channels and rate; the sounds that
// join it while it is open play with those.
#include <cstddef>
#include <cstdint>
#include <memory>

namespace kelp {

class SoundOutput {
public:
    virtual ~SoundOutput() = default;
    // Samples (of all channels together) that Write takes now without
    // waiting for the device.
    virtual size_t Writable() = 0;
    virtual void Write(const int16_t *samples, size_t count) = 0;
    // True when everything written has been played.
    virtual bool Drained() = 0;
};

// Opens the shared device, or adds a user to it when it is open already.
// Null when there is no device; nothing is reported.
SoundOutput *OpenSoundDevice(int32_t channels, int32_t rate);
// Takes a user away; the last one closes the device.
void ReleaseSoundDevice();
int32_t SoundDeviceUseCount();

// The back ends, each null when it can't be opened as asked.
std::unique_ptr<SoundOutput> OpenOssOutput(int32_t channels, int32_t rate);
std::unique_ptr<SoundOutput> OpenAlsaOutput(int32_t channels, int32_t rate);
std::unique_ptr<SoundOutput> OpenFileSink(const char *path, bool paced, int32_t channels,
                                          int32_t rate);

// The master level as a mixer word: the left level in the low byte, the
// right in the next, each 0 to 255.  False when there is no mixer.
bool ReadMixerVolume(uint32_t &word);
bool WriteMixerVolume(uint32_t word);
// The back ends of the level: the OSS mixer, and a file sink, which records
// the words it is given and reads back the last (full level at first).
bool ReadOssMixer(uint32_t &word);
bool WriteOssMixer(uint32_t word);
uint32_t SinkMixerWord();
void RecordSinkMixerWord(const char *path, uint32_t word);

} // namespace kelp
