// Sound figures: the processor time that decoding and writing a sound costs
// per second of sound (into a sink that is /dev/null), and the longest time
// one pass of the background tasks holds the loop while a sound plays at
// the pace of a real device.
#include "main/wiring_table.h"
#include "objects/definitions.h"
#include "runloop/background_task.h"
#include "sound/sound_class.h"

#include "kelp/objects.h"
#include "kelp/sound.h"

#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

void Put(std::vector<uint8_t> &b, uint32_t v, int bytes) {
    for (int i = 0; i < bytes; ++i)
        b.push_back(uint8_t(v >> (8 * i)));
}

// A 16-bit stereo 44,100 Hz RIFF WAVE file of `seconds`.
std::string WriteWave(int seconds) {
    const uint32_t frames = 44100u * uint32_t(seconds), data = frames * 4;
    std::vector<uint8_t> b = {'R', 'I', 'F', 'F'};
    Put(b, 36 + data, 4);
    for (char c : std::string("WAVEfmt "))
        b.push_back(uint8_t(c));
    Put(b, 16, 4), Put(b, 1, 2), Put(b, 2, 2), Put(b, 44100, 4), Put(b, 44100 * 4, 4);
    Put(b, 4, 2), Put(b, 16, 2);
    for (char c : std::string("data"))
        b.push_back(uint8_t(c));
    Put(b, data, 4);
    for (uint32_t i = 0; i < frames * 2; ++i)
        Put(b, uint32_t(int16_t(i * 97)), 2);
    const std::string path = "/tmp/kelp_bench_sound_" + std::to_string(getpid()) + ".wav";
    FILE *f = std::fopen(path.c_str(), "wb");
    std::fwrite(b.data(), 1, b.size(), f);
    std::fclose(f);
    return path;
}

double CpuSeconds() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return double(u.ru_utime.tv_sec + u.ru_stime.tv_sec) +
           double(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

RuntimeObject *NewSound(const std::string &path) {
    RuntimeObject *s = RuntimeNewObject(kelp::ClassForDefinition(kelp::SoundDefinition()));
    kelp::SetSound(s, path.c_str(), 0);
    return s;
}

} // namespace

int main() {
    kelp::WireRuntime();
    setenv("KELP_SOUND_SINK", "/dev/null", 1);
    const int seconds = 20;
    const std::string minute = WriteWave(seconds);
    RuntimeObject *sound = NewSound(minute);
    const double cpuBefore = CpuSeconds();
    soundPlay(sound);
    // A block each tick, as the loop runs it; the sleeps cost no processor.
    while (soundIsPlaying(sound)) {
        kelp::ScanBackgroundTasks(false);
        std::this_thread::sleep_for(std::chrono::milliseconds(17));
    }
    std::printf("decode and write, %d s of 44.1 kHz stereo: %.3f ms of processor per second "
                "of sound\n",
                seconds, (CpuSeconds() - cpuBefore) * 1000 / seconds);

    setenv("KELP_SOUND_SINK_PACE", "1", 1);
    const std::string few = WriteWave(3);
    RuntimeObject *paced = NewSound(few);
    soundPlay(paced);
    Clock::duration longest{};
    while (soundIsPlaying(paced)) {
        const auto start = Clock::now();
        kelp::ScanBackgroundTasks(false);
        longest = std::max(longest, Clock::now() - start);
        std::this_thread::sleep_for(std::chrono::milliseconds(16));
    }
    std::printf("longest pass of the background tasks while 3 s play at a device's pace: "
                "%.3f ms\n",
                std::chrono::duration<double, std::milli>(longest).count());
    RuntimeUnlockObject(sound);
    RuntimeUnlockObject(paced);
    std::remove(minute.c_str());
    std::remove(few.c_str());
}
