// Dictionary insert and look-up of 1,000,000 integer and string keys,
// beside std::unordered_map doing the same.  The Dictionary rows include
// boxing each key and value in a variant, as compiled code must.
#include "kelp/kelp.h"
#include "main/wiring_table.h"
#include "strings/kstring.h"

#include <benchmark/benchmark.h>

#include <string>
#include <unordered_map>
#include <vector>

namespace {

constexpr int32_t kKeys = 1000000;

RuntimeObject *NewDictionary() {
    static RuntimeClass *klass = RuntimeLookupClass(kelp::string("Dictionary").Release());
    return RuntimeNewObject(klass);
}

const std::vector<std::string> &Texts() {
    static const std::vector<std::string> texts = [] {
        std::vector<std::string> t;
        for (int32_t i = 0; i < kKeys; ++i)
            t.push_back("key-" + std::to_string(int64_t(i) * 7919));
        return t;
    }();
    return texts;
}

const std::vector<stringStorage *> &KelpTexts() {
    static const std::vector<stringStorage *> texts = [] {
        std::vector<stringStorage *> t;
        for (const std::string &s : Texts())
            t.push_back(kelp::string(s.c_str()).Release());
        return t;
    }();
    return texts;
}

void BM_DictionaryIntegerKeys(benchmark::State &state) {
    for (auto _ : state) {
        RuntimeObject *d = NewDictionary();
        for (int32_t i = 0; i < kKeys; ++i) {
            RuntimeObject *k = intToVariant(i), *v = intToVariant(i);
            dictionaryValueSetter(d, k, v);
            RuntimeUnlockObject(k);
            RuntimeUnlockObject(v);
        }
        int64_t sum = 0;
        for (int32_t i = 0; i < kKeys; ++i) {
            RuntimeObject *k = intToVariant(i);
            RuntimeObject *v = dictionaryValueGetter(d, k);
            sum += variantToInt(v);
            RuntimeUnlockObject(v);
            RuntimeUnlockObject(k);
        }
        benchmark::DoNotOptimize(sum);
        RuntimeUnlockObject(d);
    }
}
BENCHMARK(BM_DictionaryIntegerKeys)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_UnorderedMapIntegerKeys(benchmark::State &state) {
    for (auto _ : state) {
        std::unordered_map<int32_t, int32_t> m;
        for (int32_t i = 0; i < kKeys; ++i)
            m[i] = i;
        int64_t sum = 0;
        for (int32_t i = 0; i < kKeys; ++i)
            sum += m.at(i);
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_UnorderedMapIntegerKeys)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_DictionaryStringKeys(benchmark::State &state) {
    const auto &texts = KelpTexts();
    for (auto _ : state) {
        RuntimeObject *d = NewDictionary();
        for (int32_t i = 0; i < kKeys; ++i) {
            RuntimeObject *k = stringToVariant(texts[size_t(i)]), *v = intToVariant(i);
            dictionaryValueSetter(d, k, v);
            RuntimeUnlockObject(k);
            RuntimeUnlockObject(v);
        }
        int64_t sum = 0;
        for (int32_t i = 0; i < kKeys; ++i) {
            RuntimeObject *k = stringToVariant(texts[size_t(i)]);
            RuntimeObject *v = dictionaryValueGetter(d, k);
            sum += variantToInt(v);
            RuntimeUnlockObject(v);
            RuntimeUnlockObject(k);
        }
        benchmark::DoNotOptimize(sum);
        RuntimeUnlockObject(d);
    }
}
BENCHMARK(BM_DictionaryStringKeys)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_UnorderedMapStringKeys(benchmark::State &state) {
    const auto &texts = Texts();
    for (auto _ : state) {
        std::unordered_map<std::string, int32_t> m;
        for (int32_t i = 0; i < kKeys; ++i)
            m[texts[size_t(i)]] = i;
        int64_t sum = 0;
        for (int32_t i = 0; i < kKeys; ++i)
            sum += m.at(texts[size_t(i)]);
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_UnorderedMapStringKeys)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

int main(int argc, char **argv) {
    kelp::WireRuntime(); // the Dictionary class and its exports
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
