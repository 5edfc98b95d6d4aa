// Sound through the file sink: what reaches the "device" is compared sample
// by sample with the files that Python wrote.
#include "support/image_builder.h"

#include "objects/definitions.h"
#include "resources/resource_store.h"
#include "runloop/background_task.h"
#include "shutdown/shutdown_task.h"
#include "sound/sndfile_api.h"
#include "sound/sound_class.h"
#include "sound/sound_output.h"

#include "kelp/objects.h"
#include "kelp/sound.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <thread>

namespace {

using kelp::test::ReadFileBytes;
using kelp::test::TempDir;

struct Record {
    std::string tag;
    std::vector<uint8_t> payload;
    int32_t Word(size_t i) const {
        int32_t v;
        std::memcpy(&v, payload.data() + 4 * i, 4);
        return v;
    }
    std::vector<int16_t> Samples() const {
        std::vector<int16_t> s(payload.size() / 2);
        std::memcpy(s.data(), payload.data(), s.size() * 2);
        return s;
    }
};

std::vector<Record> ReadSink(const std::string &path) {
    const std::vector<uint8_t> bytes = ReadFileBytes(path);
    std::vector<Record> records;
    for (size_t at = 0; at + 8 <= bytes.size();) {
        uint32_t length;
        std::memcpy(&length, &bytes[at + 4], 4);
        records.push_back({std::string(bytes.begin() + at, bytes.begin() + at + 4),
                           {bytes.begin() + at + 8, bytes.begin() + at + 8 + length}});
        at += 8 + length;
    }
    return records;
}

// The payload of a WAVE file's data chunk.
std::vector<uint8_t> WaveData(const std::string &path) {
    const std::vector<uint8_t> b = ReadFileBytes(path);
    for (size_t at = 12; at + 8 <= b.size();) {
        uint32_t length;
        std::memcpy(&length, &b[at + 4], 4);
        if (std::memcmp(&b[at], "data", 4) == 0)
            return {b.begin() + at + 8, b.begin() + at + 8 + length};
        at += 8 + length + (length & 1);
    }
    return {};
}

// What a 16-bit device should be given for each file.
std::vector<int16_t> Expected(const std::string &path, int sampleBytes, bool isFloat) {
    const std::vector<uint8_t> data = WaveData(path);
    std::vector<int16_t> out;
    if (isFloat) {
        std::vector<float> f(data.size() / 4);
        std::memcpy(f.data(), data.data(), f.size() * 4);
        double peak = 0;
        for (float v : f)
            peak = std::max(peak, std::fabs(double(v)));
        const double scale = peak < 1e-10 ? 1.0 : 32700.0 / peak;
        for (float v : f)
            out.push_back(int16_t(double(v) * scale));
    } else if (sampleBytes == 1) {
        for (uint8_t v : data)
            out.push_back(int16_t((v - 128) * 256));
    } else {
        out.resize(data.size() / 2);
        std::memcpy(out.data(), data.data(), out.size() * 2);
    }
    return out;
}

class SoundTest : public ::testing::Test {
protected:
    void SetUp() override {
        setenv("KELP_SOUND_SINK", Sink().c_str(), 1);
        unsetenv("KELP_SOUND_SINK_PACE");
        kelp::SetSndfileLibraryNamesForTest({"libsndfile.so.1"});
        const std::string command =
            "python3 " KELP_SOURCE_DIR "/tests/sound/make_waves.py " + mDir.path();
        ASSERT_EQ(std::system(command.c_str()), 0);
    }
    std::string Sink() const { return mDir / "sink"; }
    RuntimeObject *NewSound(const std::string &file) {
        RuntimeObject *s = RuntimeNewObject(kelp::ClassForDefinition(kelp::SoundDefinition()));
        kelp::SetSound(s, (mDir / file).c_str(), 0);
        return s;
    }
    // Runs the tasks as the loop would, a tick apart, for at most 20 s.
    static void RunTicks(int ticks, RuntimeObject *until = nullptr) {
        for (int i = 0; i < ticks && (!until || soundIsPlaying(until)); ++i) {
            kelp::ScanBackgroundTasks(false);
            std::this_thread::sleep_for(std::chrono::milliseconds(17));
        }
    }
    static void RunUntilQuiet(RuntimeObject *sound) { RunTicks(1200, sound); }
    std::vector<int16_t> Played() {
        std::vector<int16_t> all;
        for (const Record &r : ReadSink(Sink()))
            if (r.tag == "DATA") {
                const auto s = r.Samples();
                all.insert(all.end(), s.begin(), s.end());
            }
        return all;
    }
    TempDir mDir;
};

TEST_F(SoundTest, EachKindOfWaveReachesTheDeviceAsSixteenBitBlocksAtItsOwnRate) {
    struct Row {
        const char *file;
        int channels, rate, sampleBytes;
        bool isFloat;
    } rows[] = {{"u8.wav", 1, 22050, 1, false},
                {"s16.wav", 2, 44100, 2, false},
                {"float.wav", 1, 8000, 4, true},
                {"silent.wav", 1, 8000, 4, true}};
    for (const Row &row : rows) {
        SCOPED_TRACE(row.file);
        std::filesystem::remove(Sink());
        RuntimeObject *sound = NewSound(row.file);
        soundPlay(sound);
        EXPECT_EQ(soundIsPlaying(sound), 1);
        RunUntilQuiet(sound);
        const std::vector<Record> records = ReadSink(Sink());
        ASSERT_GE(records.size(), 3u);
        EXPECT_EQ(records.front().tag, "OPEN");
        EXPECT_EQ(records.front().Word(0), row.channels);
        EXPECT_EQ(records.front().Word(1), row.rate);
        EXPECT_EQ(records.back().tag, "CLOS");
        for (size_t i = 1; i + 2 < records.size(); ++i)
            EXPECT_EQ(records[i].payload.size(), 2 * 4096u) << "block " << i;
        EXPECT_EQ(Played(), Expected(mDir / row.file, row.sampleBytes, row.isFloat));
        EXPECT_EQ(kelp::SoundDeviceUseCount(), 0);
        RuntimeUnlockObject(sound);
    }
}

TEST_F(SoundTest, PlayRestartsTwoSoundsShareOneDeviceAndStopIsHarmless) {
    RuntimeObject *a = NewSound("u8.wav");
    RuntimeObject *b = NewSound("s16.wav");
    soundStop(a); // nothing playing
    EXPECT_EQ(soundIsPlaying(a), 0);
    soundPlay(a);
    RunTicks(1);
    soundPlay(a); // starts over: the device closes and opens again
    soundPlay(b); // joins with the format of the first
    EXPECT_EQ(kelp::SoundDeviceUseCount(), 2);
    RunUntilQuiet(a);
    RunUntilQuiet(b);
    size_t opens = 0, samples = 0;
    for (const Record &r : ReadSink(Sink())) {
        opens += r.tag == "OPEN";
        samples += r.tag == "DATA" ? r.payload.size() / 2 : 0;
        if (r.tag == "OPEN") {
            EXPECT_EQ(r.Word(1), 22050);
        }
    }
    EXPECT_EQ(opens, 2u);
    EXPECT_EQ(samples, 4096u + 10000u + 10000u); // a first block, then both whole
    EXPECT_EQ(kelp::SoundDeviceUseCount(), 0);
    RuntimeUnlockObject(a);
    RuntimeUnlockObject(b);
}

TEST_F(SoundTest, ASoundLetGoWhilePlayingPlaysToItsEnd) {
    const int tasks = kelp::BackgroundTaskCount();
    RuntimeObject *sound = NewSound("u8.wav");
    soundPlay(sound);
    RuntimeUnlockObject(sound);
    for (int i = 0; i < 1200 && kelp::BackgroundTaskCount() > tasks; ++i)
        RunTicks(1);
    EXPECT_EQ(kelp::BackgroundTaskCount(), tasks);
    EXPECT_EQ(Played().size(), 10000u);
}

TEST_F(SoundTest, VolumeAndPanWriteTheMixerWords) {
    RuntimeObject *sound = NewSound("u8.wav");
    EXPECT_EQ(SoundVolumeGetter(sound, 0), 100); // the sink starts at full level
    struct Row {
        bool pan;
        int32_t value, stored;
        uint32_t word;
    } rows[] = {{false, 150, 100, 0xFFFF},
                {false, 30, 30, 76 | 76 << 8},
                {true, 0, 0, 60 | 60 << 8},
                {true, 50, 50, 30 | 60 << 8},
                {true, -300, -100, 60}};
    for (const Row &row : rows) {
        std::filesystem::remove(Sink());
        (row.pan ? SoundPanSetter : SoundVolumeSetter)(sound, 0, row.value);
        EXPECT_EQ((row.pan ? SoundPanGetter : SoundVolumeGetter)(sound, 0), row.stored);
        const std::vector<Record> records = ReadSink(Sink());
        ASSERT_EQ(records.size(), 1u);
        EXPECT_EQ(records[0].tag, "MIXR");
        EXPECT_EQ(uint32_t(records[0].Word(0)), row.word) << row.value;
    }
    RuntimeUnlockObject(sound);
}

TEST_F(SoundTest, WhatCannotPlayIsSilentWithoutAnError) {
    kelp::test::WriteFileBytes(mDir / "empty.wav", {});
    kelp::test::WriteFileBytes(mDir / "text.wav", {'h', 'e', 'l', 'l', 'o'});
    std::vector<uint8_t> cut = ReadFileBytes(mDir / "s16.wav");
    cut.resize(30);
    kelp::test::WriteFileBytes(mDir / "cut.wav", cut);
    for (const char *file : {"empty.wav", "text.wav", "cut.wav", "missing.wav"}) {
        SCOPED_TRACE(file);
        RuntimeObject *sound = NewSound(file);
        soundPlay(sound);
        EXPECT_EQ(soundIsPlaying(sound), 0);
        EXPECT_EQ(kelp::SoundDeviceUseCount(), 0);
        RuntimeUnlockObject(sound);
    }
    RuntimeObject *bare = RuntimeNewObject(kelp::ClassForDefinition(kelp::SoundDefinition()));
    soundPlayLooping(bare); // no file at all
    EXPECT_EQ(soundIsPlaying(bare), 0);
    RuntimeUnlockObject(bare);
    kelp::SetSndfileLibraryNamesForTest({}); // a machine without the decoder
    RuntimeObject *sound = NewSound("u8.wav");
    soundPlay(sound);
    EXPECT_EQ(soundIsPlaying(sound), 0);
    RuntimeUnlockObject(sound);
    EXPECT_FALSE(std::filesystem::exists(Sink()));
}

TEST_F(SoundTest, LoopingStartsOverAndAPacedSoundPlaysAsLongAsItLasts) {
    RuntimeObject *sound = NewSound("u8.wav");
    soundPlayLooping(sound);
    RunTicks(8);
    EXPECT_EQ(soundIsPlaying(sound), 1);
    soundStop(sound);
    EXPECT_GT(Played().size(), 10000u); // past the end and round again
    EXPECT_EQ(soundIsPlaying(sound), 0);

    setenv("KELP_SOUND_SINK_PACE", "1", 1);
    RuntimeObject *half = NewSound("half_second.wav");
    const auto start = std::chrono::steady_clock::now();
    soundPlay(half);
    RunUntilQuiet(half);
    // Only a lower bound: a busy machine may take longer, never shorter.
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(450));
    RuntimeUnlockObject(sound);
    RuntimeUnlockObject(half);
}

TEST_F(SoundTest, AResourceSoundPlaysFromATemporaryFileThatGoesAtTheRunDown) {
    setenv("TMPDIR", mDir.path().c_str(), 1);
    const std::vector<uint8_t> wave = ReadFileBytes(mDir / "u8.wav");
    kelp::ClearResourcesForTest();
    kelp::AddResource(kelp::kResourceWave, 3, wave.data(), uint32_t(wave.size()), 0);
    EXPECT_EQ(RuntimeGetSoundFromResourceManager(4), nullptr);
    RuntimeObject *sound = RuntimeGetSoundFromResourceManager(3);
    ASSERT_NE(sound, nullptr);
    soundPlay(sound);
    RunUntilQuiet(sound);
    EXPECT_EQ(Played(), Expected(mDir / "u8.wav", 1, false));
    auto written = [&] {
        int n = 0;
        for (const auto &e : std::filesystem::directory_iterator(mDir.path()))
            n += e.path().filename().string().rfind("kp_", 0) == 0;
        return n;
    };
    EXPECT_EQ(written(), 1);
    RuntimeUnlockObject(sound);
    kelp::RunShutdownTasks();
    EXPECT_EQ(written(), 0);
    kelp::ClearResourcesForTest();
    unsetenv("TMPDIR");
}

// A compiled program: plays resource 1 and waits in its own loop, as the
// drill does, until the sound has ended.
TEST_F(SoundTest, AnImagePlaysItsResourceSoundIntoTheSink) {
    using kelp::test::Reg;
    kelp::test::ImageBuilder b;
    b.AddResource("WAVE", 1, ReadFileBytes(mDir / "s16.wav"));
    b.Prologue();
    b.Push(Reg::RBX);
    b.Push(Reg::R12);
    b.MovImm(Reg::RDI, 1);
    b.CallImport("RuntimeGetSoundFromResourceManager");
    b.MovReg(Reg::RBX, Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("soundPlay");
    const size_t loop = b.Here();
    b.CallImport("RuntimeBackgroundTask");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("soundIsPlaying");
    b.Bytes({0x84, 0xC0}); // test al, al
    const int32_t back = int32_t(loop) - int32_t(b.Here() + 6);
    b.Bytes({0x0F, 0x85, uint8_t(back), uint8_t(back >> 8), uint8_t(back >> 16),
             uint8_t(back >> 24)}); // jnz loop
    b.Pop(Reg::R12);
    b.Pop(Reg::RBX);
    b.Epilogue();
    const auto result = kelp::test::RunAppended(b.Build());
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(Played(), Expected(mDir / "s16.wav", 2, false));
}

} // namespace
