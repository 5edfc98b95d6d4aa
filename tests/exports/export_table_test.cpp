// The export table: static rows first, rows added at run time behind them,
// one case-folded index over both.
#include "base/fatal_report.h"
#include "kelp/image.h"
#include "kelp/startup.h"
#include "main/static_exports.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

extern "C" void ExportTestOne(void) {}
extern "C" void ExportTestTwo(void) {}

std::vector<std::string> gReports;
void CollectReport(int, const char *, int, const char *condition, const char *) {
    gReports.push_back(condition);
}

TEST(ExportTable, StaticRowsComeFirstAndAddedRowsFollowInOrder) {
    const int32_t statics = int32_t(kelp::StaticExportCount());
    ASSERT_GE(ExportCount(), statics);
    const int32_t before = ExportCount();
    AddExport("ExportTestOne", reinterpret_cast<void *>(&ExportTestOne));
    ASSERT_EQ(ExportCount(), before + 1);
    const RelocEntry *row = ExportAt(before);
    ASSERT_NE(row, nullptr);
    EXPECT_STREQ(row->name, "ExportTestOne");
    EXPECT_EQ(row->code, reinterpret_cast<void *>(&ExportTestOne));
    EXPECT_EQ(row->reserved1, nullptr);
    EXPECT_EQ(ExportAt(ExportCount()), nullptr);
    EXPECT_EQ(ExportAt(-1), nullptr);
    // Every static row is reachable by its own name, in any case.
    for (int32_t i = 0; i < statics; ++i) {
        const RelocEntry *s = ExportAt(i);
        ASSERT_NE(s, nullptr);
        if (!s->name)
            continue;
        std::string lower = s->name;
        for (char &c : lower)
            c = char(c >= 'A' && c <= 'Z' ? c + 32 : c);
        EXPECT_EQ(LookupExport(lower.c_str()), LookupExport(s->name)) << s->name;
        EXPECT_NE(LookupExport(s->name), nullptr) << s->name;
    }
    EXPECT_EQ(LookupExport("RuntimeInit"), reinterpret_cast<void *>(&RuntimeInit));
    EXPECT_EQ(LookupExport("NoSuchName"), nullptr);
    EXPECT_EQ(LookupExport(nullptr), nullptr);
}

TEST(ExportTable, AddingANameTwiceIsSilentForTheSameCodeAndAFailureForOther) {
    auto old = kelp::SetFatalReportHook(&CollectReport);
    gReports.clear();
    AddExport("ExportTestTwo", reinterpret_cast<void *>(&ExportTestTwo));
    const int32_t count = ExportCount();
    AddExport("EXPORTTESTTWO", reinterpret_cast<void *>(&ExportTestTwo));
    EXPECT_EQ(ExportCount(), count);
    EXPECT_TRUE(gReports.empty());
    AddExport("exporttesttwo", reinterpret_cast<void *>(&ExportTestOne));
    EXPECT_EQ(ExportCount(), count);
    EXPECT_EQ(gReports, std::vector<std::string>{"functionPtr == oldEntry->code"});
    EXPECT_EQ(LookupExport("ExportTestTwo"), reinterpret_cast<void *>(&ExportTestTwo));
    // A static name can't be taken over either: the first row wins.
    AddExport("runtimeinit", reinterpret_cast<void *>(&ExportTestOne));
    EXPECT_EQ(LookupExport("RuntimeInit"), reinterpret_cast<void *>(&RuntimeInit));
    // Null code is ignored.
    AddExport("ExportTestNull", nullptr);
    EXPECT_EQ(ExportCount(), count);
    kelp::SetFatalReportHook(old);
}

TEST(ExportTable, AddedNamesAreCopiedSoCallersMayReuseTheirBuffers) {
    char name[] = "ExportTestBuffer";
    AddExport(name, reinterpret_cast<void *>(&ExportTestOne));
    name[0] = 'X';
    EXPECT_EQ(LookupExport("ExportTestBuffer"), reinterpret_cast<void *>(&ExportTestOne));
    EXPECT_STREQ(ExportAt(ExportCount() - 1)->name, "ExportTestBuffer");
}

} // namespace
