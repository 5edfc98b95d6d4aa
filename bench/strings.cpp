// Speed of the string core: concatenation, comparison and map lookups.
#include "kelp/strings.h"
#include "strings/kstring.h"
#include "strings/string_map.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

using kelp::string;

namespace {

void BM_ConcatSameEncoding(benchmark::State &state) {
    string a(std::string(static_cast<size_t>(state.range(0)), 'a').c_str());
    string b(std::string(static_cast<size_t>(state.range(0)), 'b').c_str());
    for (auto _ : state) {
        string c = a + b;
        benchmark::DoNotOptimize(c.Storage());
    }
}
BENCHMARK(BM_ConcatSameEncoding)->Arg(8)->Arg(100)->Arg(1000);

void BM_ConcatAsciiWithUtf8(benchmark::State &state) {
    string a("name: ");
    string b = string::FromUTF8("Zo\xc3\xab");
    for (auto _ : state) {
        string c = a + b;
        benchmark::DoNotOptimize(c.Storage());
    }
}
BENCHMARK(BM_ConcatAsciiWithUtf8);

void BM_ConcatLatin1WithUtf8(benchmark::State &state) {
    // Converts the Latin-1 side every time (a different record each round).
    string b = string::FromUTF8("Zo\xc3\xab");
    for (auto _ : state) {
        string a = string::FromBytes("caf\xe9 ", 5, kEncodingLatin1);
        string c = a + b;
        benchmark::DoNotOptimize(c.Storage());
    }
}
BENCHMARK(BM_ConcatLatin1WithUtf8);

void BM_AppendLoop(benchmark::State &state) {
    string piece("word ");
    for (auto _ : state) {
        string text;
        for (int i = 0; i < 100; ++i)
            text += piece;
        benchmark::DoNotOptimize(text.Storage());
    }
}
BENCHMARK(BM_AppendLoop);

void BM_RuntimeAddString(benchmark::State &state) {
    stringStorage *a = string("How many apples ").ExtractStringStorage();
    stringStorage *b = string("does Anna have?").ExtractStringStorage();
    for (auto _ : state) {
        stringStorage *c = RuntimeAddString(a, b);
        benchmark::DoNotOptimize(c);
        RuntimeUnlockString(c);
    }
    RuntimeUnlockString(a);
    RuntimeUnlockString(b);
}
BENCHMARK(BM_RuntimeAddString);

void BM_CompareAscii(benchmark::State &state) {
    stringStorage *a = string("PushButton1_Action").ExtractStringStorage();
    stringStorage *b = string("pushbutton1_action").ExtractStringStorage();
    for (auto _ : state)
        benchmark::DoNotOptimize(RuntimeStringCompare(a, b));
    RuntimeUnlockString(a);
    RuntimeUnlockString(b);
}
BENCHMARK(BM_CompareAscii);

void BM_CompareUtf8(benchmark::State &state) {
    stringStorage *a =
        string::FromUTF8("Caf\xc3\xa9 cr\xc3\xa8me br\xc3\xbbl\xc3\xa9").ExtractStringStorage();
    stringStorage *b =
        string::FromUTF8("CAF\xc3\x89 CR\xc3\x88ME BR\xc3\x9bL\xc3\x89").ExtractStringStorage();
    for (auto _ : state)
        benchmark::DoNotOptimize(RuntimeStringCompare(a, b));
    RuntimeUnlockString(a);
    RuntimeUnlockString(b);
}
BENCHMARK(BM_CompareUtf8);

void BM_StringMapLookup(benchmark::State &state) {
    kelp::StringMap<int> map;
    std::vector<string> keys;
    for (int i = 0; i < state.range(0); ++i) {
        keys.push_back(string(("RuntimeExport" + std::to_string(i)).c_str()));
        map.AddEntry(keys.back(), i);
    }
    size_t i = 0;
    for (auto _ : state) {
        int v = 0;
        benchmark::DoNotOptimize(map.GetEntry(keys[i], v));
        i = (i + 1) % keys.size();
    }
}
BENCHMARK(BM_StringMapLookup)->Arg(256)->Arg(2124)->Arg(20000);

void BM_StringMapInsert(benchmark::State &state) {
    std::vector<string> keys;
    for (int i = 0; i < 2124; ++i)
        keys.push_back(string(("RuntimeExport" + std::to_string(i)).c_str()));
    for (auto _ : state) {
        kelp::StringMap<int> map;
        for (size_t i = 0; i < keys.size(); ++i)
            map.AddEntry(keys[i], static_cast<int>(i));
        benchmark::DoNotOptimize(map.Count());
    }
}
BENCHMARK(BM_StringMapInsert);

} // namespace

BENCHMARK_MAIN();
