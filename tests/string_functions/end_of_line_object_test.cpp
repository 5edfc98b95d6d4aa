// The EndOfLine object: one for the process, of class "EndOfLine", and the
// line-end operators working with it as the language passes it.
#include "text_kit.h"

#include "kelp/objects.h"
#include "objects/definitions.h"

#include <gtest/gtest.h>

using namespace texttest;

namespace {

std::string ClassNameOf(RuntimeObject *object) {
    stringStorage *name = object->klass->name;
    return name
               ? std::string(reinterpret_cast<const char *>(name->buffer + 1), (size_t)name->length)
               : "";
}

// One object for the process, of the class registered for console and GUI
// programs alike, shared by every caller.
TEST(EndOfLineObject, OneObjectOfTheRegisteredClassSharedByEveryCaller) {
    RuntimeInitExternalClasses();
    kelp::ObjectDefinition *definition = kelp::LookupIntrinsicClass("EndOfLine");
    ASSERT_NE(definition, nullptr);
    EXPECT_STREQ(kelp::TargetConditionText(definition), "true");
    RuntimeObject *first = RuntimeGetEndOfLineObject();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->klass, kelp::ClassForDefinition(definition));
    EXPECT_EQ(ClassNameOf(first), "EndOfLine");
    const int32_t refsAfterFirst = first->referenceCount;
    RuntimeObject *second = RuntimeGetEndOfLineObject();
    EXPECT_EQ(first, second);
    // Each call hands out its own reference, and giving them back leaves the
    // process's own reference in place.
    EXPECT_EQ(second->referenceCount, refsAfterFirst + 1);
    RuntimeUnlockObject(second);
    RuntimeUnlockObject(first);
    EXPECT_GE(first->referenceCount, 1);
    RuntimeObject *third = RuntimeGetEndOfLineObject();
    EXPECT_EQ(third, first);
    RuntimeUnlockObject(third);
}

TEST(EndOfLineObject, OperatorsJoinAndCompareThroughTheObject) {
    RuntimeObject *eol = RuntimeGetEndOfLineObject();
    ASSERT_NE(eol, nullptr);
    Arg word("line");
    stringStorage *left = RuntimeEndOfLineAdd(eol, word);
    stringStorage *right = RuntimeEndOfLineAddRight(eol, word);
    EXPECT_EQ(Take(left), "\nline");
    EXPECT_EQ(Take(right), "line\n");
    // Empty operands give the line end alone.
    EXPECT_EQ(Take(RuntimeEndOfLineAddRight(eol, nullptr)), "\n");
    Arg lf("\n"), crlf("\r\n");
    EXPECT_EQ(RuntimeEndOfLineCompare(eol, lf), 0);
    EXPECT_NE(RuntimeEndOfLineCompare(eol, crlf), 0);
    EXPECT_NE(RuntimeEndOfLineCompare(eol, nullptr), 0);
    RuntimeUnlockObject(eol);
}

} // namespace
