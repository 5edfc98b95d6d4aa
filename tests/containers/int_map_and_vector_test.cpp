// IntMap and SimpleVector.
#include "base/fatal_report.h"
#include "containers/int_map.h"
#include "containers/simple_vector.h"

#include <gtest/gtest.h>

#include <string>

using kelp::IntMap;
using kelp::SimpleVector;

namespace {

int gReports = 0;
void CountReport(int, const char *, int, const char *, const char *) { ++gReports; }

struct ReportScope {
    ReportScope() {
        gReports = 0;
        previous = kelp::SetFatalReportHook(&CountReport);
    }
    ~ReportScope() { kelp::SetFatalReportHook(previous); }
    kelp::FatalReportHook previous;
};

TEST(IntMap, AddGetAndReplace) {
    IntMap<int> map;
    int v = 0;
    EXPECT_FALSE(map.GetEntry(7, v));
    map.AddEntry(7, 70);
    map.AddEntry(8, 80);
    EXPECT_TRUE(map.GetEntry(7, v));
    EXPECT_EQ(v, 70);
    map.AddEntry(7, 71);
    EXPECT_TRUE(map.GetEntry(7, v));
    EXPECT_EQ(v, 71);
    EXPECT_EQ(map.Count(), 2u);
}

TEST(IntMap, KeysSharingABinStayApart) {
    IntMap<int> map;
    // k and k + 1024 land in one bin: (k * 13) & 0x3FF.
    ASSERT_EQ(IntMap<int>::BinOf(5), IntMap<int>::BinOf(5 + 1024));
    for (int i = 0; i < 50; ++i)
        map.AddEntry(5 + 1024u * i, i);
    for (int i = 0; i < 50; ++i) {
        int v = -1;
        ASSERT_TRUE(map.GetEntry(5 + 1024u * i, v));
        EXPECT_EQ(v, i);
    }
    int v;
    EXPECT_FALSE(map.GetEntry(5 + 1024u * 50, v));
}

TEST(IntMap, PointerKeysAndInsertionOrder) {
    IntMap<const char *> map;
    static const int anchors[3] = {};
    map.AddEntry(&anchors[2], "two");
    map.AddEntry(&anchors[0], "zero");
    const char *v = nullptr;
    EXPECT_TRUE(map.GetEntry(&anchors[0], v));
    EXPECT_STREQ(v, "zero");
    EXPECT_FALSE(map.GetEntry(&anchors[1], v));
    std::string order;
    map.ForEach(
        [](IntMap<const char *>::Key, const char *&value, void *arg) {
            *static_cast<std::string *>(arg) += value;
            return true;
        },
        &order);
    EXPECT_EQ(order, "twozero");
}

TEST(SimpleVector, GrowsFromZeroTo16ThenDoubles) {
    SimpleVector<int> v;
    EXPECT_EQ(v.Capacity(), 0u);
    v.Append(1);
    EXPECT_EQ(v.Capacity(), 16u);
    for (int i = 2; i <= 17; ++i)
        v.Append(i);
    EXPECT_EQ(v.Capacity(), 32u);
    for (int i = 18; i <= 33; ++i)
        v.Append(i);
    EXPECT_EQ(v.Capacity(), 64u);
    for (int i = 34; i <= 65; ++i)
        v.Append(i);
    EXPECT_EQ(v.Capacity(), 128u);
    ASSERT_EQ(v.Count(), 65u);
    for (uint32_t i = 0; i < v.Count(); ++i)
        EXPECT_EQ(v[i], static_cast<int>(i + 1));
}

TEST(SimpleVector, AFixedStepBelow16Grows16AtATime) {
    SimpleVector<int> small(4), big(100);
    for (int i = 0; i < 40; ++i) {
        small.Append(i);
        big.Append(i);
    }
    EXPECT_EQ(small.Capacity(), 48u);
    EXPECT_EQ(big.Capacity(), 100u);
}

TEST(SimpleVector, RecordsAreCopiedWhole) {
    struct Record {
        int a;
        double b;
        char name[8];
    };
    SimpleVector<Record> v;
    for (int i = 0; i < 40; ++i)
        v.Append(Record{i, i * 0.5, {'r', static_cast<char>('a' + i % 26), 0}});
    EXPECT_EQ(v[39].a, 39);
    EXPECT_DOUBLE_EQ(v[39].b, 19.5);
    EXPECT_STREQ(v[27].name, "rb");
}

TEST(SimpleVector, PopAndBadIndicesAreReported) {
    ReportScope reports;
    SimpleVector<int> v;
    v.Append(4);
    v.Append(5);
    EXPECT_EQ(v.Pop(), 5);
    EXPECT_EQ(v.Count(), 1u);
    EXPECT_EQ(gReports, 0);
    int &outside = v[1]; // at the count: reported, answers a scratch element
    EXPECT_EQ(gReports, 1);
    EXPECT_EQ(outside, 0);
    outside = 99;
    EXPECT_EQ(v[0], 4);
    EXPECT_EQ(v.Pop(), 4);
    EXPECT_EQ(v.Pop(), 0); // empty
    EXPECT_EQ(gReports, 2);
    EXPECT_EQ(v.Count(), 0u);
}

} // namespace
