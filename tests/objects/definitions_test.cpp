// Class definitions turned into classes: rows, signatures, events, hook
// instances, interfaces, the meeting with classes an image built, and the
// registration that puts entry points in the export table.
#include "objects/definitions.h"
#include "objects/object_model.h"
#include "support/class_kit.h"

#include <cstddef>
#include <gtest/gtest.h>

using namespace kelp::test;
using namespace kelp;

namespace {

struct WidgetObject {
    RuntimeObject object;
    int32_t mode;
    KelpString caption;
    double value;
};

extern "C" void DfWidgetInitializer(RuntimeObject *) { Log().push_back("widget.init"); }
extern "C" void DfWidgetFinalizer(RuntimeObject *) { Log().push_back("widget.fin"); }
extern "C" KelpString DfCaptionGetter(RuntimeObject *, int32_t) { return nullptr; }
extern "C" void DfCaptionSetter(RuntimeObject *, int32_t, KelpString) {}
extern "C" RuntimeObject *DfWidgetItem(RuntimeObject *, int32_t) { return nullptr; }
extern "C" void DfWidgetItemAssign(RuntimeObject *, int32_t, RuntimeObject *) {}
extern "C" void DfWidgetAppend(RuntimeObject *, RuntimeObject *) {}
extern "C" double DfButtonArea(RuntimeObject *) { return 4.0; }
extern "C" void DfButtonAction(RuntimeObject *) {}
extern "C" KelpString DfLeftFunction(KelpString, int32_t) { return nullptr; }
extern "C" KelpString DfLeftExtends(KelpString, int32_t) { return nullptr; }

const ParameterRow kLeftParams[] = {{"s", &kTypeString}, {"n", &kTypeInteger}};
const ParameterRow kLeftExtendsParams[] = {{"s", &kTypeString, nullptr, kParamExtends},
                                           {"n", &kTypeInteger}};
const MethodRow kFunctions[] = {
    {"DfLeft", &kTypeString, kLeftParams, 2, KELP_ENTRY(DfLeftFunction)},
    {"DfLeft", &kTypeString, kLeftExtendsParams, 2, KELP_ENTRY(DfLeftExtends)},
};

ObjectDefinition *DfWidgetDefinition();
ObjectDefinition *DfShapeDefinition();

const TypeRecord kWidgetType{kTypeObjectOf, nullptr, nullptr, 0, &DfWidgetDefinition};
const TypeRecord kStringArray{kTypeArray, nullptr, &kTypeString, 1};

ObjectHook *gOpenHook;
ObjectHook *gActionHook;

ObjectDefinition *DfWidgetDefinition() {
    static const PropertyRow properties[] = {
        {0, "Mode", &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(intSetter),
         offsetof(WidgetObject, mode)},
        {0, "Caption", &kTypeString, KELP_ENTRY(DfCaptionGetter), KELP_ENTRY(DfCaptionSetter)},
        {0, "Limit", &kTypeInteger, {}, {}, 10, 0, true},
        {0, "Names", &kStringArray, KELP_PLAIN_FIELD, {}, 64},
    };
    static const ParameterRow itemParams[] = {{"index", &kTypeInteger}};
    static const ParameterRow appendParams[] = {{"w", &kWidgetType, "Nil", kParamByRef}};
    static const MethodRow methods[] = {
        {"Item", &kWidgetType, itemParams, 1, KELP_ENTRY(DfWidgetItem),
         KELP_ENTRY(DfWidgetItemAssign)},
        {"Append", nullptr, appendParams, 1, KELP_ENTRY(DfWidgetAppend), {}, kItemPrivate},
    };
    static const EventRow events[] = {{"Open", "", nullptr, &gOpenHook},
                                      {"Action", "", nullptr, &gActionHook}};
    static const ClassDescription description = {
        .name = "DfWidget",
        .instanceSize = sizeof(WidgetObject),
        .initializer = KELP_ENTRY(DfWidgetInitializer),
        .finalizer = KELP_ENTRY(DfWidgetFinalizer),
        .properties = properties,
        .methods = methods,
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}
// Registered before any test runs, as a folder's Wire function registers its
// library classes at bring-up.
[[maybe_unused]] const bool gRegistered = [] {
    AddIntrinsicFunctions(kFunctions);
    AddIntrinsicClassAccessor(&DfWidgetDefinition);
    return true;
}();

ObjectDefinition *DfShapeDefinition() {
    static const MethodRow methods[] = {{"Area", &kTypeDouble}};
    static const ClassDescription description = {
        .name = "DfShape", .instanceSize = 0, .isInterface = true, .methods = methods};
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *DfButtonDefinition() {
    static const PropertyRow properties[] = {
        {0, "Value", &kTypeDouble, KELP_ENTRY(doubleGetter), KELP_ENTRY(doubleSetter),
         offsetof(WidgetObject, value)},
    };
    static const MethodRow methods[] = {
        {"Area", &kTypeDouble, nullptr, 0, KELP_ENTRY(DfButtonArea)}};
    static const HookInstanceRow hookInstances[] = {
        {"action", reinterpret_cast<void *>(&DfButtonAction)}};
    static const DefinitionAccessor interfaces[] = {&DfShapeDefinition};
    static const ClassDescription description = {
        .name = "DfButton",
        .super = &DfWidgetDefinition,
        .instanceSize = sizeof(WidgetObject),
        .properties = properties,
        .methods = methods,
        .hookInstances = hookInstances,
        .interfaces = interfaces,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

std::string Sig(KelpString s) { return Str(s); }

TEST(Definitions, ConvertedClassHasTheDefinitionsRows) {
    RuntimeClass *w = ClassForDefinition(DfWidgetDefinition());
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(ClassForDefinition(DfWidgetDefinition()), w) << "cached";
    EXPECT_EQ(Str(w->name), "DfWidget");
    EXPECT_EQ(w->instanceSize, sizeof(WidgetObject));
    EXPECT_EQ(w->base, nullptr);
    // Constants take no property row.
    ASSERT_EQ(w->propertyCount, 3);
    EXPECT_EQ(Sig(w->propertyTable[0].signature), "Mode%i4%");
    EXPECT_EQ(w->propertyTable[0].fieldOffset, static_cast<int32_t>(offsetof(WidgetObject, mode)));
    EXPECT_EQ(w->propertyTable[0].getter, reinterpret_cast<void *>(&intGetter));
    EXPECT_EQ(Sig(w->propertyTable[1].signature), "Caption%s%");
    EXPECT_EQ(w->propertyTable[1].fieldOffset, -9);
    EXPECT_EQ(Sig(w->propertyTable[2].signature), "Names%a1s%");
    EXPECT_EQ(w->propertyTable[2].getter, reinterpret_cast<void *>(1));
    ASSERT_EQ(w->directMethodCount, 3);
    EXPECT_EQ(Sig(w->directMethodTable[0].signature), "Item%o<DfWidget>%o<DfWidget>i4");
    EXPECT_EQ(w->directMethodTable[0].code, reinterpret_cast<void *>(&DfWidgetItem));
    EXPECT_EQ(Sig(w->directMethodTable[1].signature), "Item%%o<DfWidget>i4o<DfWidget>");
    EXPECT_EQ(Sig(w->directMethodTable[2].signature), "Append%%o<DfWidget>o<DfWidget>");
    ASSERT_EQ(w->eventCount, 2);
    EXPECT_EQ(Str(w->eventTable[0].name), "Open");
    EXPECT_EQ(Str(w->eventTable[1].name), "Action");
    EXPECT_EQ(gActionHook->index, 1);
}

TEST(Definitions, SubclassInheritsRowsAndImplementsEventsAndInterfaces) {
    RuntimeClass *w = ClassForDefinition(DfWidgetDefinition());
    RuntimeClass *b = ClassForDefinition(DfButtonDefinition());
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(b->base, w);
    ASSERT_EQ(b->propertyCount, 4);
    EXPECT_EQ(Sig(b->propertyTable[0].signature), "Mode%i4%");
    EXPECT_EQ(Sig(b->propertyTable[3].signature), "Value%f8%");
    ASSERT_EQ(b->eventCount, 2);
    EXPECT_EQ(b->eventTable[1].handler, reinterpret_cast<void *>(&DfButtonAction));
    EXPECT_EQ(w->eventTable[1].handler, nullptr) << "the base's table is its own";

    RuntimeClass *shape = ClassForDefinition(DfShapeDefinition());
    ASSERT_NE(shape, nullptr);
    EXPECT_EQ(shape->isInterface, 1u);
    ASSERT_EQ(b->interfaceCount, 1);
    EXPECT_EQ(b->interfaceTable[0].interfaceClass, shape);
    EXPECT_EQ(b->interfaceTable[0].slotCount, 1);
    EXPECT_EQ(b->interfaceTable[0].methodTable[1].code, reinterpret_cast<void *>(&DfButtonArea));
    EXPECT_EQ(Sig(b->interfaceTable[0].methodTable[1].signature), "Area%f8%o<DfShape>");

    Log().clear();
    RuntimeObject *o = NewObjectOfDefinition(DfButtonDefinition());
    ASSERT_NE(o, nullptr);
    EXPECT_TRUE(RuntimeObjectIsa(o, shape));
    EXPECT_TRUE(RuntimeObjectIsa(o, w));
    EXPECT_EQ(FindEventHandler(o, gActionHook), reinterpret_cast<void *>(&DfButtonAction));
    EXPECT_EQ(FindEventHandler(o, gOpenHook), nullptr);
    EXPECT_EQ(FindEventHandler(nullptr, gActionHook), nullptr);
    EXPECT_EQ(RuntimeFindHookCode(DfButtonDefinition(), gActionHook->index),
              reinterpret_cast<void *>(&DfButtonAction));
    EXPECT_EQ(RuntimeFindHookCode(DfButtonDefinition(), 99), nullptr);
    RuntimeMethodRow *table = RuntimeLookupInterfaceVtable(o, shape);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(reinterpret_cast<double (*)(RuntimeObject *)>(table[1].code)(o), 4.0);
    RuntimeUnlockObject(o);
    EXPECT_EQ(Log(), (std::vector<std::string>{"widget.init", "widget.fin"}));

    ReportRecorder reports;
    EXPECT_EQ(RuntimeNewObject(shape), nullptr);
    EXPECT_TRUE(reports.Has("!parent->isAnInterface"));
}

void ImageTickHandler(RuntimeObject *) {}

TEST(Definitions, AClassTheImageBuiltStandsForTheDefinition) {
    // The image's class has its events in its own order.
    RuntimeClass *image = MakeClass(nullptr, "DfImageBuilt", 200, 0, 0, 2);
    image->eventTable[0] = {nullptr, Lit("Close")};
    image->eventTable[1] = {reinterpret_cast<void *>(&ImageTickHandler), Lit("Tick")};
    static ObjectHook *tick = nullptr, *close = nullptr;
    static const EventRow events[] = {{"Tick", "", nullptr, &tick}, {"Close", "", nullptr, &close}};
    static const ClassDescription description = {
        .name = "dfimagebuilt", .instanceSize = 64, .events = events};
    ObjectDefinition *d = BuildDefinition(description);
    EXPECT_EQ(ClassForDefinition(d), image);
    EXPECT_EQ(image->instanceSize, 200u);
    RuntimeObject *o = NewObjectOfDefinition(d);
    EXPECT_EQ(FindEventHandler(o, tick), reinterpret_cast<void *>(&ImageTickHandler));
    EXPECT_EQ(FindEventHandler(o, close), nullptr);
    RuntimeUnlockObject(o);
}

ObjectDefinition *DfBrokenDefinition() {
    static const DefinitionAccessor interfaces[] = {&DfShapeDefinition};
    static const ClassDescription description = {.name = "DfBroken", .interfaces = interfaces};
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

TEST(Definitions, BadDefinitionsAreReported) {
    ReportRecorder reports;
    RuntimeClass *broken = ClassForDefinition(DfBrokenDefinition());
    ASSERT_FALSE(ReportRecorder::Reports().empty());
    EXPECT_EQ(ReportRecorder::Reports()[0].kind, 2);
    EXPECT_NE(broken, nullptr) << "the class is still made, with an empty slot";

    EXPECT_EQ(ClassForDefinition(nullptr), nullptr);
    EXPECT_TRUE(reports.Has("defn"));

    static const PropertyRow virtualRow[] = {
        {kItemSystemVirtual, "Hidden", &kTypeInteger, {}, {}, 48}};
    static const ClassDescription bad = {.name = "DfVirtual", .properties = virtualRow};
    ClassForDefinition(BuildDefinition(bad));
    EXPECT_TRUE(reports.Has("0 == (item->userFlags & systemPropertyVirtual)"));

    static const ClassDescription module = {.name = "DfModule", .instanceSize = 48};
    RegisterIntrinsicModule(BuildDefinition(module));
    EXPECT_TRUE(reports.Has("0 == defn->objectSize"));
    static const ClassDescription dup = {.name = "dfmodule", .instanceSize = 0};
    RegisterIntrinsicModule(BuildDefinition(dup));
    EXPECT_TRUE(reports.Has("not gIntrinsicModuleMap->HasEntry( defn->className )"));
    EXPECT_NE(LookupIntrinsicModule("DFMODULE"), nullptr);
}

TEST(Definitions, RegistrationNamesClassesAndExportsTheirEntryPoints) {
    RuntimeInitExternalClasses();
    RuntimeInitExternalClasses(); // a second call does nothing
    EXPECT_EQ(LookupIntrinsicClass("dfwidget"), DfWidgetDefinition());
    EXPECT_EQ(LookupExport("DfWidgetInitializer"), reinterpret_cast<void *>(&DfWidgetInitializer));
    EXPECT_EQ(LookupExport("DfCaptionSetter"), reinterpret_cast<void *>(&DfCaptionSetter));
    EXPECT_EQ(LookupExport("DfWidgetItemAssign"), reinterpret_cast<void *>(&DfWidgetItemAssign));
    EXPECT_EQ(LookupExport("RuntimeExceptionFinalizer"),
              reinterpret_cast<void *>(&RuntimeExceptionFinalizer));

    RuntimeClass *byName = RuntimeLookupClass(Lit("DFWIDGET"));
    EXPECT_EQ(byName, ClassForDefinition(DfWidgetDefinition()));
    RuntimeClass *exc = RuntimeLookupClass(Lit("OutOfBoundsException"));
    ASSERT_NE(exc, nullptr);
    EXPECT_EQ(Str(exc->base->name), "RuntimeException");
    EXPECT_EQ(RuntimeLookupClass(Lit("NoSuchClassAnywhere")), nullptr);

    // Module functions: every row of a name, each entry in the export table.
    auto rows = LookupIntrinsicFunction("dfleft");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(DescribeMethod(*rows[1]),
              "Function DfLeft(Extends s As String, n As Integer) As String");
    EXPECT_EQ(LookupExport("DfLeftExtends"), reinterpret_cast<void *>(&DfLeftExtends));
    EXPECT_TRUE(LookupIntrinsicFunction("NoSuchFunction").empty());
    EXPECT_EQ(RuntimeLookupClass(nullptr), nullptr);
}

TEST(Definitions, DeclarationText) {
    static const ParameterRow params[] = {
        {"count", &kTypeInteger, "10"},
        {"items", &kStringArray, nullptr, kParamArray},
        {"w", &kWidgetType, "Nil", kParamByRef},
        {"flag", &kTypeBoolean, "True"},
    };
    MethodRow f{"Fill", &kTypeString, params, 4, {}, {}, kItemProtected};
    EXPECT_EQ(DescribeMethod(f), "Protected Function Fill(count As Integer=&h10, ParamArray "
                                 "items() As String, ByRef w As DfWidget=Nil, flag As "
                                 "Boolean=True) As String");
    MethodRow s{"Reset", nullptr, nullptr, 0, {}, {}, kItemPrivate};
    EXPECT_EQ(DescribeMethod(s), "Private Sub Reset()");
    EXPECT_EQ(TargetConditionText(DfWidgetDefinition()), std::string("TargetHasGUI"));
}

} // namespace
