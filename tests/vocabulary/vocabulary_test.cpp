// The whole export vocabulary: an image that imports every name binds under
// the runtime program, and no name is bound to two different functions.
//
// names.txt holds every name an image may bind, by family; unbound.txt the
// names this tree does not export yet.  That list may only shrink: a name on
// it that binds is a failure too, so it is taken off as soon as it does.
#include "support/class_kit.h"
#include "support/image_builder.h"

#include "kelp/image.h"
#include "kelp/startup.h"
#include "main/static_exports.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>

using namespace kelp::test;

namespace {

std::vector<std::string> ReadNames(const char *file) {
    std::ifstream in(std::string(KELP_SOURCE_DIR "/tests/vocabulary/") + file);
    std::vector<std::string> names;
    for (std::string line; std::getline(in, line);)
        if (!line.empty() && line[0] != '#')
            names.push_back(line);
    return names;
}

// Type 1 records with no hole: the binder looks each name up and reports the
// ones it can't find.
void ImportWithoutHoles(ImageBuilder &b, const std::vector<std::string> &names) {
    for (const std::string &name : names) {
        std::vector<uint8_t> &link = b.LinkTable();
        link.insert(link.end(), {1, 1, 0, 0, 0, 0, uint8_t(name.size())});
        link.insert(link.end(), name.begin(), name.end());
        link.push_back(0);
    }
}

std::string Join(const std::set<std::string> &names) {
    std::string text;
    for (const std::string &n : names)
        text += n + " ";
    return text;
}

TEST(Vocabulary, AnImageImportingEveryNameBindsAndOnlyTheListedOnesAreReported) {
    const std::vector<std::string> all = ReadNames("names.txt");
    const std::vector<std::string> unboundList = ReadNames("unbound.txt");
    ASSERT_EQ(all.size(), 2105u);
    const std::set<std::string> allSet(all.begin(), all.end());
    ASSERT_EQ(allSet.size(), all.size()) << "a name listed twice";
    for (const std::string &n : unboundList)
        EXPECT_TRUE(allSet.count(n)) << n << " is on the unbound list but not a name";

    ImageBuilder b;
    ImportWithoutHoles(b, all);
    b.Prologue();
    b.PutsText("bound");
    b.Epilogue();
    RunResult r = RunAppended(b.Build());
    EXPECT_EQ(r.status, 0) << r.err.substr(0, 2000);
    EXPECT_EQ(r.out, "bound\n");

    // The binder tallies missing names into one report: its count must be
    // the length of the list, and the names those the list holds.
    // "... was not exported" alone for one name, with " (N times in all)" for N.
    const std::string marker = "was not exported";
    size_t reported = 0;
    if (const size_t at = r.err.find(marker); at != std::string::npos)
        reported = r.err.compare(at + marker.size(), 2, " (") == 0
                       ? std::stoul(r.err.substr(at + marker.size() + 2))
                       : 1;
    EXPECT_EQ(reported, unboundList.size()) << r.err.substr(0, 2000);

    const std::set<std::string> expected(unboundList.begin(), unboundList.end());
    std::set<std::string> unexpected, nowBound;
    for (const std::string &n : all) {
        const bool bound = LookupExport(n.c_str()) != nullptr;
        if (!bound && !expected.count(n))
            unexpected.insert(n);
        if (bound && expected.count(n))
            nowBound.insert(n);
    }
    EXPECT_TRUE(unexpected.empty()) << "not exported: " << Join(unexpected);
    EXPECT_TRUE(nowBound.empty()) << "bound now, take them off unbound.txt: " << Join(nowBound);
}

TEST(Vocabulary, NoNameIsBoundToTwoFunctions) {
    // Static rows: the index keeps the first row of a name, so a later row
    // with other code shows as a row whose own name finds different code.
    std::map<std::string, const void *> codeOf;
    for (size_t i = 0; i < kelp::StaticExportCount(); ++i) {
        const RelocEntry &row = kelp::StaticExportRows()[i];
        std::string folded = row.name;
        for (char &c : folded)
            c = char(std::tolower(static_cast<unsigned char>(c)));
        auto [at, fresh] = codeOf.emplace(folded, row.code);
        EXPECT_TRUE(fresh || at->second == row.code) << row.name << " has two functions";
    }
    // Class registration exports every accessor and hook by name; a name
    // already taken by other code is a failed assertion there.
    ReportRecorder recorder;
    RuntimeInitExternalClasses();
    for (const Report &report : ReportRecorder::Reports())
        EXPECT_NE(report.condition, "functionPtr == oldEntry->code") << report.message;
    for (int32_t i = 0; i < ExportCount(); ++i)
        EXPECT_EQ(LookupExport(ExportAt(i)->name), ExportAt(i)->code) << ExportAt(i)->name;
}

} // namespace
