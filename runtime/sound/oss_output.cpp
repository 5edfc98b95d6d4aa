// The Open Sound System device: /dev/dsp (or /dev/sound/dsp), 16-bit little
// endian at the sound's channels and rate, and /dev/mixer for the level.
#include "sound/sound_output.h"

#include <fcntl.h>
#include <linux/soundcard.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace kelp {
namespace {

class OssOutput : public SoundOutput {
public:
    explicit OssOutput(int fd) : mFd(fd) {}
    ~OssOutput() override { close(mFd); }

    size_t Writable() override {
        audio_buf_info info{};
        // A driver that can't tell takes one block at a time, as a blocking
        // device would.
        if (ioctl(mFd, SNDCTL_DSP_GETOSPACE, &info) != 0)
            return 4096;
        return info.bytes > 0 ? size_t(info.bytes) / 2 : 0;
    }

    void Write(const int16_t *samples, size_t count) override {
        // The device sets the pace; a short or failed write loses the rest
        // of the block, which is only ever a moment of sound.
        const ssize_t written = write(mFd, samples, count * 2);
        (void)written;
    }

    bool Drained() override {
        int pending = 0;
        return ioctl(mFd, SNDCTL_DSP_GETODELAY, &pending) != 0 || pending <= 0;
    }

private:
    int mFd;
};

bool Setup(int fd, int32_t channels, int32_t rate) {
    int stereo = 0, format = AFMT_S16_LE, ch = channels, speed = rate;
    return ioctl(fd, SNDCTL_DSP_STEREO, &stereo) == 0 && ioctl(fd, SNDCTL_DSP_RESET, 0) == 0 &&
           ioctl(fd, SNDCTL_DSP_SETFMT, &format) == 0 && ioctl(fd, SNDCTL_DSP_CHANNELS, &ch) == 0 &&
           ioctl(fd, SNDCTL_DSP_SPEED, &speed) == 0 && ioctl(fd, SNDCTL_DSP_SYNC, 0) == 0;
}

int gMixer = -1; // stays open once opened for reading

int OpenMixer() {
    if (gMixer < 0)
        gMixer = open("/dev/mixer", O_RDWR | O_CLOEXEC);
    return gMixer;
}

void CloseMixer() {
    if (gMixer >= 0)
        close(gMixer);
    gMixer = -1;
}

} // namespace

std::unique_ptr<SoundOutput> OpenOssOutput(int32_t channels, int32_t rate) {
    int fd = open("/dev/dsp", O_WRONLY | O_CLOEXEC);
    if (fd < 0)
        fd = open("/dev/sound/dsp", O_WRONLY | O_CLOEXEC);
    if (fd < 0)
        return nullptr;
    if (!Setup(fd, channels, rate)) {
        close(fd);
        return nullptr;
    }
    return std::make_unique<OssOutput>(fd);
}

bool ReadOssMixer(uint32_t &word) {
    const int fd = OpenMixer();
    int value = 0;
    if (fd < 0 || ioctl(fd, SOUND_MIXER_READ_VOLUME, &value) != 0)
        return false;
    word = uint32_t(value);
    return true;
}

bool WriteOssMixer(uint32_t word) {
    const int fd = OpenMixer();
    if (fd < 0)
        return false;
    int value = int(word);
    ioctl(fd, SOUND_MIXER_WRITE_VOLUME, &value);
    CloseMixer();
    return true;
}

} // namespace kelp
