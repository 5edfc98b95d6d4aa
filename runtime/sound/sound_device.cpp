// The one shared output device and the choice of back end.
#include "sound/sound_output.h"

#include <cstdlib>
#include <cstring>

namespace kelp {
namespace {

struct SharedDevice {
    std::unique_ptr<SoundOutput> output;
    int32_t users = 0;
};

SharedDevice &Device() {
    static SharedDevice device;
    return device;
}

// The sink the environment names: null when none, "none" for silence.
const char *SinkPath() {
    const char *sink = std::getenv("KELP_SOUND_SINK");
    return sink && *sink ? sink : nullptr;
}

std::unique_ptr<SoundOutput> OpenChosen(int32_t channels, int32_t rate) {
    if (const char *sink = SinkPath()) {
        if (std::strcmp(sink, "none") == 0)
            return nullptr; // a machine that is silent on purpose
        const char *pace = std::getenv("KELP_SOUND_SINK_PACE");
        return OpenFileSink(sink, pace && *pace == '1', channels, rate);
    }
    if (auto oss = OpenOssOutput(channels, rate))
        return oss;
    return OpenAlsaOutput(channels, rate);
}

} // namespace

SoundOutput *OpenSoundDevice(int32_t channels, int32_t rate) {
    SharedDevice &device = Device();
    if (!device.output) {
        if (channels < 1 || rate < 1)
            return nullptr;
        device.output = OpenChosen(channels, rate);
        if (!device.output)
            return nullptr;
    }
    ++device.users;
    return device.output.get();
}

void ReleaseSoundDevice() {
    SharedDevice &device = Device();
    if (device.users > 0 && --device.users == 0)
        device.output.reset();
}

int32_t SoundDeviceUseCount() { return Device().users; }

bool ReadMixerVolume(uint32_t &word) {
    const char *sink = SinkPath();
    if (!sink)
        return ReadOssMixer(word);
    if (std::strcmp(sink, "none") == 0)
        return false;
    word = SinkMixerWord();
    return true;
}

bool WriteMixerVolume(uint32_t word) {
    const char *sink = SinkPath();
    if (!sink)
        return WriteOssMixer(word);
    if (std::strcmp(sink, "none") == 0)
        return false;
    RecordSinkMixerWord(sink, word);
    return true;
}

} // namespace kelp
