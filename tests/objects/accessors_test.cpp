// The generic field accessors that property rows share.
#include "object_kit.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <string>

using namespace kelp::test;

namespace {

struct Fields {
    RuntimeObject object;
    int32_t i;
    int16_t s;
    uint8_t b;
    float f;
    double d;
    RuntimeObject *o;
    KelpString str;
};

void FieldsFinalizer(RuntimeObject *self) {
    auto *f = reinterpret_cast<Fields *>(self);
    RuntimeUnlockObject(f->o);
    ReleaseString(f->str);
}

RuntimeClass *FieldsClass() {
    static RuntimeClass *c = [] {
        RuntimeClass *k = MakeClass(nullptr, "AcFields", sizeof(Fields));
        k->finalizer = FieldsFinalizer;
        return k;
    }();
    return c;
}

#define OFF(field) static_cast<int32_t>(offsetof(Fields, field))

TEST(Accessors, ReadAndWriteFieldsAtTheirOffsets) {
    RuntimeObject *o = RuntimeNewObject(FieldsClass());
    intSetter(o, OFF(i), -123456);
    shortSetter(o, OFF(s), -300);
    boolSetter(o, OFF(b), 77);
    singleSetter(o, OFF(f), 2.5f);
    doubleSetter(o, OFF(d), -1.25e10);
    EXPECT_EQ(intGetter(o, OFF(i)), -123456);
    EXPECT_EQ(reinterpret_cast<Fields *>(o)->i, -123456);
    EXPECT_EQ(shortGetter(o, OFF(s)), -300);
    EXPECT_EQ(boolGetter(o, OFF(b)), 1) << "a boolean is stored as 0 or 1";
    EXPECT_EQ(singleGetter(o, OFF(f)), 2.5f);
    EXPECT_EQ(doubleGetter(o, OFF(d)), -1.25e10);
    RuntimeUnlockObject(o);
}

TEST(Accessors, ObjectAndStringFieldsKeepReferences) {
    RuntimeObject *o = RuntimeNewObject(FieldsClass());
    RuntimeObject *v = RuntimeNewObject(FieldsClass());
    objSetter(o, OFF(o), v);
    EXPECT_EQ(v->referenceCount, 2);
    objSetter(o, OFF(o), v); // the same object again: no change
    EXPECT_EQ(v->referenceCount, 2);
    RuntimeObject *got = objGetter(o, OFF(o));
    EXPECT_EQ(got, v);
    EXPECT_EQ(v->referenceCount, 3) << "the getter hands over a reference";
    RuntimeUnlockObject(got);
    objSetter(o, OFF(o), nullptr);
    EXPECT_EQ(v->referenceCount, 1);

    KelpString text = Lit("hello");
    stringSetter(o, OFF(str), text);
    EXPECT_EQ(text->referenceCount, 2);
    KelpString read = stringGetter(o, OFF(str));
    EXPECT_EQ(Str(read), "hello");
    EXPECT_EQ(text->referenceCount, 3);
    ReleaseString(read);
    stringSetter(o, OFF(str), nullptr);
    EXPECT_EQ(text->referenceCount, 1);

    // The object's finalizer releases what its fields still hold.
    objSetter(o, OFF(o), v);
    RuntimeUnlockObject(v);
    RuntimeUnlockObject(o);
}

TEST(Accessors, NilObjectsAndBadOffsetsRaiseAndReadAsZero) {
    RuntimeEnterHandlerRegion();
    EXPECT_EQ(intGetter(nullptr, OFF(i)), 0);
    EXPECT_EQ(TakeRaised(), "NilObjectException");
    objSetter(nullptr, OFF(o), nullptr);
    EXPECT_EQ(TakeRaised(), "NilObjectException");

    RuntimeObject *o = RuntimeNewObject(FieldsClass());
    // Into the object header, or past the instance: refused.
    intSetter(o, 24, 99);
    EXPECT_EQ(TakeRaised(), "OutOfBoundsException");
    EXPECT_EQ(o->referenceCount, 1);
    EXPECT_EQ(doubleGetter(o, sizeof(Fields) - 4), 0.0);
    EXPECT_EQ(TakeRaised(), "OutOfBoundsException");
    RuntimeLeaveHandlerRegion();
    RuntimeUnlockObject(o);
}

} // namespace
