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
    const struct Row {
        const char *className, *message;
        int32_t number;
        const char *explanation; // empty when there is nothing to explain
    } rows[] = {
        {"TypeMismatchException", "Expected a number", 42,
         "Exception Message: Expected a number\rException Error Number: 42"},
        {"NilObjectException", nullptr, 0, ""},
        {"RuntimeException", nullptr, -3, "Exception Error Number: -3"},
    };
    for (const Row &row : rows) {
        RuntimeObject *e = MakeException(row.className, row.message, row.number);
        EXPECT_EQ(kelp::UnhandledMessageText(e), std::string("An exception of class ") +
                                                     row.className +
                                                     " was not handled.  The application "
                                                     "must shut down.");
        EXPECT_EQ(kelp::UnhandledExplanationText(e), row.explanation);
        RuntimeUnlockObject(e);
    }
}

} // namespace
