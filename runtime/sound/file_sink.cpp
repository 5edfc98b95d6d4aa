// A sound device that is a file: what a speaker would be given, recorded so
// that tests can hear it exactly.  The file is a run of records, each a
// four-letter tag, a 32-bit little-endian payload length and the payload:
//   "OPEN" channels, rate (32-bit each)    the device opened
//   "DATA" 16-bit samples                  one block as written
//   "MIXR" the mixer word                  a level set
//   "CLOS" (empty)                         the device closed
// Paced, it takes samples only as fast as a device of its channels and
// rate would play them, with room for two blocks, so that a sound lasts
// as long as it would on a speaker.
#include "sound/sound_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <vector>

namespace kelp {
namespace {

constexpr size_t kPacedRoom = 2 * 4096;

void AppendRecord(int fd, const char tag[4], const void *payload, uint32_t length) {
    std::vector<uint8_t> record(8 + length);
    std::memcpy(record.data(), tag, 4);
    for (int i = 0; i < 4; ++i)
        record[4 + i] = uint8_t(length >> (8 * i));
    if (length)
        std::memcpy(record.data() + 8, payload, length);
    size_t done = 0;
    while (done < record.size()) {
        const ssize_t n = write(fd, record.data() + done, record.size() - done);
        if (n <= 0)
            return; // a full disk loses the record, not the program
        done += size_t(n);
    }
}

void PutLittle32(uint8_t *at, uint32_t value) {
    for (int i = 0; i < 4; ++i)
        at[i] = uint8_t(value >> (8 * i));
}

double Seconds() {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

class FileSink : public SoundOutput {
public:
    FileSink(int fd, bool paced, int32_t channels, int32_t rate)
        : mFd(fd), mPaced(paced), mSamplesPerSecond(double(channels) * rate) {
        uint8_t payload[8];
        PutLittle32(payload, uint32_t(channels));
        PutLittle32(payload + 4, uint32_t(rate));
        AppendRecord(mFd, "OPEN", payload, sizeof payload);
    }
    ~FileSink() override {
        AppendRecord(mFd, "CLOS", nullptr, 0);
        close(mFd);
    }

    size_t Writable() override {
        if (!mPaced)
            return 4 * 4096;
        const double queued = Queued(Seconds());
        return queued >= kPacedRoom ? 0 : kPacedRoom - size_t(queued);
    }

    void Write(const int16_t *samples, size_t count) override {
        std::vector<uint8_t> bytes(count * 2);
        for (size_t i = 0; i < count; ++i) {
            bytes[2 * i] = uint8_t(uint16_t(samples[i]));
            bytes[2 * i + 1] = uint8_t(uint16_t(samples[i]) >> 8);
        }
        AppendRecord(mFd, "DATA", bytes.data(), uint32_t(bytes.size()));
        const double now = Seconds();
        mQueued = Queued(now) + double(count);
        mQueuedAt = now;
    }

    bool Drained() override { return !mPaced || Queued(Seconds()) <= 0; }

private:
    // Samples written and not yet played at time `now`.
    double Queued(double now) const {
        return std::max(0.0, mQueued - (now - mQueuedAt) * mSamplesPerSecond);
    }

    int mFd;
    bool mPaced;
    double mSamplesPerSecond;
    double mQueued = 0;   // samples queued at mQueuedAt
    double mQueuedAt = 0; // seconds
};

uint32_t gSinkMixerWord = 0xFFFF; // full level until a word is written

int OpenForAppend(const char *path) {
    return open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
}

} // namespace

std::unique_ptr<SoundOutput> OpenFileSink(const char *path, bool paced, int32_t channels,
                                          int32_t rate) {
    const int fd = OpenForAppend(path);
    if (fd < 0)
        return nullptr;
    return std::make_unique<FileSink>(fd, paced, channels, rate);
}

uint32_t SinkMixerWord() { return gSinkMixerWord; }

void RecordSinkMixerWord(const char *path, uint32_t word) {
    gSinkMixerWord = word;
    const int fd = OpenForAppend(path);
    if (fd < 0)
        return;
    uint8_t payload[4];
    PutLittle32(payload, word);
    AppendRecord(fd, "MIXR", payload, sizeof payload);
    close(fd);
}

} // namespace kelp
