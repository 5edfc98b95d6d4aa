// Timers made as compiled code makes them: a class on the library's Timer
// with an Action handler, driven by real toolkit timeouts in the run loop.
#include "timers/timer.h"

#include "runloop/main_loop.h"
#include "support/language_class.h"

#include "kelp/exceptions.h"
#include "kelp/objects.h"
#include "kelp/runloop.h"
#include "kelp/strings.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <chrono>
#include <vector>

namespace kelp {
namespace {

int gFired = 0;
std::vector<int32_t> gModeSeen;
RuntimeObject *gToRelease = nullptr;
bool gRearm = false;
bool gStopRepeating = false;

void OnAction(RuntimeObject *self) {
    ++gFired;
    gModeSeen.push_back(reinterpret_cast<TimerRecord *>(self)->mode);
    if (gRearm) {
        gRearm = false;
        timerModeSetter(self, 0, kTimerModeSingle);
    }
    if (gStopRepeating && gFired >= 3)
        timerModeSetter(self, 0, kTimerModeOff);
    if (gToRelease == self) {
        gToRelease = nullptr;
        RuntimeUnlockObject(self);
    }
}

class TimerTest : public ::testing::Test {
protected:
    void SetUp() override {
        gFired = 0;
        gModeSeen.clear();
        gRearm = gStopRepeating = false;
        gToRelease = nullptr;
        mKlass = test::MakeSubclass("Timer", "Timer1");
        ASSERT_NE(mKlass, nullptr);
        ASSERT_TRUE(test::SetEventHandler(mKlass, "Action", reinterpret_cast<void *>(&OnAction)));
    }
    TimerRecord *NewTimer() { return reinterpret_cast<TimerRecord *>(RuntimeNewObject(mKlass)); }

    // Runs passes of the loop until `done` or the deadline; a wake-up source
    // keeps the blocking passes short.
    template <class Pred> void RunUntil(Pred done, int ms) {
        guint wake = g_timeout_add(
            2, [](gpointer) -> gboolean { return TRUE; }, nullptr);
        auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
        while (!done() && std::chrono::steady_clock::now() < end)
            MainLoopStep(true);
        g_source_remove(wake);
    }
    RuntimeClass *mKlass = nullptr;
};

TEST_F(TimerTest, ConstructedOffWithOneSecondPeriodAndAPeriodBelowOneIsOne) {
    TimerRecord *t = NewTimer();
    EXPECT_EQ(t->mode, kTimerModeOff);
    EXPECT_EQ(t->period, 1000);
    EXPECT_EQ(t->enabled, 1);
    for (int32_t period : {0, -50}) {
        timerPeriodSetter(&t->object, 0, period);
        EXPECT_EQ(t->period, 1) << period;
    }
    EXPECT_EQ(t->timeoutId, 0u); // off: setting the period arms nothing
    RuntimeUnlockObject(&t->object);
}

// A single timer fires once and reads back Off, already in its handler,
// unless the handler arms it again; a multiple one repeats until its
// handler sets Off.  No source is left behind.
TEST_F(TimerTest, FiresAsItsModeSaysUntilOff) {
    const struct {
        const char *what;
        int32_t mode;
        bool rearm, stop;
        int fired;
    } cases[] = {
        {"single", kTimerModeSingle, false, false, 1},
        {"single, armed again in its handler", kTimerModeSingle, true, false, 2},
        {"multiple, set off in its handler", kTimerModeMultiple, false, true, 3},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        gFired = 0;
        gModeSeen.clear();
        gRearm = c.rearm;
        gStopRepeating = c.stop;
        TimerRecord *t = NewTimer();
        timerPeriodSetter(&t->object, 0, 5);
        timerModeSetter(&t->object, 0, c.mode);
        EXPECT_NE(t->timeoutId, 0u);
        RunUntil([&] { return gFired >= c.fired; }, 2000);
        RunUntil([] { return false; }, 50);
        EXPECT_EQ(gFired, c.fired);
        EXPECT_EQ(gModeSeen[0], c.stop ? kTimerModeMultiple : kTimerModeOff);
        EXPECT_EQ(t->mode, kTimerModeOff);
        EXPECT_EQ(t->timeoutId, 0u);
        RuntimeUnlockObject(&t->object);
    }
}

TEST_F(TimerTest, DisabledSingleDoesNotFireAndStaysPending) {
    TimerRecord *t = NewTimer();
    timerPeriodSetter(&t->object, 0, 3);
    t->enabled = 0;
    timerModeSetter(&t->object, 0, kTimerModeSingle);
    RunUntil([] { return false; }, 40);
    EXPECT_EQ(gFired, 0);
    EXPECT_EQ(t->mode, kTimerModeSingle);
    t->enabled = 1;
    RunUntil([] { return gFired > 0; }, 2000);
    EXPECT_EQ(gFired, 1);
    RuntimeUnlockObject(&t->object);
}

TEST_F(TimerTest, AssigningTheSameModeRestartsTheDelay) {
    TimerRecord *t = NewTimer();
    timerPeriodSetter(&t->object, 0, 200);
    timerModeSetter(&t->object, 0, kTimerModeSingle);
    uint32_t first = t->timeoutId;
    timerModeSetter(&t->object, 0, kTimerModeSingle);
    EXPECT_NE(t->timeoutId, first); // the old source went, a new one is armed
    EXPECT_EQ(g_main_context_find_source_by_id(nullptr, first), nullptr);
    timerModeSetter(&t->object, 0, kTimerModeOff);
    EXPECT_EQ(t->timeoutId, 0u);
    RuntimeUnlockObject(&t->object);
}

TEST_F(TimerTest, TimerReleasedInsideItsOwnActionLeavesNoTimeout) {
    TimerRecord *t = NewTimer();
    timerPeriodSetter(&t->object, 0, 3);
    timerModeSetter(&t->object, 0, kTimerModeMultiple);
    uint32_t id = t->timeoutId;
    gToRelease = &t->object;
    RunUntil([] { return gFired > 0; }, 2000);
    EXPECT_EQ(gFired, 1);
    EXPECT_EQ(g_main_context_find_source_by_id(nullptr, id), nullptr);
    RunUntil([] { return false; }, 30);
    EXPECT_EQ(gFired, 1);
}

TEST_F(TimerTest, FiresInsideANestedDoEvents) {
    TimerRecord *t = NewTimer();
    timerPeriodSetter(&t->object, 0, 5);
    timerModeSetter(&t->object, 0, kTimerModeSingle);
    auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (gFired == 0 && std::chrono::steady_clock::now() < end)
        RuntimeDoEvents(nullptr, 1);
    EXPECT_EQ(gFired, 1);
    RuntimeUnlockObject(&t->object);
}

TEST_F(TimerTest, ResetRecordsTheTimeWithoutTouchingTheTimeout) {
    TimerRecord *t = NewTimer();
    timerModeSetter(&t->object, 0, kTimerModeSingle);
    uint32_t id = t->timeoutId;
    t->lastFired = 0;
    RuntimeTimerReset(&t->object);
    EXPECT_NE(t->lastFired, 0);
    EXPECT_EQ(t->timeoutId, id);
    RuntimeUnlockObject(&t->object);
}

TEST_F(TimerTest, ReceiversAreHeldUntilRemovedOrTheTimerGoes) {
    TimerRecord *t = NewTimer();
    RuntimeObject *a = RuntimeNewObject(mKlass);
    RuntimeObject *b = RuntimeNewObject(mKlass);
    TimerAddActionNotificationReceiver(&t->object, a);
    TimerAddActionNotificationReceiver(&t->object, b);
    EXPECT_EQ(a->referenceCount, 2);
    ASSERT_NE(t->receivers, nullptr);
    EXPECT_EQ(t->receivers->receiver, b); // newest first
    TimerRemoveActionNotificationReceiver(&t->object, a);
    EXPECT_EQ(a->referenceCount, 1);
    RuntimeUnlockObject(&t->object);
    EXPECT_EQ(b->referenceCount, 1);
    RuntimeUnlockObject(a);
    RuntimeUnlockObject(b);
}

TEST_F(TimerTest, IsAnActionSourceForIsaAndCasts) {
    auto *timer = reinterpret_cast<RuntimeObject *>(NewTimer());
    const struct {
        const char *className;
        bool is;
    } cases[] = {{"actionSource", true}, {"Timer", true}, {"actionNotificationReceiver", false}};
    for (const auto &c : cases) {
        KelpString name = test::MakeText(c.className);
        RuntimeClass *klass = RuntimeLookupClass(name);
        RuntimeUnlockString(name);
        ASSERT_NE(klass, nullptr) << c.className;
        EXPECT_EQ(RuntimeObjectIsa(timer, klass), c.is ? 1 : 0) << c.className;
        RuntimeEnterHandlerRegion();
        RuntimeObject *cast = RuntimeCheckCast(timer, klass);
        RuntimeObject *failure = RuntimeTakeException();
        RuntimeLeaveHandlerRegion();
        EXPECT_EQ(cast, c.is ? timer : nullptr) << c.className;
        RuntimeUnlockObject(cast);
        EXPECT_EQ(failure != nullptr, !c.is) << c.className;
        RuntimeUnlockObject(failure);
    }
    RuntimeUnlockObject(timer);
}

} // namespace
} // namespace kelp
