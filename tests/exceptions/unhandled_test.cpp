// The texts that tell the user of an exception no code took.
#include "exceptions/unhandled.h"
#include "support/class_kit.h"

#include <gtest/gtest.h>

using namespace kelp::test;

namespace {

RuntimeObject *MakeException(const char *cls, const char *message, int32_t number) {
    RuntimeObject *e = RuntimeNewObject(RuntimeLookupClass(Lit(cls)));
    auto *record = reinterpret_cast<RuntimeExceptionObject *>(e);
    record->errorNumber = number;
    record->message = message ? Lit(message) : nullptr;
    RuntimeLockString(record->message); // the field holds its own reference
    return e;
}

TEST(UnhandledTexts, MessageAndExplanation) {
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

} // namespace
