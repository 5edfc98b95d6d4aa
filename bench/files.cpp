// Speed of the file layers: reading a 100 MB text file line by line against
// std::getline on the same file, decoding a 4,000 x 3,000 BMP, and pixel
// sets through RGBSurface (the last needs an X display; without DISPLAY it
// is skipped).
#include "bitmaps/bmp_codec.h"
#include "files/unix_data_file.h"
#include "main/wiring_table.h"
#include "process/display.h"
#include "stream_classes/text_input.h"

#include "kelp/kelp.h"

#include <benchmark/benchmark.h>
#include <gtk/gtk.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace {

const std::string &TextFile() {
    static const std::string path = [] {
        std::string p = "/tmp/kelp-bench-lines.txt";
        std::ofstream out(p, std::ios::binary);
        std::string line;
        for (size_t written = 0, n = 0; written < 100u << 20; ++n) {
            // Lines of 10 to 120 bytes, with all three line ends.
            line.assign(10 + n * 37 % 110, static_cast<char>('a' + n % 26));
            line += n % 3 == 0 ? "\r\n" : n % 3 == 1 ? "\n" : "\r";
            if (n % 3 == 2)
                line += 'x'; // a CR followed by text
            out << line;
            written += line.size();
        }
        return p;
    }();
    return path;
}

void BM_ReadLine100MB(benchmark::State &state) {
    const std::string &path = TextFile();
    for (auto _ : state) {
        auto file = std::make_unique<kelp::UnixDataFile>();
        file->Open(path, kelp::UnixDataFile::kRead);
        kelp::TextInput in(std::move(file));
        size_t lines = 0, bytes = 0;
        while (!in.IsEOF()) {
            kelp::string line = in.ReadLine();
            bytes += static_cast<size_t>(line.Length());
            ++lines;
        }
        benchmark::DoNotOptimize(bytes);
        state.counters["lines"] = static_cast<double>(lines);
    }
    state.SetBytesProcessed(state.iterations() * (100 << 20));
}
BENCHMARK(BM_ReadLine100MB)->Unit(benchmark::kMillisecond)->Iterations(3);

// The standard library's line reader on the same bytes (it splits at LF only).
void BM_StdGetline100MB(benchmark::State &state) {
    const std::string &path = TextFile();
    for (auto _ : state) {
        std::ifstream in(path, std::ios::binary);
        std::string line;
        size_t lines = 0, bytes = 0;
        while (std::getline(in, line)) {
            bytes += line.size();
            ++lines;
        }
        benchmark::DoNotOptimize(bytes);
        state.counters["lines"] = static_cast<double>(lines);
    }
    state.SetBytesProcessed(state.iterations() * (100 << 20));
}
BENCHMARK(BM_StdGetline100MB)->Unit(benchmark::kMillisecond)->Iterations(3);

std::string BigBmp() {
    const int w = 4000, h = 3000;
    std::vector<uint8_t> rgb(static_cast<size_t>(w) * h * 3);
    for (size_t i = 0; i < rgb.size(); ++i)
        rgb[i] = static_cast<uint8_t>(i * 7);
    return kelp::EncodeBmp(rgb.data(), w, h, w * 3, 3);
}

void BM_DecodeBmp4000x3000(benchmark::State &state) {
    std::string file = BigBmp();
    for (auto _ : state) {
        kelp::RGBImage image;
        bool ok =
            kelp::DecodeBmp(reinterpret_cast<const uint8_t *>(file.data()), file.size(), image);
        benchmark::DoNotOptimize(ok);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(file.size()));
}
BENCHMARK(BM_DecodeBmp4000x3000)->Unit(benchmark::kMillisecond);

void BM_RGBSurfacePixelSets(benchmark::State &state) {
    if (!kelp::DisplayAvailable()) {
        state.SkipWithError("no DISPLAY");
        return;
    }
    RuntimeObject *picture = newPicture(256, 256, 32);
    RuntimeObject *surface = pictureRGBSurfaceGetter(picture, 0);
    uint32_t n = 0;
    for (auto _ : state) {
        rgbSurfaceSetPixel(surface, static_cast<int32_t>(n & 255),
                           static_cast<int32_t>(n >> 8 & 255), n * 2654435761u);
        ++n;
    }
    gdk_display_sync(gdk_display_get_default()); // the server's work counts too
    state.SetItemsProcessed(state.iterations());
    RuntimeUnlockObject(surface);
    RuntimeUnlockObject(picture);
}
BENCHMARK(BM_RGBSurfacePixelSets);

} // namespace

int main(int argc, char **argv) {
    kelp::WireRuntime();
    if (std::getenv("DISPLAY"))
        kelp::InitToolkit(&argc, &argv);
    RuntimeInitExternalClasses();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::remove(TextFile().c_str());
    return 0;
}
