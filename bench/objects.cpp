// Costs of the object runtime's hottest calls: a lock/unlock pair, creating
// and releasing an object, and a cast down a five-deep class chain.
#include "kelp/kelp.h"
#include "main/wiring_table.h"

#include <benchmark/benchmark.h>

namespace {

RuntimeClass *Chain(int depth) {
    RuntimeClass *c = nullptr;
    for (int i = 0; i < depth; ++i) {
        c = RuntimeNewClass(c, 0, 0, 0, 0, 0);
        c->instanceSize = sizeof(RuntimeObject) + 16;
    }
    return c;
}

void LockUnlockPair(benchmark::State &state) {
    RuntimeObject *o = RuntimeNewObject(Chain(1));
    for (auto _ : state) {
        RuntimeLockObject(o);
        RuntimeUnlockObject(o);
        benchmark::DoNotOptimize(o->referenceCount);
    }
    RuntimeUnlockObject(o);
}
BENCHMARK(LockUnlockPair);

void NewObjectAndRelease(benchmark::State &state) {
    RuntimeClass *c = Chain(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        RuntimeObject *o = RuntimeNewObject(c);
        benchmark::DoNotOptimize(o);
        RuntimeUnlockObject(o);
    }
}
BENCHMARK(NewObjectAndRelease)->Arg(1)->Arg(5);

void CheckCastFiveDeep(benchmark::State &state) {
    RuntimeClass *root = RuntimeNewClass(nullptr, 0, 0, 0, 0, 0);
    root->instanceSize = sizeof(RuntimeObject);
    RuntimeClass *c = root;
    for (int i = 1; i < 5; ++i)
        c = RuntimeNewClass(c, 0, 0, 0, 0, 0);
    RuntimeObject *o = RuntimeNewObject(c);
    for (auto _ : state) {
        RuntimeObject *cast = RuntimeCheckCast(o, root); // walks the whole chain
        benchmark::DoNotOptimize(cast);
        RuntimeUnlockObject(cast);
    }
    RuntimeUnlockObject(o);
}
BENCHMARK(CheckCastFiveDeep);

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
