// A few problems of every kind, built from fixed seeds and compared with the
// copy kept in stored_rounds.txt: any change to a text, a list, a tip or the
// number of draws a problem takes shows here.  After a change that is meant,
// run once with KELP_REWRITE_STORED_ROUNDS=1 to write the file anew, and
// read the difference before committing it.
#include "support/drill_bank_support.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

using namespace sumbrook;

namespace {

const char *const kStoredPath = KELP_SOURCE_DIR "/tests/drill_bank/stored_rounds.txt";
constexpr uint32_t kSeeds[] = {7u, 40961u};

// Tabs and line breaks inside a field are written as \t, \r and \n.
std::string Escape(const std::string &s) {
    std::string out;
    for (char c : s) {
        switch (c) {
        case '\\': out += "\\\\"; break;
        case '\t': out += "\\t"; break;
        case '\r': out += "\\r"; break;
        case '\n': out += "\\n"; break;
        default: out += c;
        }
    }
    return out;
}

// One problem built from a fresh selection window, as one line: number,
// arrangement, seed, correct position, tip, text, the ten entries, and the
// generator's next draw (so a problem taking one draw more or less shows).
std::string Record(int32_t number, int32_t arrangement, uint32_t seed) {
    ResetForSelection();
    RuntimeRandomSeed(seed);
    drilltest::Build(number, arrangement);
    std::ostringstream line;
    line << number << '\t' << arrangement << '\t' << seed << '\t' << P().iCorrectAnswerIs << '\t'
         << Escape(drilltest::TipText()) << '\t' << Escape(drilltest::ProblemText());
    for (int32_t i = 1; i <= 10; ++i)
        line << '\t' << Escape(drilltest::Answer(i));
    line << '\t' << static_cast<int64_t>(rnd() * 1048576.0);
    return line.str();
}

// The classic edition gives exactly the rounds it always gave.
TEST(StoredRounds, ClassicProblemsBuildAsStored) {
    drilltest::PrepareDrill(/*classic=*/true);
    std::vector<std::string> now;
    for (int32_t number = 1; number <= 87; ++number)
        for (int32_t arrangement = 1; arrangement <= 3; ++arrangement)
            for (uint32_t seed : kSeeds)
                now.push_back(Record(number, arrangement, seed + static_cast<uint32_t>(number)));

    const char *rewrite = std::getenv("KELP_REWRITE_STORED_ROUNDS");
    if (rewrite && std::string(rewrite) == "1") {
        std::ofstream out(kStoredPath, std::ios::binary | std::ios::trunc);
        for (const std::string &line : now)
            out << line << '\n';
        ASSERT_TRUE(out.good()) << kStoredPath;
        GTEST_SKIP() << "wrote " << now.size() << " stored rounds to " << kStoredPath;
    }

    std::ifstream in(kStoredPath, std::ios::binary);
    ASSERT_TRUE(in) << kStoredPath;
    std::vector<std::string> stored;
    for (std::string line; std::getline(in, line);)
        stored.push_back(line);
    ASSERT_EQ(stored.size(), now.size());
    // The first few differences are enough to see what changed.
    int differences = 0;
    for (size_t i = 0; i < now.size(); ++i) {
        if (now[i] != stored[i] && ++differences <= 5)
            ADD_FAILURE() << "stored round " << i + 1 << "\n  now:    " << now[i]
                          << "\n  stored: " << stored[i];
    }
    EXPECT_EQ(differences, 0);
}

} // namespace
