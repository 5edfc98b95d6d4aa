// Raising from runtime functions and taking the exception in the nearest
// compiled function that declared a handler region.  The "compiled
// functions" here are written the way the compiler's output behaves: they
// test for a pending exception after each call and go to their handler.
#include "exceptions/callback_scope.h"
#include "exceptions/exception_classes.h"
#include "exceptions/raise.h"
#include "exceptions/unhandled.h"
#include "support/class_kit.h"

#include <gtest/gtest.h>
#include <thread>

using namespace kelp::test;

namespace {

std::vector<RuntimeObject *> gUnhandled;
void CountingUnhandled(RuntimeObject *e) {
    RuntimeLockObject(e);
    gUnhandled.push_back(e);
}

class Raising : public ::testing::Test {
protected:
    void SetUp() override {
        mPrevious = kelp::SetUnhandledHandler(&CountingUnhandled);
        gUnhandled.clear();
        Log().clear();
    }
    void TearDown() override {
        for (RuntimeObject *e : gUnhandled)
            RuntimeUnlockObject(e);
        gUnhandled.clear();
        kelp::SetUnhandledHandler(mPrevious);
        EXPECT_EQ(RuntimePendingException(), nullptr);
    }
    kelp::UnhandledHandler mPrevious = nullptr;
};

std::string ClassOf(RuntimeObject *o) { return o && o->klass ? Str(o->klass->name) : "(none)"; }

// A runtime function that raises: it goes on to its end and returns a
// neutral result.
int32_t RuntimeFunctionThatRaises() {
    Log().push_back("runtime.before");
    kelp::RaiseOutOfBounds();
    Log().push_back("runtime.after");
    return 0;
}

// Compiled G: a handler region; takes the exception into its slot, and its
// clean-up hands it on (no Catch).
int32_t CompiledG() {
    RuntimeEnterHandlerRegion();
    int32_t r = RuntimeFunctionThatRaises();
    if (RuntimePendingException())
        goto handler;
    Log().push_back("G.next-statement");
    RuntimeLeaveHandlerRegion();
    return r;
handler : {
    RuntimeObject *slot = RuntimeTakeException();
    RuntimeLeaveHandlerRegion();
    Log().push_back("G.handler");
    RuntimeReraiseException(slot);
    RuntimeUnlockObject(slot);
}
    return 0;
}

// Compiled H: no handler of its own; it does not test.
void CompiledH() {
    CompiledG();
    Log().push_back("H.after-call");
}

// Compiled F: catches OutOfBoundsException.
void CompiledF() {
    RuntimeEnterHandlerRegion();
    CompiledH();
    if (RuntimePendingException())
        goto handler;
    Log().push_back("F.next-statement");
    RuntimeLeaveHandlerRegion();
    return;
handler:
    RuntimeObject *slot = RuntimeTakeException();
    RuntimeLeaveHandlerRegion();
    Log().push_back("F.catch " + ClassOf(slot));
    RuntimeUnlockObject(slot);
}

TEST_F(Raising, ReachesTheNearestHandlerAfterTheRuntimeFunctionReturned) {
    int32_t live = RuntimeDebugObjectCount();
    CompiledF();
    EXPECT_EQ(Log(), (std::vector<std::string>{"runtime.before", "runtime.after", "G.handler",
                                               "H.after-call", "F.catch OutOfBoundsException"}));
    EXPECT_TRUE(gUnhandled.empty());
    EXPECT_EQ(RuntimeDebugObjectCount(), live) << "the exception was freed after the catch";
}

// Each raise is taken in the same frame: the slot holds the only reference,
// and the object is of the class raised, with its message.
TEST_F(Raising, CaughtInTheSameFrameWithItsClassAndMessage) {
    const struct Row {
        void (*raise)();
        const char *className, *message; // nullptr: not checked
    } rows[] = {
        {[] { RuntimeNilObject(); }, "NilObjectException", nullptr},
        {[] { kelp::RaiseOfDefinition(kelp::ExceptionDefinitionNamed("StackOverflowException")); },
         "StackOverflowException", nullptr},
        {[] { RuntimeRaiseFunctionNotFoundException(Lit("open_job"), Lit("libjobs.so")); },
         "FunctionNotFoundException", "Could not load open_job from libjobs.so"},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.className);
        RuntimeEnterHandlerRegion();
        row.raise();
        RuntimeObject *slot = RuntimeTakeException();
        RuntimeLeaveHandlerRegion();
        ASSERT_NE(slot, nullptr);
        EXPECT_EQ(ClassOf(slot), row.className);
        EXPECT_EQ(slot->referenceCount, 1);
        EXPECT_FALSE(kelp::ExceptionPending());
        EXPECT_TRUE(RuntimeObjectIsa(slot, RuntimeLookupClass(Lit("RuntimeException"))));
        if (row.message) {
            EXPECT_EQ(Str(reinterpret_cast<RuntimeExceptionObject *>(slot)->message), row.message);
        }
        RuntimeUnlockObject(slot);
    }
    EXPECT_EQ(kelp::ExceptionDefinitionNamed("Window"), nullptr);
}

TEST_F(Raising, WithoutARegionTheUnhandledHandlerRunsAtOnceAndOnce) {
    RuntimeObject *object = RuntimeNewObject(RuntimeLookupClass(Lit("NilObjectException")));
    RuntimeObject *result =
        RuntimeCheckCast(object, RuntimeLookupClass(Lit("OutOfBoundsException")));
    EXPECT_EQ(result, nullptr);
    RuntimeUnlockObject(object);
    ASSERT_EQ(gUnhandled.size(), 1u);
    EXPECT_EQ(ClassOf(gUnhandled[0]), "IllegalCastException");
    EXPECT_EQ(RuntimePendingException(), nullptr);
}

TEST_F(Raising, PendingWhenTheOutermostRegionClosesGoesToTheUnhandledHandler) {
    RuntimeEnterHandlerRegion();
    RuntimeEnterHandlerRegion();
    kelp::RaiseWithMessage("KeyNotFoundException", "no such key", 12);
    RuntimeLeaveHandlerRegion(); // an inner function that did not take it
    EXPECT_TRUE(gUnhandled.empty());
    EXPECT_NE(RuntimePendingException(), nullptr);
    RuntimeLeaveHandlerRegion();
    ASSERT_EQ(gUnhandled.size(), 1u);
    EXPECT_EQ(ClassOf(gUnhandled[0]), "KeyNotFoundException");
    auto *record = reinterpret_cast<RuntimeExceptionObject *>(gUnhandled[0]);
    EXPECT_EQ(record->errorNumber, 12);
    EXPECT_EQ(Str(record->message), "no such key");
    EXPECT_EQ(RuntimePendingException(), nullptr);
}

TEST_F(Raising, NullIsIgnoredAndALaterRaiseReplacesAnEarlierOne) {
    RuntimeRaiseException(nullptr);
    RuntimeReraiseException(nullptr);
    RuntimeRaise(nullptr);
    EXPECT_TRUE(gUnhandled.empty());

    RuntimeEnterHandlerRegion();
    RuntimeNilObject();
    kelp::RaiseIllegalCast();
    RuntimeObject *slot = RuntimeTakeException();
    RuntimeLeaveHandlerRegion();
    EXPECT_EQ(ClassOf(slot), "IllegalCastException");
    RuntimeUnlockObject(slot);
    EXPECT_TRUE(gUnhandled.empty());
}

std::vector<std::string> gHooked;
void RecordingHook(RuntimeObject *e) { gHooked.push_back(ClassOf(e)); }

TEST_F(Raising, TheRaiseHookSeesRaisesButNotReraises) {
    gHooked.clear();
    kelp::RaiseHook old = kelp::SetRaiseHook(&RecordingHook);
    RuntimeEnterHandlerRegion();
    kelp::RaiseOutOfBounds();
    RuntimeObject *slot = RuntimeTakeException();
    RuntimeReraiseException(slot);
    RuntimeUnlockObject(slot);
    slot = RuntimeTakeException();
    RuntimeLeaveHandlerRegion();
    RuntimeUnlockObject(slot);
    kelp::SetRaiseHook(old);
    EXPECT_EQ(gHooked, std::vector<std::string>{"OutOfBoundsException"});
}

TEST_F(Raising, BadUseIsReportedNotFatal) {
    ReportRecorder reports;
    RuntimeLeaveHandlerRegion(); // closed more often than opened
    EXPECT_TRUE(reports.Has("regionDepth > 0"));
    kelp::RaiseOfClass(nullptr);
    EXPECT_TRUE(reports.Has("exclass"));
    kelp::RaiseWithMessage("NotAnExceptionClassName", "x", 1);
    EXPECT_TRUE(reports.Has("exc"));
    EXPECT_TRUE(gUnhandled.empty());

    // No handler at all: a failed assertion with condition "0".
    kelp::SetUnhandledHandler(nullptr);
    RuntimeObject *e = RuntimeNewObject(RuntimeLookupClass(Lit("EndException")));
    RuntimeUnhandledException(e);
    EXPECT_TRUE(reports.Has("0"));
    RuntimeUnlockObject(e);
}

TEST_F(Raising, EachThreadHasItsOwnPendingException) {
    RuntimeEnterHandlerRegion();
    RuntimeNilObject();
    RuntimeObject *seenByOther = reinterpret_cast<RuntimeObject *>(1);
    std::thread other([&] { seenByOther = RuntimePendingException(); });
    other.join();
    EXPECT_EQ(seenByOther, nullptr);
    RuntimeObject *slot = RuntimeTakeException();
    RuntimeLeaveHandlerRegion();
    EXPECT_NE(slot, nullptr);
    RuntimeUnlockObject(slot);
}

} // namespace

namespace {

int gCallbackSawPending = -1;
// A compiled event handler with a region: anything pending after its call
// is taken as its own.
void CompiledHandler() {
    RuntimeEnterHandlerRegion();
    RuntimeLockObject(nullptr); // a call that raises nothing
    gCallbackSawPending = RuntimePendingException() != nullptr;
    if (RuntimePendingException())
        RuntimeUnlockObject(RuntimeTakeException()); // would swallow a stranger
    RuntimeLeaveHandlerRegion();
}

TEST_F(Raising, CallbacksFromTheRuntimeDoNotSeeAnEarlierPendingException) {
    RuntimeEnterHandlerRegion();
    RuntimeNilObject(); // pending for this region
    {
        kelp::CompiledCallbackScope scope;
        CompiledHandler();
    }
    EXPECT_EQ(gCallbackSawPending, 0);
    RuntimeObject *slot = RuntimeTakeException();
    ASSERT_NE(slot, nullptr) << "the earlier exception is pending again";
    EXPECT_EQ(ClassOf(slot), "NilObjectException");
    RuntimeUnlockObject(slot);

    // A callback that leaves its own exception pending: that one wins.
    RuntimeNilObject();
    {
        kelp::CompiledCallbackScope scope;
        kelp::RaiseOutOfBounds();
    }
    slot = RuntimeTakeException();
    RuntimeLeaveHandlerRegion();
    EXPECT_EQ(ClassOf(slot), "OutOfBoundsException");
    RuntimeUnlockObject(slot);
    EXPECT_TRUE(gUnhandled.empty());
}

} // namespace
