// The standard handler of exceptions that no code took: the application's
// event first, then the message, then the end of the run.
#include "exception_kit.h"
#include "exceptions/raise.h"
#include "exceptions/unhandled.h"
#include "runloop/quit.h"
#include "startup/display.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "support/xvfb.h"

using namespace exctest;

namespace {

RuntimeObject *MakeException(const char *cls, const char *message, int32_t number) {
    RuntimeObject *e = RuntimeNewObject(RuntimeLookupClass(Lit(cls)));
    auto *record = reinterpret_cast<RuntimeExceptionObject *>(e);
    record->errorNumber = number;
    record->message = message ? Lit(message) : nullptr;
    kelp::objtext::Retain(record->message); // the field holds its own reference
    return e;
}

class Unhandled : public ::testing::Test {
protected:
    void SetUp() override {
        previous_ = kelp::SetUnhandledHandler(&kelp::StandardUnhandledHandler);
        kelp::ClearQuitRequest();
        kelp::SetUnhandledExceptionEvent(nullptr);
        kelp::SetCloseAllWindows(nullptr);
    }
    void TearDown() override {
        kelp::SetUnhandledHandler(previous_);
        kelp::SetUnhandledExceptionEvent(nullptr);
        kelp::SetCloseAllWindows(nullptr);
        kelp::ClearQuitRequest();
    }
    kelp::UnhandledHandler previous_ = nullptr;
};

TEST_F(Unhandled, MessageAndExplanationTexts) {
    RuntimeObject *e = MakeException("TypeMismatchException", "Expected a number", 42);
    EXPECT_EQ(kelp::UnhandledMessageText(e), "An exception of class TypeMismatchException was "
                                             "not handled.  The application must shut down.");
    EXPECT_EQ(kelp::UnhandledExplanationText(e),
              "Exception Message: Expected a number\rException Error Number: 42");
    RuntimeUnlockObject(e);
    e = MakeException("NilObjectException", nullptr, 0);
    EXPECT_EQ(kelp::UnhandledExplanationText(e), "");
    RuntimeUnlockObject(e);
    e = MakeException("RuntimeException", nullptr, -3);
    EXPECT_EQ(kelp::UnhandledExplanationText(e), "Exception Error Number: -3");
    RuntimeUnlockObject(e);
}

TEST_F(Unhandled, WithoutADisplayTheTextGoesToStandardErrorAndTheRunEnds) {
    ASSERT_FALSE(kelp::DisplayAvailable()) << "this test program runs headless";
    testing::internal::CaptureStderr();
    kelp::RaiseWithMessage("OutOfBoundsException", "Index 9 of 3", 0);
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(err, "An exception of class OutOfBoundsException was not handled.  The application "
                   "must shut down.\nException Message: Index 9 of 3\r\n");
    EXPECT_TRUE(kelp::QuitRequested());

    // Once the run is ending, a further exception says nothing more.
    testing::internal::CaptureStderr();
    kelp::RaiseNilObject();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

int gEventCalls = 0;
bool gEventAnswer = false;
bool gInEventSeen = false;
bool AppEvent(RuntimeObject *) {
    ++gEventCalls;
    gInEventSeen = kelp::InUnhandledExceptionEvent();
    return gEventAnswer;
}

TEST_F(Unhandled, AnApplicationEventThatDealsWithItKeepsTheRunGoing) {
    kelp::SetUnhandledExceptionEvent(&AppEvent);
    gEventCalls = 0;
    gEventAnswer = true;
    testing::internal::CaptureStderr();
    kelp::RaiseOutOfBounds();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(gEventCalls, 1);
    EXPECT_TRUE(gInEventSeen);
    EXPECT_FALSE(kelp::InUnhandledExceptionEvent());
    EXPECT_FALSE(kelp::QuitRequested());

    gEventAnswer = false;
    testing::internal::CaptureStderr();
    kelp::RaiseOutOfBounds();
    EXPECT_NE(testing::internal::GetCapturedStderr().find("OutOfBoundsException"),
              std::string::npos);
    EXPECT_EQ(gEventCalls, 2);
    EXPECT_TRUE(kelp::QuitRequested());
}

int gClosed = 0;
void CloseAll() { ++gClosed; }

TEST_F(Unhandled, EndExceptionClosesTheWindowsQuietly) {
    kelp::SetUnhandledExceptionEvent(&AppEvent);
    kelp::SetCloseAllWindows(&CloseAll);
    gEventCalls = 0;
    gClosed = 0;
    testing::internal::CaptureStderr();
    RuntimeObject *e = RuntimeNewObject(RuntimeLookupClass(Lit("EndException")));
    RuntimeRaiseException(e);
    RuntimeUnlockObject(e);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(gEventCalls, 0) << "EndException does not reach the application's event";
    EXPECT_EQ(gClosed, 1);
    EXPECT_TRUE(kelp::QuitRequested());
}

} // namespace
