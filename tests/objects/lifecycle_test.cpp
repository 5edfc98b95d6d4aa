// Objects built and torn down through the exported functions, as compiled
// code does it: order of initializers, destructors and finalizers, counts,
// and the tear-down of long chains.
#include "objects/object_model.h"
#include "strings/small_alloc.h"
#include "support/class_kit.h"

#include <gtest/gtest.h>

using namespace kelp::test;

namespace {

struct Holder {
    RuntimeObject object;
    RuntimeObject *held; // released by the finalizer
    int32_t value;
};

void BaseInit(RuntimeObject *) { Log().push_back("B.init"); }
void DerivedInit(RuntimeObject *o) {
    Log().push_back("A.init");
    reinterpret_cast<Holder *>(o)->value = 7;
}
void BaseDtor(RuntimeObject *) { Log().push_back("B.dtor"); }
void DerivedDtor(RuntimeObject *) { Log().push_back("A.dtor"); }
void BaseFin(RuntimeObject *) { Log().push_back("B.fin"); }
void DerivedFin(RuntimeObject *) { Log().push_back("A.fin"); }

class Lifecycle : public ::testing::Test {
protected:
    void SetUp() override { Log().clear(); }
};

TEST_F(Lifecycle, InitializersRunRootFirstAndTearDownRunsLeafFirst) {
    RuntimeClass *b = MakeClass(nullptr, "LcBase", sizeof(Holder));
    b->initializer = BaseInit;
    b->destructor = BaseDtor;
    b->finalizer = BaseFin;
    RuntimeClass *a = MakeClass(b, "LcDerived", sizeof(Holder));
    a->initializer = DerivedInit;
    a->destructor = DerivedDtor;
    a->finalizer = DerivedFin;

    int32_t before = kelp::LiveObjectCount();
    RuntimeObject *o = RuntimeNewObject(a);
    ASSERT_NE(o, nullptr);
    EXPECT_EQ(o->referenceCount, 1);
    EXPECT_EQ(o->klass, a);
    EXPECT_EQ(o->methodTable, a->methodTable);
    EXPECT_EQ(o->eventTable, a->eventTable);
    EXPECT_EQ(reinterpret_cast<Holder *>(o)->value, 7);
    EXPECT_EQ(kelp::LiveObjectCount(), before + 1);
    EXPECT_EQ(kelp::AllObjectsHead(), o);

    RuntimeLockObject(o);
    RuntimeUnlockObject(o);
    EXPECT_EQ(Log().size(), 2u) << "an unlock above 0 must not destroy";
    RuntimeUnlockObject(o);
    EXPECT_EQ(Log(),
              (std::vector<std::string>{"B.init", "A.init", "A.dtor", "B.dtor", "A.fin", "B.fin"}));
    EXPECT_EQ(kelp::LiveObjectCount(), before);
}

// The outer object's finalizer releases the inner one, whose count is 1.
void OuterFin(RuntimeObject *o) {
    Log().push_back("outer.fin.begin");
    RuntimeUnlockObject(reinterpret_cast<Holder *>(o)->held);
    Log().push_back("outer.fin.end");
}
void InnerDtor(RuntimeObject *) { Log().push_back("inner.dtor"); }
void InnerFin(RuntimeObject *) { Log().push_back("inner.fin"); }

TEST_F(Lifecycle, NestedReleaseRunsDestructorAtOnceAndFinalizerAfterTheOuter) {
    RuntimeClass *outer = MakeClass(nullptr, "LcOuter", sizeof(Holder));
    outer->finalizer = OuterFin;
    RuntimeClass *inner = MakeClass(nullptr, "LcInner", sizeof(Holder));
    inner->destructor = InnerDtor;
    inner->finalizer = InnerFin;
    RuntimeObject *o = RuntimeNewObject(outer);
    reinterpret_cast<Holder *>(o)->held = RuntimeNewObject(inner);
    RuntimeUnlockObject(o);
    EXPECT_EQ(Log(), (std::vector<std::string>{"outer.fin.begin", "inner.dtor", "outer.fin.end",
                                               "inner.fin"}));
}

void ChainFin(RuntimeObject *o) { RuntimeUnlockObject(reinterpret_cast<Holder *>(o)->held); }

TEST_F(Lifecycle, LongChainIsTornDownWithoutDeepRecursion) {
    // Deep enough that one stack frame per link would overflow the stack.
    constexpr int kLinks = 2'000'000;
    RuntimeClass *link = MakeClass(nullptr, "LcLink", sizeof(Holder));
    link->finalizer = ChainFin;
    int32_t before = kelp::LiveObjectCount();
    RuntimeObject *head = RuntimeNewObject(link);
    RuntimeObject *at = head;
    for (int i = 1; i < kLinks; ++i) {
        RuntimeObject *next = RuntimeNewObject(link);
        reinterpret_cast<Holder *>(at)->held = next;
        at = next;
    }
    EXPECT_EQ(kelp::LiveObjectCount(), before + kLinks);
    RuntimeUnlockObject(head);
    EXPECT_EQ(kelp::LiveObjectCount(), before);
}

RuntimeObject *gRevived = nullptr;
void ReviveDtor(RuntimeObject *o) {
    RuntimeLockObject(o); // has no effect: the count is 0
    gRevived = o;
    Log().push_back("count=" + std::to_string(o->referenceCount));
}

TEST_F(Lifecycle, LockingInsideOwnDestructorDoesNotKeepTheObjectAlive) {
    RuntimeClass *c = MakeClass(nullptr, "LcRevive", sizeof(Holder));
    c->destructor = ReviveDtor;
    int32_t before = kelp::LiveObjectCount();
    RuntimeUnlockObject(RuntimeNewObject(c));
    EXPECT_EQ(Log(), std::vector<std::string>{"count=0"});
    EXPECT_EQ(kelp::LiveObjectCount(), before);
}

TEST_F(Lifecycle, CountsAndAssignment) {
    RuntimeClass *plain = MakeClass(nullptr, "LcPlain", sizeof(RuntimeObject));
    RuntimeObject *x = RuntimeNewObject(plain);
    RuntimeObject *y = RuntimeNewObject(plain);
    // Same object: nothing changes, even at count 1.
    RuntimeLockUnlockObjects(x, x);
    EXPECT_EQ(x->referenceCount, 1);
    // Assignment y := x over a variable that held y.
    RuntimeLockObject(y);
    RuntimeLockUnlockObjects(x, y);
    EXPECT_EQ(x->referenceCount, 2);
    EXPECT_EQ(y->referenceCount, 1);
    // Null on either side is a valid value.
    RuntimeLockUnlockObjects(nullptr, x);
    EXPECT_EQ(x->referenceCount, 1);
    RuntimeLockObject(nullptr);
    RuntimeUnlockObject(nullptr);
    RuntimeUnlockObject(x);
    RuntimeUnlockObject(y);
}

TEST_F(Lifecycle, ObjectOfClassWithoutLifecycleFunctionsIsListedCountedAndFreed) {
    RuntimeClass *base = MakeClass(nullptr, "LcBare", sizeof(RuntimeObject));
    RuntimeClass *derived = MakeClass(base, "LcBareDerived", sizeof(RuntimeObject));
    int32_t before = RuntimeDebugObjectCount();
    RuntimeObject *o = CreateInstance(derived);
    ASSERT_NE(o, nullptr);
    EXPECT_EQ(RuntimeDebugObjectCount(), before + 1);
    KelpString name = RuntimeDebugObjectClass(0);
    EXPECT_EQ(Str(name), "LcBareDerived");
    ReleaseString(name);
    EXPECT_EQ(RuntimeDebugObjectRefs(0), 1);
    RuntimeUnlockObject(o);
    EXPECT_EQ(RuntimeDebugObjectCount(), before);
}

TEST_F(Lifecycle, InspectionStepsThroughTheListInBothDirections) {
    RuntimeClass *c1 = MakeClass(nullptr, "LcFirst", sizeof(RuntimeObject));
    RuntimeClass *c2 = MakeClass(nullptr, "LcSecond", sizeof(RuntimeObject));
    RuntimeClass *c3 = MakeClass(nullptr, "LcThird", sizeof(RuntimeObject));
    RuntimeObject *o1 = RuntimeNewObject(c1);
    RuntimeObject *o2 = RuntimeNewObject(c2);
    RuntimeObject *o3 = RuntimeNewObject(c3);
    RuntimeLockObject(o2);
    const char *expected[] = {"LcThird", "LcSecond", "LcFirst", "LcSecond", "LcThird"};
    int indices[] = {0, 1, 2, 1, 0};
    for (int i = 0; i < 5; ++i) {
        KelpString name = RuntimeDebugObjectClass(indices[i]);
        EXPECT_EQ(Str(name), expected[i]) << "step " << i;
        ReleaseString(name);
    }
    EXPECT_EQ(RuntimeDebugObjectRefs(1), 2);
    // Freeing an object in the middle must not leave a stale position.
    RuntimeUnlockObject(o2);
    RuntimeUnlockObject(o2);
    KelpString name = RuntimeDebugObjectClass(1);
    EXPECT_EQ(Str(name), "LcFirst");
    ReleaseString(name);
    EXPECT_EQ(RuntimeDebugObjectClass(-1), nullptr);
    EXPECT_EQ(RuntimeDebugObjectRefs(RuntimeDebugObjectCount()), -1);
    RuntimeUnlockObject(o1);
    RuntimeUnlockObject(o3);

    // The small-block bytes in use follow the allocator.
    int32_t used = RuntimeDebugMemoryUsed();
    void *block = kelp::OSalloclen(100);
    EXPECT_GE(RuntimeDebugMemoryUsed() - used, 100);
    kelp::OSfreelen(block, 100);
    EXPECT_EQ(RuntimeDebugMemoryUsed(), used);

    RuntimeObject *runtime = RuntimeDebugInstance();
    RuntimeObject *again = RuntimeDebugInstance();
    EXPECT_EQ(runtime, again);
    EXPECT_EQ(Str(runtime->klass->name), "Runtime");
    RuntimeUnlockObject(runtime);
    RuntimeUnlockObject(again);
}

TEST_F(Lifecycle, BadClassesGiveAReportOrANeutralResult) {
    ReportRecorder reports;
    RuntimeClass *iface = MakeClass(nullptr, "LcIface", sizeof(RuntimeObject));
    iface->isInterface = 1;
    EXPECT_EQ(RuntimeNewObject(iface), nullptr);
    EXPECT_TRUE(reports.Has("!parent->isAnInterface"));

    // A null class raises NilObjectException inside a handler region.
    RuntimeEnterHandlerRegion();
    EXPECT_EQ(RuntimeNewObject(nullptr), nullptr);
    RuntimeObject *e = RuntimeTakeException();
    RuntimeLeaveHandlerRegion();
    ASSERT_NE(e, nullptr);
    EXPECT_EQ(Str(e->klass->name), "NilObjectException");
    RuntimeUnlockObject(e);

    // A class whose size is smaller than an object header still makes a
    // whole object.
    RuntimeClass *tiny = MakeClass(nullptr, "LcTiny", 4);
    RuntimeObject *o = RuntimeNewObject(tiny);
    ASSERT_NE(o, nullptr);
    EXPECT_EQ(o->referenceCount, 1);
    RuntimeUnlockObject(o);
}

} // namespace
