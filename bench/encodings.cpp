// Conversion speed: UTF-8 to ISO 8859-1 and back on 100 MB, through the
// runtime's ConvertEncoding and through raw iconv, to show what the runtime
// adds on top of the C library.
#include "main/wiring_table.h"
#include "strings/kstring.h"

#include <benchmark/benchmark.h>

#include <iconv.h>
#include <string>

using kelp::string;

namespace {

constexpr size_t kBytes = 100u << 20;

// 100 MB of Latin-1 text where one character in eight is outside ASCII.
const std::string &LatinText() {
    static const std::string text = [] {
        std::string t(kBytes, 'a');
        for (size_t i = 0; i < t.size(); i += 8)
            t[i] = static_cast<char>(0xE9);
        return t;
    }();
    return text;
}

void RuntimeRoundTrip(benchmark::State &state) {
    const std::string &latin = LatinText();
    for (auto _ : state) {
        // A fresh record each round: the conversion cache must not answer.
        string source = string::FromBytes(latin.data(), (long)latin.size(), kEncodingLatin1);
        string utf8 = kelp::ConvertEncoding(source, kEncodingUTF8);
        string back = kelp::ConvertEncoding(utf8, kEncodingLatin1);
        benchmark::DoNotOptimize(back.Storage());
        if (back.Length() != (long)latin.size())
            state.SkipWithError("conversion failed");
    }
    state.SetBytesProcessed(state.iterations() * (int64_t)kBytes * 2);
}
BENCHMARK(RuntimeRoundTrip)->Unit(benchmark::kMillisecond)->Iterations(3);

size_t RawIconv(const char *to, const char *from, const std::string &in, std::string &out) {
    iconv_t cd = iconv_open(to, from);
    out.resize(in.size() * 4 + 4);
    char *inPtr = const_cast<char *>(in.data());
    char *outPtr = out.data();
    size_t inLeft = in.size(), outLeft = out.size();
    iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft);
    iconv_close(cd);
    out.resize(out.size() - outLeft);
    return out.size();
}

void RawIconvRoundTrip(benchmark::State &state) {
    const std::string &latin = LatinText();
    std::string utf8, back;
    for (auto _ : state) {
        RawIconv("UTF8", "ISO_8859-1", latin, utf8);
        RawIconv("ISO_8859-1", "UTF8", utf8, back);
        benchmark::DoNotOptimize(back.data());
    }
    state.SetBytesProcessed(state.iterations() * (int64_t)kBytes * 2);
}
BENCHMARK(RawIconvRoundTrip)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

int main(int argc, char **argv) {
    kelp::WireRuntime();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
