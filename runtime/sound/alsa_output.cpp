// The ALSA device "default", for machines without OSS: libasound is found
// while the program runs (no build needs it), 16-bit interleaved samples at
// the sound's channels and rate, with a buffer of half a second so that a
// block goes in whole.  The last sound is drained before the device closes,
// so that it is heard to its end.
#include "sound/sound_output.h"

#include "base/soft_library.h"

#include <cerrno>

namespace kelp {
namespace {

struct snd_pcm_t;
constexpr int kStreamPlayback = 0;
constexpr int kFormatS16Le = 2;
constexpr int kAccessRwInterleaved = 3;
constexpr unsigned kLatencyMicroseconds = 500000;

struct AlsaApi {
    int (*open)(snd_pcm_t **pcm, const char *name, int stream, int mode);
    int (*setParams)(snd_pcm_t *pcm, int format, int access, unsigned channels, unsigned rate,
                     int softResample, unsigned latency);
    long (*writei)(snd_pcm_t *pcm, const void *buffer, unsigned long frames);
    long (*availUpdate)(snd_pcm_t *pcm);
    int (*delay)(snd_pcm_t *pcm, long *frames);
    int (*recover)(snd_pcm_t *pcm, int err, int silent);
    int (*drain)(snd_pcm_t *pcm);
    int (*close)(snd_pcm_t *pcm);
};

template <typename F> bool Find(void *handle, const char *name, F &out) {
    out = reinterpret_cast<F>(OptionalSymbol(handle, name));
    return out != nullptr;
}

// The library reports a missing or busy device on standard error, many lines
// a time; for this program a missing device only means silence.
void IgnoreAlsaMessage(const char *, int, const char *, int, const char *, ...) {}

void SilenceAlsaMessages(void *handle) {
    using Handler = void (*)(const char *, int, const char *, int, const char *, ...);
    int (*setHandler)(Handler) = nullptr;
    if (Find(handle, "snd_lib_error_set_handler", setHandler))
        setHandler(&IgnoreAlsaMessage);
}

const AlsaApi *Alsa() {
    static AlsaApi api{};
    static const bool available = [] {
        void *h = OpenOptionalLibrary("libasound.so.2");
        if (h)
            SilenceAlsaMessages(h);
        return h && Find(h, "snd_pcm_open", api.open) &&
               Find(h, "snd_pcm_set_params", api.setParams) &&
               Find(h, "snd_pcm_writei", api.writei) &&
               Find(h, "snd_pcm_avail_update", api.availUpdate) &&
               Find(h, "snd_pcm_delay", api.delay) && Find(h, "snd_pcm_recover", api.recover) &&
               Find(h, "snd_pcm_drain", api.drain) && Find(h, "snd_pcm_close", api.close);
    }();
    return available ? &api : nullptr;
}

class AlsaOutput : public SoundOutput {
public:
    AlsaOutput(const AlsaApi &api, snd_pcm_t *pcm, int32_t channels)
        : mApi(api), mPcm(pcm), mChannels(channels) {}
    ~AlsaOutput() override {
        mApi.drain(mPcm);
        mApi.close(mPcm);
    }

    size_t Writable() override {
        long frames = mApi.availUpdate(mPcm);
        if (frames < 0) { // an underrun: start again
            mApi.recover(mPcm, int(frames), 1);
            frames = mApi.availUpdate(mPcm);
        }
        return frames > 0 ? size_t(frames) * size_t(mChannels) : 0;
    }

    void Write(const int16_t *samples, size_t count) override {
        const unsigned long frames = count / size_t(mChannels);
        long done = mApi.writei(mPcm, samples, frames);
        if (done == -EPIPE && mApi.recover(mPcm, int(done), 1) == 0)
            mApi.writei(mPcm, samples, frames);
    }

    bool Drained() override {
        long pending = 0;
        return mApi.delay(mPcm, &pending) != 0 || pending <= 0;
    }

private:
    const AlsaApi &mApi;
    snd_pcm_t *mPcm;
    int32_t mChannels;
};

} // namespace

std::unique_ptr<SoundOutput> OpenAlsaOutput(int32_t channels, int32_t rate) {
    const AlsaApi *api = Alsa();
    snd_pcm_t *pcm = nullptr;
    if (!api || api->open(&pcm, "default", kStreamPlayback, 0) != 0 || !pcm)
        return nullptr;
    if (api->setParams(pcm, kFormatS16Le, kAccessRwInterleaved, unsigned(channels), unsigned(rate),
                       1, kLatencyMicroseconds) != 0) {
        api->close(pcm);
        return nullptr;
    }
    return std::make_unique<AlsaOutput>(*api, pcm, channels);
}

} // namespace kelp
