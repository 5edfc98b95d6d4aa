// Class records, class tests and casts, interface tables, event tables.
#include "object_kit.h"
#include "objects/object_model.h"
#include "objects/text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using namespace kelp::test;

namespace {

void CodeA() {}
void CodeB() {}
void HandlerOne() {}
void HandlerTwo() {}

TEST(Classes, NewClassCopiesInheritedRowsAndChecksCounts) {
    RuntimeClass *base = MakeClass(nullptr, "ClBase", sizeof(RuntimeObject), 2, 0, 1, 1);
    base->methodTable[0] = {reinterpret_cast<void *>(&CodeA), Lit("M0%%o<ClBase>")};
    base->methodTable[1] = {reinterpret_cast<void *>(&CodeA), Lit("M1%%o<ClBase>")};
    base->eventTable[0] = {nullptr, Lit("Open")};
    base->propertyTable[0] = {Lit("Mode%i4%"), 48, reinterpret_cast<void *>(1), nullptr};

    RuntimeClass *sub = MakeClass(base, "ClSub", sizeof(RuntimeObject), 3, 0, 2, 1);
    EXPECT_EQ(sub->base, base);
    EXPECT_EQ(kelp::AllClassesHead(), sub);
    EXPECT_EQ(sub->methodTable[0].code, reinterpret_cast<void *>(&CodeA));
    EXPECT_EQ(sub->methodTable[1].signature, base->methodTable[1].signature);
    EXPECT_EQ(sub->methodTable[2].code, nullptr);
    EXPECT_EQ(Str(sub->eventTable[0].name), "Open");
    EXPECT_EQ(sub->propertyTable[0].fieldOffset, 48);
    // Tables lie behind each other in one block.
    EXPECT_EQ(reinterpret_cast<char *>(sub->eventTable),
              reinterpret_cast<char *>(sub->methodTable) + 3 * sizeof(RuntimeMethodRow));

    // A later change to the base is not seen by the existing subclass.
    base->methodTable[0].code = reinterpret_cast<void *>(&CodeB);
    EXPECT_EQ(sub->methodTable[0].code, reinterpret_cast<void *>(&CodeA));

    ReportRecorder reports;
    RuntimeClass *shortSub = RuntimeNewClass(base, 1, 0, 0, 0, 0);
    ASSERT_NE(shortSub, nullptr);
    EXPECT_TRUE(reports.Has("out->methodCount >= base->methodCount"));
    EXPECT_TRUE(reports.Has("out->eventCount >= base->eventCount"));
    EXPECT_TRUE(reports.Has("out->propertyCount >= base->propertyCount"));
    // Only the rows that fit were copied.
    EXPECT_EQ(shortSub->methodTable[0].code, reinterpret_cast<void *>(&CodeB));

    // Negative counts from damaged data are taken as empty tables.
    RuntimeClass *odd = RuntimeNewClass(nullptr, -5, -1, -1, -1, -1);
    ASSERT_NE(odd, nullptr);
    EXPECT_EQ(odd->methodCount, 0);
}

// The name index against a plain walk of the list, newest first: classes
// made with and without names, named later, looked up in any case.
TEST(Classes, FindByNameAgreesWithAWalkOfTheList) {
    auto walk = [](const std::string &name) -> RuntimeClass * {
        for (RuntimeClass *c = kelp::AllClassesHead(); c; c = c->nextClass)
            if (kelp::objtext::SameName(kelp::objtext::View(c->name), name))
                return c;
        return nullptr;
    };
    std::mt19937 random(16);
    std::vector<RuntimeClass *> unnamed;
    for (int step = 0; step < 3000; ++step) {
        const std::string name = "Fx" + std::to_string(random() % 200);
        switch (random() % 4) {
        case 0: MakeClass(nullptr, name.c_str(), sizeof(RuntimeObject)); break;
        case 1: unnamed.push_back(RuntimeNewClass(nullptr, 0, 0, 0, 0, 0)); break;
        case 2:
            if (!unnamed.empty()) {
                unnamed.back()->name = Lit(name);
                unnamed.pop_back();
            }
            break;
        default: {
            std::string asked = name;
            if (random() % 2)
                asked[0] = 'f', asked[1] = 'X';
            ASSERT_EQ(kelp::FindClassByName(asked.c_str()), walk(asked)) << step << " " << asked;
        }
        }
    }
    EXPECT_EQ(kelp::FindClassByName("NoSuchFx"), nullptr);
}

struct CastKit {
    RuntimeClass *root, *mid, *leaf, *other, *iface, *otherIface;
    CastKit() {
        root = MakeClass(nullptr, "CkRoot", sizeof(RuntimeObject));
        mid = MakeClass(root, "CkMid", sizeof(RuntimeObject));
        iface = MakeClass(nullptr, "CkIface", 0);
        iface->isInterface = 1;
        otherIface = MakeClass(nullptr, "CkOtherIface", 0);
        otherIface->isInterface = 1;
        leaf = MakeClass(mid, "CkLeaf", sizeof(RuntimeObject), 0, 1);
        leaf->interfaceTable[0] = {iface, 1, RuntimeNewVtable(1)};
        leaf->interfaceTable[0].methodTable[0].code = reinterpret_cast<void *>(&CodeA);
        other = MakeClass(nullptr, "CkOther", sizeof(RuntimeObject));
    }
};

TEST(Classes, IsaFollowsTheBaseChainAndInterfaceRows) {
    CastKit k;
    RuntimeObject *o = RuntimeNewObject(k.leaf);
    EXPECT_TRUE(RuntimeObjectIsa(o, k.leaf));
    EXPECT_TRUE(RuntimeObjectIsa(o, k.mid));
    EXPECT_TRUE(RuntimeObjectIsa(o, k.root));
    EXPECT_FALSE(RuntimeObjectIsa(o, k.other));
    EXPECT_TRUE(RuntimeObjectIsa(o, k.iface));
    EXPECT_FALSE(RuntimeObjectIsa(o, k.otherIface));
    EXPECT_TRUE(RuntimeObjectIsa(o, nullptr));
    EXPECT_FALSE(RuntimeObjectIsa(nullptr, k.root));
    RuntimeObject *m = RuntimeNewObject(k.mid);
    EXPECT_FALSE(RuntimeObjectIsa(m, k.leaf));
    RuntimeUnlockObject(m);
    RuntimeUnlockObject(o);
}

TEST(Classes, CheckCastLocksOnSuccessAndRaisesOnFailure) {
    CastKit k;
    RuntimeObject *o = RuntimeNewObject(k.leaf);
    RuntimeEnterHandlerRegion();

    EXPECT_EQ(RuntimeCheckCast(nullptr, k.root), nullptr);
    EXPECT_EQ(TakeRaised(), "");

    EXPECT_EQ(RuntimeCheckCast(o, nullptr), o);
    EXPECT_EQ(o->referenceCount, 1) << "a null class gives no new reference";

    EXPECT_EQ(RuntimeCheckCast(o, k.root), o);
    EXPECT_EQ(o->referenceCount, 2);
    EXPECT_EQ(RuntimeCheckCast(o, k.iface), o);
    EXPECT_EQ(o->referenceCount, 3);
    EXPECT_EQ(RuntimePendingException(), nullptr);

    EXPECT_EQ(RuntimeCheckCast(o, k.other), nullptr);
    EXPECT_EQ(TakeRaised(), "IllegalCastException");

    EXPECT_EQ(RuntimeCheckCast(o, k.otherIface), nullptr);
    EXPECT_EQ(TakeRaised(), "IllegalCastException");
    EXPECT_EQ(o->referenceCount, 3);

    RuntimeLeaveHandlerRegion();
    for (int i = 0; i < 3; ++i)
        RuntimeUnlockObject(o);
}

TEST(Classes, AutomationObjectsCastByNameToTheirDerivedClasses) {
    RuntimeClass *ole = MakeClass(nullptr, "OLEObject", sizeof(RuntimeObject));
    // A class the language derives from another class of the same name.
    RuntimeClass *oleAgain = MakeClass(nullptr, "oleobject", sizeof(RuntimeObject));
    RuntimeClass *excel = MakeClass(oleAgain, "SheetApplication", sizeof(RuntimeObject));
    RuntimeClass *notOle = MakeClass(nullptr, "Plain", sizeof(RuntimeObject));
    RuntimeClass *derivedPlain = MakeClass(notOle, "PlainDerived", sizeof(RuntimeObject));
    RuntimeObject *o = RuntimeNewObject(ole);
    EXPECT_EQ(RuntimeCheckCast(o, excel), o);
    EXPECT_EQ(o->referenceCount, 2);
    RuntimeEnterHandlerRegion();
    EXPECT_EQ(RuntimeCheckCast(o, derivedPlain), nullptr);
    EXPECT_EQ(TakeRaised(), "IllegalCastException");
    RuntimeLeaveHandlerRegion();
    RuntimeUnlockObject(o);
    RuntimeUnlockObject(o);
}

TEST(Classes, InterfaceVtableLookup) {
    CastKit k;
    RuntimeObject *o = RuntimeNewObject(k.leaf);
    RuntimeMethodRow *table = RuntimeLookupInterfaceVtable(o, k.iface);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table[0].code, reinterpret_cast<void *>(&CodeA));

    RuntimeEnterHandlerRegion();
    EXPECT_EQ(RuntimeLookupInterfaceVtable(o, k.otherIface), nullptr);
    EXPECT_EQ(TakeRaised(), "IllegalCastException");
    EXPECT_EQ(RuntimeLookupInterfaceVtable(nullptr, k.iface), nullptr);
    EXPECT_EQ(TakeRaised(), "NilObjectException");
    RuntimeLeaveHandlerRegion();
    RuntimeUnlockObject(o);
}

TEST(Classes, InstanceEventHandlersUseAPrivateTable) {
    RuntimeClass *base = MakeClass(nullptr, "EvBase", sizeof(RuntimeObject), 0, 0, 2);
    base->eventTable[0] = {nullptr, Lit("Open")};
    base->eventTable[1] = {nullptr, Lit("Action")};
    // The subclass declares its own "Action" behind the inherited rows.
    RuntimeClass *sub = MakeClass(base, "EvSub", sizeof(RuntimeObject), 0, 0, 3);
    sub->eventTable[2] = {nullptr, Lit("Action")};

    RuntimeObject *a = RuntimeNewObject(sub);
    RuntimeObject *b = RuntimeNewObject(sub);
    RuntimeInstallInstanceEventHandler(a, Lit("action"), reinterpret_cast<void *>(&HandlerOne));
    ASSERT_NE(a->eventTable, sub->eventTable);
    auto *rows = static_cast<RuntimeEventRow *>(a->eventTable);
    EXPECT_EQ(rows[2].handler, reinterpret_cast<void *>(&HandlerOne)) << "most derived row";
    EXPECT_EQ(rows[1].handler, nullptr);
    EXPECT_EQ(sub->eventTable[2].handler, nullptr) << "the class table stays untouched";

    // The same event on another object of the class is no error.
    ReportRecorder reports;
    RuntimeInstallInstanceEventHandler(b, Lit("Action"), reinterpret_cast<void *>(&HandlerTwo));
    EXPECT_TRUE(ReportRecorder::Reports().empty());

    // A second handler on one object: the report, then the new handler.
    RuntimeInstallInstanceEventHandler(a, Lit("Action"), reinterpret_cast<void *>(&HandlerTwo));
    ASSERT_EQ(ReportRecorder::Reports().size(), 1u);
    EXPECT_EQ(ReportRecorder::Reports()[0].kind, 4);
    EXPECT_EQ(ReportRecorder::Reports()[0].condition, "NULL == target->eventTable[ctr].vector");
    EXPECT_EQ(ReportRecorder::Reports()[0].message,
              "Attempting to implement an event that was already implemented. Class EvSub, "
              "Event Action");
    EXPECT_EQ(rows[2].handler, reinterpret_cast<void *>(&HandlerTwo));

    // A name no row has changes nothing.
    RuntimeInstallInstanceEventHandler(b, Lit("NoSuchEvent"), reinterpret_cast<void *>(&CodeA));
    auto *brows = static_cast<RuntimeEventRow *>(b->eventTable);
    EXPECT_EQ(brows[0].handler, nullptr);
    EXPECT_EQ(brows[1].handler, nullptr);
    // Null object and a class without events are harmless.
    RuntimeInstallInstanceEventHandler(nullptr, Lit("Action"), nullptr);
    RuntimeObject *plain = RuntimeNewObject(MakeClass(nullptr, "EvNone", sizeof(RuntimeObject)));
    RuntimeInstallInstanceEventHandler(plain, Lit("Action"), reinterpret_cast<void *>(&CodeA));
    EXPECT_EQ(plain->eventTable, plain->klass->eventTable);
    RuntimeUnlockObject(plain);
    // The private tables go with their objects (the sanitizer build checks
    // that nothing leaks and the shared table is not freed).
    RuntimeUnlockObject(a);
    RuntimeUnlockObject(b);
    EXPECT_EQ(Str(sub->eventTable[2].name), "Action");
}

} // namespace
