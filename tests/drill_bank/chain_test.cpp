// Problems 41 to 87 built one after another as a round builds them, with no
// selection window in between: the name memory carries from problem to
// problem (a pick is never the one made just before, even when that was in
// the previous problem), and every problem still matches its model.
#include "bank_model.h"

#include <gtest/gtest.h>

namespace banktest {
namespace {

TEST(BankChain, NameMemoryCarriesAcrossProblems) {
    PrepareDrill();
    for (uint32_t seed = 11; seed <= 400; seed += 13) {
        sumbrook::ResetForSelection();
        RuntimeRandomSeed(seed);
        Gen g(seed);
        for (int32_t pass = 0; pass < 3; ++pass) {
            for (int32_t number = 41; number <= 87; ++number) {
                const int32_t randomizer = 1 + (number + pass) % 3;
                const size_t before = g.names.size();
                CheckOnce(number, Models().at(number), randomizer, g,
                          "problem " + S(number) + " seed " + S(seed) + " pass " + S(pass));
                if (HasFatalFailure()) return;
                // The drill kept the same children in its name slots, and its
                // memory of the last pick is the model's.
                for (size_t i = before; i < g.names.size(); ++i)
                    ASSERT_EQ(sumbrook::P().iName[i - before + 1], g.names[i]) << "problem " << number;
                ASSERT_EQ(sumbrook::Drill().iLastName, g.lastName) << "problem " << number;
            }
        }
    }
}

// The model table covers every problem of this half of the bank, and the
// lists name a correct position from 1 to 10 holding the correct value.
TEST(BankChain, EveryProblemHasAModelAndThreeLists) {
    for (int32_t number = 41; number <= 87; ++number) {
        EXPECT_EQ(Models().count(number), 1u) << number;
        ASSERT_EQ(BankLists().count(number), 1u) << number;
        for (const ListRow &row : BankLists().at(number)) {
            EXPECT_GE(row.correct, 1);
            EXPECT_LE(row.correct, 10);
        }
    }
}

} // namespace
} // namespace banktest
