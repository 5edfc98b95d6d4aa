// The pump's own services: clocks, pollables, background tasks, DoEvents.
#include "runloop/background_task.h"
#include "runloop/clock.h"
#include "runloop/main_loop.h"
#include "runloop/pollable.h"

#include "kelp/runloop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace kelp {
namespace {

TEST(Clocks, MilliClockFollowsTicksAtFiftyThirdsOfAMillisecond) {
    EXPECT_EQ(MilliClockForTicks(0), 2147483648u);
    EXPECT_EQ(MilliClockForTicks(3), 2147483648u + 50u);
    EXPECT_EQ(MilliClockForTicks(60), 2147483648u + 1000u);
    // Wraps modulo 2^32 instead of overflowing.
    EXPECT_EQ(MilliClockForTicks(-3), 2147483648u - 50u);
    EXPECT_EQ(MilliClockForTicks(2147483647),
              static_cast<uint32_t>((2147483647LL * 50 / 3 + 2147483648LL) & 0xffffffffLL));
}

TEST(Clocks, TickCountAdvancesAtSixtyPerSecond) {
    // Measured against the steady clock, so a busy machine that oversleeps
    // changes nothing: sixty ticks a second, give or take the tick in progress.
    const auto start = std::chrono::steady_clock::now();
    const int32_t before = TickCount();
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
    const int32_t after = TickCount();
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(
                        std::chrono::steady_clock::now() - start)
                        .count();
    EXPECT_NEAR(after - before, ms * 60 / 1000, 3);
}

struct LoggingPollable : Pollable {
    LoggingPollable(std::string pollableName, std::vector<std::string> &calls)
        : name(std::move(pollableName)), log(calls) {}
    void Poll() override {
        log.push_back(name);
        if (action)
            action(this);
    }
    std::string name;
    std::vector<std::string> &log;
    std::function<void(LoggingPollable *)> action;
};

// Polled last to first, once a pass; one removing itself or everyone from
// inside its Poll skips nobody still registered.
TEST(Pollables, PolledLastToFirstWhateverTheyRemoveOnTheWay) {
    const struct {
        const char *what;
        int remover; // index of the pollable whose Poll removes, or -1
        bool removesAll;
        std::vector<std::string> first, second;
    } cases[] = {
        {"plain", -1, false, {"c", "b", "a"}, {"c", "b", "a"}},
        {"b removes itself", 1, false, {"c", "b", "a"}, {"c", "a"}},
        {"c removes everyone", 2, true, {"c"}, {}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        std::vector<std::string> log;
        LoggingPollable a("a", log), b("b", log), cc("c", log);
        LoggingPollable *all[] = {&a, &b, &cc};
        if (c.remover >= 0)
            all[c.remover]->action = [&, every = c.removesAll](LoggingPollable *self) {
                if (!every)
                    return RemovePollable(self);
                for (LoggingPollable *p : all)
                    RemovePollable(p);
            };
        for (LoggingPollable *p : all)
            AddPollable(p);
        PollAllPollables();
        EXPECT_EQ(log, c.first);
        log.clear();
        PollAllPollables();
        EXPECT_EQ(log, c.second);
        for (LoggingPollable *p : all)
            RemovePollable(p);
        EXPECT_EQ(PollableCount(), 0);
    }
    // Removing one between passes.
    std::vector<std::string> log;
    LoggingPollable a("a", log), b("b", log), c("c", log);
    for (LoggingPollable *p : {&a, &b, &c})
        AddPollable(p);
    RemovePollable(&b);
    PollAllPollables();
    EXPECT_EQ(log, (std::vector<std::string>{"c", "a"}));
}

TEST(Pollables, ADestroyedPollableLeavesTheRegistry) {
    std::vector<std::string> log;
    {
        LoggingPollable a("a", log);
        AddPollable(&a);
        EXPECT_EQ(PollableCount(), 1);
    }
    EXPECT_EQ(PollableCount(), 0);
    PollAllPollables();
    EXPECT_TRUE(log.empty());
}

struct CountingTask : BackgroundTask {
    explicit CountingTask(int32_t ticks, bool untimed = false) : BackgroundTask(ticks) {
        if (untimed)
            RemoveTimeout();
    }
    void Run() override { ++runs; }
    int runs = 0;
};

TEST(BackgroundTasks, ConstructionArmsATimeoutAndRegisters) {
    int before = BackgroundTaskCount();
    {
        CountingTask task(5);
        EXPECT_NE(task.timeoutId, 0u);
        EXPECT_EQ(task.lastRun, 0);
        EXPECT_EQ(task.period, 5);
        EXPECT_EQ(BackgroundTaskCount(), before + 1);
        EXPECT_FALSE(AnyUntimedBackgroundTask());
    }
    EXPECT_EQ(BackgroundTaskCount(), before);
}

TEST(BackgroundTasks, LoopScanSkipsTimedTasksAndBackEdgeScanRunsThem) {
    CountingTask timed(0);
    CountingTask untimed(0, true);
    ScanBackgroundTasks(true);
    EXPECT_EQ(timed.runs, 0);
    EXPECT_EQ(untimed.runs, 1);
    ScanBackgroundTasks(false);
    EXPECT_EQ(timed.runs, 1);
    EXPECT_EQ(untimed.runs, 2);
}

TEST(BackgroundTasks, TaskRunsOnlyWhenItsPeriodHasPassed) {
    CountingTask task(600, true); // ten seconds
    task.lastRun = TickCount();
    ScanBackgroundTasks(false);
    EXPECT_EQ(task.runs, 0);
    task.lastRun = TickCount() - 600;
    ScanBackgroundTasks(false);
    EXPECT_EQ(task.runs, 1);
    EXPECT_GE(task.lastRun, TickCount() - 2);
}

TEST(BackgroundTasks, BackEdgeCallDoesNoWorkTwiceInOneTick) {
    CountingTask task(0, true);
    // Find two calls that fall in one tick: the second must not run the task.
    for (int attempt = 0; attempt < 100; ++attempt) {
        RuntimeBackgroundTask();
        int32_t tick = TickCount();
        int runs = task.runs;
        RuntimeBackgroundTask();
        if (TickCount() == tick) {
            EXPECT_EQ(task.runs, runs);
            return;
        }
    }
    FAIL() << "no two calls fell into the same tick";
}

TEST(BackgroundTasks, BackEdgeCallRunsDueTasksOnANewTick) {
    CountingTask task(0, true);
    RuntimeBackgroundTask();
    int runs = task.runs;
    int32_t tick = TickCount();
    while (TickCount() == tick)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    RuntimeBackgroundTask();
    EXPECT_EQ(task.runs, runs + 1);
}

TEST(BackgroundTasks, EscapeStateIsReadIntoTheCancelFlagAtMostOnceASecond) {
    static bool escapeDown = false;
    SetEscapeKeyReader([] { return escapeDown; });
    escapeDown = true;
    // A check is due after at most 61 ticks; wait for the flag to rise.
    auto start = std::chrono::steady_clock::now();
    while (!UserCancelledFlag() &&
           std::chrono::steady_clock::now() - start < std::chrono::seconds(3)) {
        RuntimeBackgroundTask();
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    EXPECT_TRUE(UserCancelledFlag());
    // The next pass of the loop clears it.
    MainLoopStep(false);
    EXPECT_FALSE(UserCancelledFlag());
    SetEscapeKeyReader(nullptr);
}

TEST(BackgroundTasks, TimedTaskRunsFromItsToolkitTimeoutInsideTheLoop) {
    CountingTask task(1); // one tick: the timeout fires after 16 ms
    while (task.runs == 0)
        MainLoopStep(true); // blocks until the timeout wakes it
    EXPECT_GE(task.runs, 1);
}

TEST(BackgroundTasks, UntimedTaskKeepsTheLoopFromBlocking) {
    CountingTask task(0, true);
    // With nothing else to wake the toolkit, a blocking pass would never
    // return; the untimed task makes every pass a polling one.
    for (int i = 0; i < 5; ++i)
        MainLoopStep(true);
    EXPECT_EQ(task.runs, 5);
}

TEST(DoEvents, RunsOnePassWithoutWaiting) {
    std::vector<std::string> log;
    LoggingPollable a("a", log);
    AddPollable(&a);
    RuntimeDoEvents(nullptr, -1);
    EXPECT_EQ(log.size(), 1u);
    RuntimeDoEvents(nullptr, 0);
    EXPECT_EQ(log.size(), 2u);
    EXPECT_TRUE(BlockWhenIdle());
    RemovePollable(&a);
}

TEST(DoEvents, SleepsTheGivenMilliseconds) {
    auto start = std::chrono::steady_clock::now();
    RuntimeDoEvents(nullptr, 30);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(30));
}

struct LoopCounter {
    static void Serial() { ++serial; }
    static void Sockets(bool fromDebugger) {
        ++sockets;
        if (fromDebugger)
            ++debuggerSockets;
    }
    static inline int serial = 0, sockets = 0, debuggerSockets = 0;
};

TEST(MainLoopStep, ServicesSerialPortsAndSocketsEachPass) {
    SetSerialPortPoller(&LoopCounter::Serial);
    SetSocketPoller(&LoopCounter::Sockets);
    MainLoopStep(false);
    MainLoopStep(false);
    EXPECT_EQ(LoopCounter::serial, 2);
    EXPECT_EQ(LoopCounter::sockets, 2);
    EXPECT_EQ(LoopCounter::debuggerSockets, 0);
    SetSerialPortPoller(nullptr);
    SetSocketPoller(nullptr);
}

} // namespace
} // namespace kelp
