// Threads of the language on real POSIX threads: the order in which the
// scheduler gives them the run, sleeps and waits, and the locks, with a
// second process (Python) contending for a mutex's lock file.
#include "support/class_kit.h"
#include "support/image_builder.h"

#include "objects/definitions.h"
#include "threads/thread_objects.h"

#include "kelp/exceptions.h"
#include "kelp/runloop.h"
#include "kelp/threads.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <thread>

namespace {

using namespace kelp;
using Clock = std::chrono::steady_clock;

// A Thread subclass whose Run event calls the object's work.
struct TestThread {
    ThreadObject base;
    std::function<void(RuntimeObject *)> *work;
};

void RunHandler(RuntimeObject *self) { (*reinterpret_cast<TestThread *>(self)->work)(self); }

ObjectDefinition *TestThreadDefinition() {
    static const HookInstanceRow hooks[] = {{"Run", reinterpret_cast<void *>(&RunHandler)}};
    static const ClassDescription description = {.name = "TestThread",
                                                 .super = &ThreadDefinition,
                                                 .instanceSize = sizeof(TestThread),
                                                 .hookInstances = hooks};
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

struct Started {
    RuntimeObject *object;
    std::function<void(RuntimeObject *)> work;
};

RuntimeObject *New(ObjectDefinition *definition) {
    return RuntimeNewObject(ClassForDefinition(definition));
}

// Runs each work on a thread of the given priority, and yields until all
// have ended (at most 20 s).
void RunAll(std::vector<std::pair<int32_t, std::function<void(RuntimeObject *)>>> works,
            std::function<void(std::vector<RuntimeObject *> &)> whileRunning = nullptr) {
    std::vector<std::function<void(RuntimeObject *)>> keep;
    keep.reserve(works.size());
    std::vector<RuntimeObject *> threads;
    for (auto &[priority, work] : works) {
        keep.push_back(work);
        RuntimeObject *t = New(TestThreadDefinition());
        reinterpret_cast<TestThread *>(t)->work = &keep.back();
        ThreadSetPriority(t, 0, priority);
        threads.push_back(t);
    }
    for (RuntimeObject *t : threads)
        threadRun(t);
    if (whileRunning)
        whileRunning(threads);
    const auto start = Clock::now();
    for (RuntimeObject *t : threads)
        while (ThreadGetState(t, 0) != 4 && Clock::now() - start < std::chrono::seconds(20))
            YieldToNextThread();
    for (RuntimeObject *t : threads) {
        EXPECT_EQ(ThreadGetState(t, 0), 4);
        RuntimeUnlockObject(t);
    }
}

// The exception a call left pending: its class name, number and message.
std::string Raised(const std::function<void()> &call) {
    RuntimeEnterHandlerRegion();
    call();
    RuntimeObject *e = RuntimeTakeException();
    RuntimeLeaveHandlerRegion();
    if (!e)
        return "";
    auto *x = reinterpret_cast<RuntimeExceptionObject *>(e);
    std::string text = test::Str(e->klass->name) + " " + std::to_string(x->errorNumber) + " " +
                       test::Str(x->message);
    RuntimeUnlockObject(e);
    return text;
}

TEST(Threads, TurnsFollowPrioritiesAndOneThreadRunsAtATime) {
    std::vector<int> log;
    bool inside = false;
    int overlaps = 0;
    auto counter = [&](int tag) {
        return [&, tag](RuntimeObject *) {
            for (int i = 0; i < 600; ++i) {
                overlaps += inside;
                inside = true;
                log.push_back(tag);
                std::this_thread::yield(); // room for a thread that shouldn't run
                inside = false;
                YieldToNextThread();
            }
        };
    };
    RunAll({{10, counter(10)}, {5, counter(5)}});
    EXPECT_EQ(overlaps, 0);
    // While both ran, the thread of priority 10 had twice the turns.
    const auto lastOfTen = std::find(log.rbegin(), log.rend(), 10).base();
    const double ten = double(std::count(log.begin(), lastOfTen, 10));
    const double five = double(std::count(log.begin(), lastOfTen, 5));
    EXPECT_NEAR(ten / five, 2.0, 0.2);
}

TEST(Threads, SleepSuspendAndResume) {
    const auto start = Clock::now();
    Clock::duration slept{};
    RunAll({{5,
             [&](RuntimeObject *self) {
                 ThreadSleep(self, 150, 0);
                 slept = Clock::now() - start;
             }},
            {5, [](RuntimeObject *self) { ThreadSleep(self, 100000, 0); }},
            {5, [](RuntimeObject *self) { ThreadSuspend(self); }}},
           [](std::vector<RuntimeObject *> &t) {
               EXPECT_EQ(ThreadGetState(t[0], 0), 3);
               EXPECT_EQ(ThreadGetState(t[1], 0), 3);
               EXPECT_EQ(ThreadGetState(t[2], 0), 2);
               ThreadResume(t[1]); // wakes the long sleeper at once
               ThreadResume(t[2]);
           });
    // The run loop's millisecond clock moves in ticks of a sixtieth.
    EXPECT_GE(slept, std::chrono::milliseconds(150 - 17));
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(20));

    // With the main thread asleep too, an early riser runs long before its time.
    bool ran = false;
    RunAll({{5,
             [&](RuntimeObject *self) {
                 ThreadSleep(self, 5000, 1);
                 ran = true;
             }}},
           [&](std::vector<RuntimeObject *> &) {
               const auto before = Clock::now();
               AppSleepCurrentThread(nullptr, 300); // sleeps in the scheduler
               EXPECT_TRUE(ran);
               EXPECT_LT(Clock::now() - before, std::chrono::seconds(3));
           });
}

TEST(Threads, LocksMakeWaitersWaitAndMisuseRaises) {
    std::vector<std::string> log;
    RuntimeObject *semaphore = New(SemaphoreDefinition());
    Semaphore_Constructor(semaphore, 1);
    RunAll({{5,
             [&](RuntimeObject *self) {
                 Semaphore_Signal(semaphore);
                 ThreadSleep(self, 50, 0);
                 log.push_back("first releases");
                 semaphore_release(semaphore);
             }},
            {5,
             [&](RuntimeObject *) {
                 Semaphore_Signal(semaphore);
                 log.push_back("second goes on");
                 semaphore_release(semaphore);
             }}},
           [&](std::vector<RuntimeObject *> &t) { EXPECT_EQ(ThreadGetState(t[1], 0), 1); });
    EXPECT_EQ(log, (std::vector<std::string>{"first releases", "second goes on"}));

    RuntimeObject *section = New(CriticalSectionDefinition());
    RuntimeObject *mutex = New(MutexDefinition());
    MutexContructor(mutex, nullptr);
    criticalsection_enter(section);
    criticalsection_enter(section); // re-entrant
    bool others = true;
    RunAll({{5, [&](RuntimeObject *) { others = CriticalSection_TryEnter(section); }}});
    EXPECT_FALSE(others);
    ASSERT_TRUE(MutexTryLock(mutex));
    std::string leaveSection, leaveMutex;
    RunAll({{5, [&](RuntimeObject *) {
                 leaveSection = Raised([&] { criticalsection_leave(section); });
                 leaveMutex = Raised([&] { MutexUnlock(mutex); });
             }}});
    EXPECT_EQ(leaveSection, "IllegalLockingException 2 The thread which Entered the "
                            "CriticalSection must be the thread to Leave the CriticalSection");
    EXPECT_EQ(leaveMutex, "IllegalLockingException 3 The thread which Signaled the Mutex must be "
                          "the thread to Release the Mutex");
    criticalsection_leave(section);
    criticalsection_leave(section);
    MutexUnlock(mutex);
    EXPECT_EQ(Raised([&] { semaphore_release(semaphore); }),
              "IllegalLockingException 0 Called Semaphore.Release too many times.");
    EXPECT_EQ(Raised([&] { Semaphore_Constructor(semaphore, 0); }),
              "IllegalLockingException 1 Illegal initialCount for the Semaphore.");
    for (RuntimeObject *o : {semaphore, section, mutex})
        RuntimeUnlockObject(o);

    std::string again;
    RunAll({{5, [](RuntimeObject *self) { ThreadSleep(self, 30, 0); }}},
           [&](std::vector<RuntimeObject *> &t) { again = Raised([&] { threadRun(t[0]); }); });
    EXPECT_EQ(again, "ThreadAlreadyRunningException 0 You cannot call Run on a thread that is "
                     "already running.");
}

TEST(Threads, AMutexExcludesAnotherProcessUntilItLetsGo) {
    test::TempDir dir;
    setenv("TMPDIR", dir.path().c_str(), 1);
    const std::string lockFile = dir / "shared.lock";
    const std::string command = "python3 -c \"import fcntl,time; f=open('" + lockFile +
                                "','w'); fcntl.flock(f, fcntl.LOCK_EX); print('locked', "
                                "flush=True); time.sleep(0.4)\"";
    FILE *other = popen(command.c_str(), "r");
    ASSERT_NE(other, nullptr);
    char line[16] = {};
    ASSERT_NE(fgets(line, sizeof line, other), nullptr);
    RuntimeObject *mutex = New(MutexDefinition());
    MutexContructor(mutex, test::Lit("shared.lock"));
    EXPECT_FALSE(MutexTryLock(mutex));
    const auto start = Clock::now();
    MutexLock(mutex); // waits until the other process has gone
    EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(200));
    pclose(other);
    MutexUnlock(mutex);
    RuntimeUnlockObject(mutex);
    unsetenv("TMPDIR");
}

} // namespace
