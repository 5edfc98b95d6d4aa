// The plug-in host in this process: the example plug-in loaded from the
// build, its classes linked and reached through the entry table and by
// name; hand-made records against the gates, the strides and bad tables.
#include "plugins/declaration.h"
#include "plugins/host.h"

#include "base/fatal_report.h"
#include "objects/text.h"

#include "kelp/image.h"
#include "kelp/objects.h"
#include "kelp/plugin.h"
#include "kelp/strings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace kelp::plugins {
namespace {

std::vector<std::string> &Reported() {
    static std::vector<std::string> messages;
    return messages;
}

// Collects the assertion reports made while it lives.
class ReportScope {
public:
    ReportScope() {
        Reported().clear();
        mPrevious = SetFatalReportHook(
            [](int, const char *, int, const char *condition, const char *message) {
                Reported().push_back(std::string(condition) + " | " + message);
            });
    }
    ~ReportScope() { SetFatalReportHook(mPrevious); }

private:
    FatalReportHook mPrevious;
};

void *Entry(const std::string &name) {
    KelpString s = objtext::Make(name);
    void *e = RuntimeLookupPluginEntrypoint(s);
    objtext::Release(s);
    return e;
}

void LoadExample() {
    static const bool loaded = [] {
        RuntimeInitExternalClasses();
        setenv("KPPLUGINPATH", "left from before", 1);
        std::string error;
        const bool ok = LoadPluginLibrary(KELP_BIN_DIR "/libKPExample.so", "", error);
        EXPECT_EQ(error, "");
        LinkPluginClasses(nullptr);
        ForgetEntryTableForTest();
        return ok;
    }();
    ASSERT_TRUE(loaded);
}

TEST(PluginDeclarations, ParseByTheGrammar) {
    auto isClass = [](std::string_view name) { return name == "Graphics"; };
    std::string many = "F(";
    for (int i = 0; i < 33; ++i)
        many += (i ? ", p" : "p") + std::to_string(i) + " As Integer";
    struct Case {
        std::string text;
        bool ok;
        size_t parameters;
        std::string result;
        int32_t kind;
    } cases[] = {
        {"Add(n As Integer) As Integer", true, 1, "Integer", kPlainMethod},
        {"  Paint ( g As Graphics ,\tByRef n As color = -1 )", true, 2, "", kPlainMethod},
        {"Names() As String()", true, 0, "String", kPlainMethod},
        {"Sum(values() As Double) As Double", true, 1, "Double", kPlainMethod},
        {"Pad(Extends s As String, n As Integer) As String", true, 2, "String", kExtends},
        {"Item(i As Integer, Assigns v As Object)", true, 2, "", kAssigns},
        {"Put(Extends o As Object, Assigns v As Boolean)", true, 2, "", kExtendsAssigns},
        {"Label(s As String = \"a, b\")", true, 1, "", kPlainMethod},
        {"Action", true, 0, "", kPlainMethod},
        {many.substr(0, many.rfind(',')) + ")", true, 32, "", kPlainMethod},
        {many + ")", false, 0, "", 0},              // a 33rd parameter
        {"Integer(n As Integer)", false, 0, "", 0}, // a keyword is no name
        {"F(n As Widget)", false, 0, "", 0},        // unknown type
        {"F(n)", false, 0, "", 0},                  // no type
        {"F(n As Integer", false, 0, "", 0},        // unclosed
        {"F() As", false, 0, "", 0},
        {"F(s As String = \"open", false, 0, "", 0},
        {"F() As Integer junk", false, 0, "", 0},
        {"F(ByVal ByRef n As Integer)", false, 0, "", 0},
        {"", false, 0, "", 0},
    };
    for (const Case &c : cases) {
        ParsedDeclaration d;
        EXPECT_EQ(ParseDeclaration(c.text, isClass, d), c.ok) << c.text;
        if (!c.ok)
            continue;
        EXPECT_EQ(d.parameters.size(), c.parameters) << c.text;
        EXPECT_EQ(d.resultType, c.result) << c.text;
        EXPECT_EQ(d.kind, c.kind) << c.text;
    }
    ParsedDeclaration d;
    ASSERT_TRUE(
        ParseDeclaration("P(ByRef a() As Integer = 3, b As Graphics) As Boolean()", isClass, d));
    EXPECT_TRUE(d.parameters[0].byRef && d.parameters[0].isArray && d.parameters[0].hasDefault);
    EXPECT_EQ(d.parameters[1].type, "Graphics");
    EXPECT_TRUE(d.resultArray);
    // The scanner's table: codes from 257 in order, one empty slot.
    EXPECT_EQ(KeywordCode("if"), 257);
    EXPECT_EQ(KeywordCode("BYVAL"), 257 + 50);
    EXPECT_EQ(KeywordCode("Object"), 257 + 85);
    EXPECT_EQ(KeywordCode(""), 0);
    EXPECT_EQ(KeywordCode("Widget"), 0);
}

TEST(PluginEntryTable, ExampleEntriesByName) {
    LoadExample();
    EXPECT_EQ(getenv("KPPLUGINPATH"), nullptr); // unset after the main entry, whatever it held
    ReportScope reports;
    struct Case {
        const char *name;
        bool found;
    } cases[] = {
        {"Counter.Add(n As Integer) As Integer", true},
        {"COUNTER.add(n As Integer) As Integer", true},
        {"Counter.Greet() As String", true},
        {"Counter.Step.Get", true},
        {"Counter.Step.Set", true},
        {"Counter.Count.Get", false}, // the host's own accessor has no entry
        {"Counter.Events.Changed(n As Integer)", true},
        {"Counter.__init", true},
        {"Counter.__exit", false}, // no destructor
        {"Arith.Twice(n As Integer) As Integer", true},
        {"Triple(n As Integer) As Integer", true},
        {"Greeter.Greet() As String", false}, // an interface row without code
        {"Nothing.Here()", false},
    };
    for (const Case &c : cases) {
        Reported().clear();
        EXPECT_EQ(Entry(c.name) != nullptr, c.found) << c.name;
        EXPECT_EQ(Reported().size(), c.found || std::string(c.name).find("Greeter") == 0 ? 0u : 1u)
            << c.name;
    }
    Reported().clear();
    EXPECT_EQ(Entry("_"), nullptr);
    EXPECT_TRUE(Reported().empty()); // "_" needs no row
    auto twice =
        reinterpret_cast<int32_t (*)(int32_t)>(Entry("Arith.Twice(n As Integer) As Integer"));
    auto triple = reinterpret_cast<int32_t (*)(int32_t)>(Entry("Triple(n As Integer) As Integer"));
    EXPECT_EQ(twice(21), 42);
    EXPECT_EQ(triple(7), 21);
    // Rows other than global methods are exported too, for the binder.
    EXPECT_EQ(LookupExport("Arith.Twice(n As Integer) As Integer"),
              reinterpret_cast<void *>(twice));
    EXPECT_EQ(LookupExport("Triple(n As Integer) As Integer"), nullptr);
}

TEST(PluginClasses, InstanceDataPropertiesAndInterfaces) {
    LoadExample();
    RuntimeObject *big = PluginNewInstance("BigCounter");
    ASSERT_NE(big, nullptr);
    RuntimeClass *k = big->klass;
    ASSERT_NE(k->base, nullptr);
    EXPECT_EQ(objtext::View(k->base->name), "Counter");
    // Each level's data in order behind the object header.
    EXPECT_EQ(k->base->instanceSize, sizeof(RuntimeObject) + 8);
    EXPECT_EQ(k->instanceSize, sizeof(RuntimeObject) + 8 + 4);
    int32_t value = 0;
    EXPECT_TRUE(KELPGetPropValueInt(big, "Limit", &value));
    EXPECT_EQ(value, 1000); // BigCounter's constructor
    EXPECT_TRUE(KELPGetPropValueInt(big, "Step", &value));
    EXPECT_EQ(value, 1); // Counter's constructor ran too
    EXPECT_TRUE(KELPSetPropValueInt(big, "Step", 3));
    auto add = reinterpret_cast<int32_t (*)(RuntimeObject *, int32_t)>(
        Entry("Counter.Add(n As Integer) As Integer"));
    EXPECT_EQ(add(big, 2), 6);
    struct Case {
        const char *name;
        bool readable;
        double asDouble;
    } reads[] = {{"Count", true, 6}, {"step", true, 3}, {"Limit", true, 1000}, {"Nope", false, 0}};
    for (const Case &c : reads) {
        double d = -1;
        EXPECT_EQ(KELPGetPropValueDouble(big, c.name, &d) != 0, c.readable) << c.name;
        if (c.readable) {
            EXPECT_EQ(d, c.asDouble) << c.name;
        }
    }
    int32_t flag = 0;
    EXPECT_FALSE(KELPGetPropValueBool(big, "Count", &flag)); // an Integer is no Boolean
    EXPECT_FALSE(KELPGetPropValueInt(big, "Count", nullptr));
    EXPECT_TRUE(KELPSetPropValueInt(big, "Step", -5));
    EXPECT_TRUE(KELPGetPropValueInt(big, "Step", &value));
    EXPECT_EQ(value, 1); // the plug-in's own setter kept it at least 1
    // By-name methods: a declaration against the class's rows.
    EXPECT_EQ(KELPLoadObjectMethod(big, "Add(x As Integer) As Integer"),
              reinterpret_cast<void *>(add));
    EXPECT_EQ(KELPLoadObjectMethod(big, "Add(x As String) As Integer"), nullptr);
    KelpString greeting = nullptr;
    EXPECT_TRUE(KELPGetPropValueString(big, "Greet", &greeting)); // a method, as no property
    EXPECT_EQ(objtext::View(greeting), "hello from Counter");
    RuntimeUnlockString(greeting);
    // The interface the class implements, found by its method's name.
    EXPECT_EQ(GetInterfaceRoutine(big, "Greeter", "Greet"), Entry("Counter.Greet() As String"));
    EXPECT_EQ(GetInterfaceRoutine(big, "Greeter", "Wave"), nullptr);
    // The class's rows written back as declarations.
    std::vector<std::string> methods, properties;
    RuntimeClass *counter = k->base;
    for (int32_t i = 0; i < KELPCountClassMethods(counter); ++i) {
        KelpString text = nullptr;
        void *code = nullptr;
        ASSERT_TRUE(KELPGetClassMethod(counter, i, &text, &code));
        methods.push_back(std::string(objtext::View(text)));
        RuntimeUnlockString(text);
    }
    for (int32_t i = 0; i < KELPCountClassProperties(counter); ++i) {
        KelpString text = nullptr;
        ASSERT_TRUE(KELPGetClassProperty(counter, i, &text));
        properties.push_back(std::string(objtext::View(text)));
        RuntimeUnlockString(text);
    }
    const std::vector<std::string> wantMethods = {"Function Add(p1 As Integer) As Integer",
                                                  "Function Greet() As String"};
    const std::vector<std::string> wantProperties = {"Count As Integer", "Step As Integer"};
    EXPECT_EQ(methods, wantMethods);
    EXPECT_EQ(properties, wantProperties);
    EXPECT_FALSE(KELPGetClassMethod(counter, int32_t(methods.size()), nullptr, nullptr));
    RuntimeUnlockObject(big);
}

TEST(PluginCalls, SignaturesAndCaptionsAsText) {
    const std::pair<const char *, const char *> declarations[] = {
        {"Item%o<MenuItem>%o<MenuItem>i4", "Function Item(p1 As Integer) As MenuItem"},
        {"Append%%o<MenuItem>o<MenuItem>", "Sub Append(p1 As MenuItem)"},
        {"Sum%f8%o<Calc>a1f8b", "Function Sum(p1 As Double(), p2 As Boolean) As Double"},
        {"Tint%c%o<X>sf4", "Function Tint(p1 As String, p2 As Single) As Color"},
    };
    for (const auto &[signature, text] : declarations)
        EXPECT_EQ(DeclarationOfSignature(signature), text) << signature;
    const std::pair<const char *, const char *> captions[] = {
        {"&Save", "Save"}, {"Fish && Chips", "Fish & Chips"}, {"x&", "x"}, {"", ""}};
    for (const auto &[caption, text] : captions) {
        KelpString in = objtext::Make(caption), out = KELPStripAmpersands(in);
        EXPECT_EQ(objtext::View(out), text) << caption;
        objtext::Release(in);
        RuntimeUnlockString(out);
    }
}

// Records made here, registered under a plug-in of a chosen version.
class HandMade : public ::testing::Test {
protected:
    void SetUp() override {
        LoadExample();
        mPlugin.version = 7;
        Host().current = &mPlugin;
    }
    void TearDown() override { Host().current = nullptr; }
    void Link() {
        Host().current = nullptr;
        LinkPluginClasses(nullptr);
        ForgetEntryTableForTest();
        Host().current = &mPlugin;
    }
    PluginRecord mPlugin;
};

int32_t One(RuntimeObject *) { return 1; }
int32_t Two(RuntimeObject *) { return 2; }

TEST_F(HandMade, GatesStridesAndBadTables) {
    ReportScope reports;
    // Method rows of version 6 are 24 bytes, of version 7 32 bytes.
    static KELPmethodDefinitionV6 v6Rows[] = {
        {reinterpret_cast<void *>(One), KELP_NO_SETTER, "A() As Integer"},
        {reinterpret_cast<void *>(Two), KELP_NO_SETTER, "B() As Integer"}};
    static KELPmethodDefinition v7Rows[] = {
        {reinterpret_cast<void *>(One), KELP_NO_SETTER, "A() As Integer", nullptr},
        {reinterpret_cast<void *>(Two), KELP_NO_SETTER, "B() As Integer", nullptr}};
    static KELPevent twice[] = {{"Ping", nullptr}, {"ping(n As Integer)", nullptr}};
    // clang-format off
    static KELPclassDefinition v6 = {6, "Stride6", nullptr, 0, 0, nullptr, nullptr, nullptr,
                                     0, v6Rows, 2, twice, 2, nullptr, 0, nullptr};
    static KELPclassDefinition v7 = {7, "Stride7", "NoSuchBase", 0, 0, nullptr, nullptr, nullptr,
                                     0, v7Rows, 2, nullptr, 0, nullptr, 0, "Greeter, NoSuchInterface"};
    static KELPclassDefinition broken = {7, "BadTable", nullptr, 0, 0, nullptr, nullptr, nullptr,
                                         3, nullptr, -4, nullptr, 0, nullptr, 0, nullptr};
    static KELPclassDefinition early = {7, "TooEarly", nullptr, 0, 0, nullptr, nullptr, nullptr,
                                        0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr};
    static KELPclassDefinition again = {7, "Counter", nullptr, 0, 0, nullptr, nullptr, nullptr,
                                        0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr};
    // clang-format on
    static KELPmoduleDefinition oldModule = {7, "OldModule", v7Rows, 2};
    static KELPcontrol oldControl = {
        2, "OldControl", 0, 0,       0, 0,       10, 10,     nullptr, 0, nullptr,
        0, nullptr,      0, nullptr, 0, nullptr, 0,  nullptr};

    mPlugin.version = 2;
    PluginRegisterClass(&early); // needs a plug-in version above 2
    mPlugin.version = 3;
    PluginRegisterModule(&oldModule);   // needs 4
    PluginRegisterControl(&oldControl); // record version 2 is ignored
    PluginRegisterClass(&again);        // a known name
    PluginRegisterClass(&v6);
    PluginRegisterClass(&v7);
    PluginRegisterClass(&broken);
    EXPECT_EQ(FindRegistered("TooEarly"), nullptr);
    EXPECT_EQ(FindRegistered("OldControl"), nullptr);
    EXPECT_EQ(FindRegistered("Counter")->classRecord,
              FindRegistered("BigCounter") ? FindRegistered("Counter")->classRecord : nullptr);
    EXPECT_NE(FindRegistered("Counter")->classRecord, &again);
    Link();
    struct Case {
        const char *name;
        int32_t result;
    } calls[] = {{"Stride6.A() As Integer", 1},
                 {"Stride6.B() As Integer", 2},
                 {"Stride7.A() As Integer", 1},
                 {"Stride7.B() As Integer", 2}};
    for (const Case &c : calls) {
        auto f = reinterpret_cast<int32_t (*)(RuntimeObject *)>(Entry(c.name));
        ASSERT_NE(f, nullptr) << c.name;
        EXPECT_EQ(f(nullptr), c.result) << c.name;
    }
    std::string all;
    for (const std::string &r : Reported())
        all += r + "\n";
    EXPECT_NE(all.find("Duplicate name found while trying to build class events.  Matched names "
                       "are: ping"),
              std::string::npos)
        << all;
    EXPECT_NE(all.find("Couldn't find Stride7 superclass: NoSuchBase"), std::string::npos) << all;
    EXPECT_NE(all.find("Couldn't find NoSuchInterface interface : Stride7"), std::string::npos)
        << all;
    EXPECT_NE(all.find("methods || methodCount == 0"), std::string::npos) << all;
    // A superclass not found leaves a root class; Greeter still holds.
    RuntimeClass *k = FindRegistered("Stride7")->klass;
    ASSERT_NE(k, nullptr);
    EXPECT_EQ(k->base, nullptr);
    EXPECT_EQ(k->interfaceCount, 1);
    EXPECT_EQ(FindRegistered("Stride6")->klass->eventCount, 1);
    EXPECT_EQ(Entry("OldModule.A() As Integer"), nullptr);
}

} // namespace
} // namespace kelp::plugins
