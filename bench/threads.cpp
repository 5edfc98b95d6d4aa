// Thread figures: yields per second between two language threads (each
// yield hands the run lock to the other), and a yield with no other thread.
#include "main/wiring_table.h"
#include "objects/definitions.h"
#include "threads/thread_objects.h"

#include "kelp/objects.h"
#include "kelp/threads.h"

#include <chrono>
#include <cstdio>

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kYields = 200000;

void Spin(RuntimeObject *) {
    for (int i = 0; i < kYields; ++i)
        YieldToNextThread();
}

kelp::ObjectDefinition *SpinnerDefinition() {
    static const kelp::HookInstanceRow hooks[] = {{"Run", reinterpret_cast<void *>(&Spin)}};
    static const kelp::ClassDescription description = {.name = "Spinner",
                                                       .super = &kelp::ThreadDefinition,
                                                       .instanceSize = sizeof(kelp::ThreadObject),
                                                       .hookInstances = hooks};
    static kelp::ObjectDefinition *definition = kelp::BuildDefinition(description);
    return definition;
}

double Seconds(Clock::duration d) { return std::chrono::duration<double>(d).count(); }

} // namespace

int main() {
    kelp::WireRuntime();
    auto start = Clock::now();
    for (int i = 0; i < kYields; ++i)
        YieldToNextThread();
    std::printf("yield with no other thread: %.0f ns\n",
                Seconds(Clock::now() - start) * 1e9 / kYields);

    RuntimeObject *a = RuntimeNewObject(kelp::ClassForDefinition(SpinnerDefinition()));
    RuntimeObject *b = RuntimeNewObject(kelp::ClassForDefinition(SpinnerDefinition()));
    start = Clock::now();
    threadRun(a);
    threadRun(b);
    // The main thread has its turns too; it yields until both have ended.
    long mainYields = 0;
    while (ThreadGetState(a, 0) != 4 || ThreadGetState(b, 0) != 4) {
        YieldToNextThread();
        ++mainYields;
    }
    const double total = 2.0 * kYields + double(mainYields);
    std::printf("yields between threads: %.0f per second (%.0f yields in %.2f s)\n",
                total / Seconds(Clock::now() - start), total, Seconds(Clock::now() - start));
    RuntimeUnlockObject(a);
    RuntimeUnlockObject(b);
}
