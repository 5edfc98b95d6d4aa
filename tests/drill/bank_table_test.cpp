// Every problem of the bank, in every arrangement: ten entries, the correct
// one at the arrangement's fixed position, the problem's tip, a text with no
// blank left unfilled.
#include "support/drill_bank_support.h"

#include <gtest/gtest.h>

#include <array>
#include <ostream>
#include <string>

using namespace sumbrook;
using drilltest::Build;

namespace {

struct BankRow {
    int32_t number;
    const char *tip;
    std::array<int32_t, 3> positions; // iCorrectAnswerIs for arrangements 1, 2, 3
};

// The tip and the three fixed positions of every problem, as the bank gives
// them.
const BankRow kBank[] = {
    {1, "subtract", {1, 4, 6}},
    {2, "addition", {4, 3, 5}},
    {3, "subtract", {6, 8, 10}},
    {4, "add", {5, 3, 9}},
    {5, "subtract", {5, 3, 7}},
    {6, "addition", {1, 4, 7}},
    {7, "addition", {2, 8, 10}},
    {8, "addition", {2, 5, 9}},
    {9, "subtract", {3, 4, 6}},
    {10, "addition", {7, 2, 9}},
    {11, "add and subtract", {6, 4, 1}},
    {12, "zero plus any number equals the number", {1, 4, 8}},
    {13, "length of boards does not affect number of boards", {5, 6, 7}},
    {14, "dozen always equals 12", {5, 8, 10}},
    {15, "addition", {3, 8, 5}},
    {16, "addition", {1, 2, 7}},
    {17, "subtraction", {3, 6, 7}},
    {18, "add then subtract", {2, 8, 10}},
    {19, "add", {3, 6, 10}},
    {20, "subtract", {1, 4, 6}},
    {21, "add", {10, 1, 4}},
    {22, "subtract", {2, 3, 4}},
    {23, "subtract", {4, 1, 8}},
    {24, "add", {5, 2, 9}},
    {25, "subtraction", {7, 3, 2}},
    {26, "addition", {2, 5, 9}},
    {27, "add", {4, 5, 3}},
    {28, "add", {3, 5, 9}},
    {29, "add", {1, 2, 7}},
    {30, "add", {3, 6, 8}},
    {31, "subtract and add", {6, 7, 10}},
    {32, "add", {10, 1, 7}},
    {33, "subtraction", {8, 2, 1}},
    {34, "subtraction", {5, 8, 2}},
    {35, "add then subtract", {4, 5, 6}},
    {36, "subtraction", {7, 9, 10}},
    {37, "subtraction", {1, 3, 4}},
    {38, "add", {2, 4, 6}},
    {39, "addition", {1, 7, 9}},
    {40, "add", {9, 10, 3}},
    {41, "subtract", {2, 4, 6}},
    {42, "add", {5, 6, 8}},
    {43, "subtract", {1, 2, 7}},
    {44, "add then subtract", {7, 9, 4}},
    {45, "add then subtract", {6, 5, 3}},
    {46, "add then subtract", {1, 4, 9}},
    {47, "add", {7, 2, 5}},
    {48, "addition", {1, 6, 10}},
    {49, "add", {6, 7, 9}},
    {50, "add", {9, 1, 2}},
    {51, "divide", {3, 4, 10}},
    {52, "multiply", {4, 7, 8}},
    {53, "divide", {8, 1, 5}},
    {54, "multiply", {6, 7, 9}},
    {55, "multiply", {3, 7, 10}},
    {56, "multiply or divide", {1, 3, 9}},
    {57, "multiply or divide", {10, 2, 8}},
    {58, "multiply", {5, 6, 7}},
    {59, "multiply", {5, 6, 7}},
    {60, "divide", {2, 4, 6}},
    {61, "divide", {1, 9, 10}},
    {62, "divide", {5, 6, 9}},
    {63, "multiply", {2, 4, 7}},
    {64, "multiply", {6, 7, 10}},
    {65, "multiply and add", {3, 6, 9}},
    {66, "multiply", {4, 7, 10}},
    {67, "add then divide", {1, 3, 6}},
    {68, "add then divide", {3, 4, 6}},
    {69, "add then divide", {2, 4, 8}},
    {70, "multiply", {1, 5, 9}},
    {71, "multiply", {9, 5, 6}},
    {72, "multiply or divide then subtract", {2, 4, 10}},
    {73, "round and multiply", {3, 4, 6}},
    {74, "multi-part multiplication problem", {5, 7, 10}},
    {75, "divide", {4, 9, 10}},
    {76, "multiply then add", {1, 2, 7}},
    {77, "multiply", {3, 4, 8}},
    {78, "add then divide", {3, 8, 9}},
    {79, "multiply", {6, 7, 8}},
    {80, "divide", {7, 2, 4}},
    {81, "don't forget the driver, multiply", {5, 9, 10}},
    {82, "multiply", {1, 4, 5}},
    {83, "divide", {3, 6, 8}},
    {84, "divide", {2, 7, 9}},
    {85, "multi-part multiplication", {5, 8, 9}},
    {86, "3 cubes make 1 group, multiply by 1", {1, 5, 9}},
    {87, "multi-part multiplication", {3, 7, 8}},
};

// Names the row by its problem in test output.
void PrintTo(const BankRow &row, std::ostream *os) { *os << "problem " << row.number; }

class BankTable : public ::testing::TestWithParam<BankRow> {
protected:
    void SetUp() override { drilltest::PrepareDrill(); }
};

TEST_P(BankTable, EveryArrangementHasItsPositionTipAndTenEntries) {
    const BankRow &row = GetParam();
    for (int32_t randomizer = 1; randomizer <= 3; ++randomizer) {
        for (uint32_t seed = 1; seed <= 40; ++seed) {
            RuntimeRandomSeed(seed * 7919u + static_cast<uint32_t>(row.number));
            // Stale answers must not pass for new ones.
            for (int32_t i = 0; i <= 10; ++i)
                P().sAnswerStrings.Set(i, "stale"_k);
            P().iCorrectAnswerIs = 0;
            Drill().sTip = Text();
            Build(row.number, randomizer);

            SCOPED_TRACE("problem " + std::to_string(row.number) + " arrangement " +
                         std::to_string(randomizer) + " seed " + std::to_string(seed));
            ASSERT_EQ(P().iCorrectAnswerIs, row.positions[randomizer - 1]);
            ASSERT_EQ(drilltest::TipText(), row.tip);
            const std::string text = drilltest::ProblemText();
            ASSERT_FALSE(text.empty());
            // Many texts open with the name: an empty name slot would leave
            // the text opening with a blank.
            ASSERT_NE(text.front(), ' ') << text;
            for (int32_t i = 1; i <= 10; ++i)
                ASSERT_NE(drilltest::Answer(i), "stale") << "entry " << i;
            // The correct entry always shows something.
            ASSERT_FALSE(drilltest::CorrectText().empty()) << text;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(AllProblems, BankTable, ::testing::ValuesIn(kBank),
                         [](const ::testing::TestParamInfo<BankRow> &row) {
                             return "Problem" + std::to_string(row.param.number);
                         });

} // namespace
