// Mass property data read into an object: every type letter in its width,
// the order of assignment, and damaged data stopping with its report.
#include "objects/definitions.h"
#include "objects/text.h"
#include "support/class_kit.h"
#include "support/mass_data.h"

#include "kelp/controls.h"
#include "kelp/objects.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace kelp::test {
namespace {

struct Probe {
    RuntimeObject object;
    uint8_t flag;
    int32_t number, color;
    float single;
    double real;
    KelpString text;
    int32_t seenSelector, seenValue; // what the code setter was given
};

std::vector<std::string> gSetterLog;

void ProbeSetter(RuntimeObject *self, int32_t selector, int32_t value) {
    auto *p = reinterpret_cast<Probe *>(self);
    p->seenSelector = selector;
    p->seenValue = value;
    gSetterLog.push_back(std::to_string(selector) + "=" + std::to_string(value));
}
void ProbeFinalizer(RuntimeObject *self) {
    objtext::Release(reinterpret_cast<Probe *>(self)->text);
}

ObjectDefinition *ProbeDefinition() {
    static const PropertyRow properties[] = {
        {0, "Flag", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_PLAIN_FIELD, offsetof(Probe, flag)},
        {0, "Number", &kTypeInteger, KELP_ENTRY(intGetter), KELP_PLAIN_FIELD,
         offsetof(Probe, number)},
        {0, "Tint", &kTypeColor, KELP_ENTRY(intGetter), KELP_PLAIN_FIELD, offsetof(Probe, color)},
        {0, "Single", &kTypeSingle, KELP_ENTRY(singleGetter), KELP_PLAIN_FIELD,
         offsetof(Probe, single)},
        {0, "Real", &kTypeDouble, KELP_ENTRY(doubleGetter), KELP_PLAIN_FIELD,
         offsetof(Probe, real)},
        {0, "Text", &kTypeString, KELP_ENTRY(stringGetter), KELP_PLAIN_FIELD,
         offsetof(Probe, text)},
        {0, "Coded", &kTypeInteger, {}, KELP_ENTRY(ProbeSetter), 7},
        {0, "Fixed", &kTypeInteger, KELP_ENTRY(intGetter), {}, offsetof(Probe, number)},
        {0, "Address", &kTypePtr, {}, KELP_PLAIN_FIELD, offsetof(Probe, number)},
    };
    static const ClassDescription description = {
        .name = "MassProbe",
        .instanceSize = sizeof(Probe),
        .finalizer = KELP_ENTRY(ProbeFinalizer),
        .properties = properties,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

class MassPropertiesTest : public ::testing::Test {
protected:
    void SetUp() override {
        gSetterLog.clear();
        mObject = NewObjectOfDefinition(ProbeDefinition());
        ASSERT_NE(mObject, nullptr);
    }
    void TearDown() override { RuntimeUnlockObject(mObject); }
    Probe *P() { return reinterpret_cast<Probe *>(mObject); }
    MassData Data() { return MassData(mObject->klass); }
    void Apply(const std::string &bytes) {
        KelpString data = objtext::Make(bytes);
        RuntimeMassPropertySetter(mObject, data);
        objtext::Release(data);
    }
    RuntimeObject *mObject = nullptr;
};

TEST_F(MassPropertiesTest, EveryTypeLetterReadsItsWidthAndTheNextRecordFollows) {
    ReportRecorder reports;
    // The colour is three bytes: were it read as four, every field behind
    // it would come out wrong.
    Apply(Data()
              .Bool("Flag", true)
              .Color("Tint", 0x12ab34)
              .Int("Number", -70000)
              .Single("Single", 2.5f)
              .Real("Real", -1.0e300)
              .Text("Text", "caf\xc3\xa9")
              .Int("Coded", 99)
              .Bytes());
    EXPECT_TRUE(reports.Reports().empty());
    EXPECT_EQ(P()->flag, 1);
    EXPECT_EQ(P()->color, 0x12ab34);
    EXPECT_EQ(P()->number, -70000);
    EXPECT_EQ(P()->single, 2.5f);
    EXPECT_EQ(P()->real, -1.0e300);
    EXPECT_EQ(Str(P()->text), "caf\xc3\xa9");
    ASSERT_NE(P()->text, nullptr);
    EXPECT_EQ(P()->text->encoding, kEncodingUTF8);
    EXPECT_EQ(P()->seenSelector, 7) << "a code setter gets the row's parameter";
    EXPECT_EQ(P()->seenValue, 99);
    // Records apply in order; an empty text stores the empty string.
    gSetterLog.clear();
    Apply(Data().Int("Coded", 1).Int("Coded", 2).Text("Text", "").Bytes());
    EXPECT_EQ(gSetterLog, (std::vector<std::string>{"7=1", "7=2"}));
    EXPECT_EQ(P()->text, nullptr) << "the empty string";
    // Nil object or data does nothing.
    KelpString data = objtext::Make(Data().Int("Number", 3).Bytes());
    RuntimeMassPropertySetter(nullptr, data);
    RuntimeMassPropertySetter(mObject, nullptr);
    objtext::Release(data);
    EXPECT_EQ(P()->number, -70000);
    EXPECT_TRUE(reports.Reports().empty());
}

TEST_F(MassPropertiesTest, DamagedDataStopsWithItsReportAndAppliesNothingAfter) {
    const std::string before = Data().Int("Number", 5).Bytes();
    const std::string after = Data().Bool("Flag", true).Bytes();
    const int32_t count = mObject->klass->propertyCount;
    struct Case {
        const char *what;
        std::string bad;
        const char *message; // the start of the report's text
        bool cut;            // the data ends inside it: nothing can follow
    };
    const Case cases[] = {
        {"index one past the table", Data().RowNumber(uint16_t(count)).Put(1, 4).Bytes(),
         "Mass property index", false},
        {"read-only row", Data().Int("Fixed", 9).Bytes(),
         "Assignment to read-only property Fixed%i4%", false},
        {"unknown type letter", Data().Int("Address", 9).Bytes(),
         "Illegal type in mass property input.", false},
        {"cut inside an integer",
         Data().RowNumber(uint16_t(PropertyRowIndex(mObject->klass, "Number"))).Put(1, 2).Bytes(),
         "Mass property input ends inside a record.", true},
        {"text longer than the data",
         Data()
             .RowNumber(uint16_t(PropertyRowIndex(mObject->klass, "Text")))
             .Put(0xffffffffu, 4)
             .Bytes(),
         "Mass property input ends inside a record.", true},
        {"a lone byte", std::string(1, '\0'), "Mass property input ends inside a record.", true},
    };
    for (const Case &c : cases) {
        ReportRecorder reports;
        P()->number = 0;
        P()->flag = 0;
        Apply(before + c.bad + (c.cut ? "" : after));
        ASSERT_EQ(reports.Reports().size(), 1u) << c.what;
        EXPECT_EQ(reports.Reports()[0].message.rfind(c.message, 0), 0u)
            << c.what << ": " << reports.Reports()[0].message;
        EXPECT_EQ(P()->number, 5) << c.what << ": records before the fault are applied";
        EXPECT_EQ(P()->flag, 0) << c.what << ": nothing after the fault is applied";
        EXPECT_EQ(P()->text, nullptr) << c.what;
    }
}

} // namespace
} // namespace kelp::test
