// MemoryBlock typed reads per second, and the byte queue's throughput.
#include "main/wiring_table.h"
#include "memory/byte_queue.h"

#include "kelp/memory.h"
#include "kelp/objects.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

void TypedReads(benchmark::State &state) {
    RuntimeObject *block = newMemoryBlock(4096);
    ((MemoryBlockObject *)block)->littleEndian = (uint8_t)state.range(0);
    int64_t sum = 0;
    for (auto _ : state) {
        for (int32_t offset = 0; offset < 4096; offset += 4)
            sum += memoryGetLong(block, offset);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * 1024);
    RuntimeUnlockObject(block);
}
BENCHMARK(TypedReads)->Arg(1)->Arg(0); // 1: the machine's order, 0: swapped

void DoubleReads(benchmark::State &state) {
    RuntimeObject *block = newMemoryBlock(4096);
    double sum = 0;
    for (auto _ : state) {
        for (int32_t offset = 0; offset < 4096; offset += 8)
            sum += memoryGetDouble(block, offset);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * 512);
    RuntimeUnlockObject(block);
}
BENCHMARK(DoubleReads);

// Appends in chunks of range(0) bytes and consumes as much, keeping about
// 4 MB queued, as a socket buffer under steady load would.
void ByteQueueThroughput(benchmark::State &state) {
    const long chunk = state.range(0);
    std::vector<uint8_t> bytes((size_t)chunk, 7), out((size_t)chunk);
    kelp::MemoryManager queue;
    while (queue.Count() < (4L << 20))
        queue.Append(bytes.data(), chunk);
    for (auto _ : state) {
        queue.Append(bytes.data(), chunk);
        benchmark::DoNotOptimize(queue.Copy(out.data(), chunk, true));
    }
    state.SetBytesProcessed(state.iterations() * chunk);
}
BENCHMARK(ByteQueueThroughput)->Arg(512)->Arg(16384)->Arg(262144);

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
