// Rounds without a window: which problems come in each mode, and the
// bookkeeping of right, wrong and missing answers.
#include "support/drill_bank_support.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace sumbrook;

namespace {

class Round : public ::testing::Test {
protected:
    void SetUp() override { drilltest::PrepareDrill(); }

    // Plays a whole round, answering with `choose` for each question, and
    // returns the problem numbers in order.
    template <typename Choose>
    std::vector<int32_t> Play(int32_t mode, int32_t length, uint32_t seed, Choose choose) {
        ResetForSelection();
        RuntimeRandomSeed(seed);
        Drill().iPracticeMode = mode;
        Drill().iRoundLength = length;
        StartRound();
        std::vector<int32_t> asked;
        for (int q = 0; q < length; ++q) {
            asked.push_back(P().iProbNumber);
            AnswerQuestion(choose(q));
        }
        return asked;
    }
};

TEST_F(Round, EachModeKeepsToItsProblemsAndNeverRepeats) {
    struct Case {
        int32_t mode, lo, hi, length;
    } cases[] = {{1, 1, 50, 50}, {2, 51, 87, 37}, {3, 1, 87, 87}};
    for (const Case &c : cases) {
        for (uint32_t seed = 1; seed <= 5; ++seed) {
            const auto asked = Play(c.mode, c.length, seed * 13u, [](int) { return 1; });
            std::set<int32_t> distinct(asked.begin(), asked.end());
            EXPECT_EQ(distinct.size(), asked.size()) << "mode " << c.mode;
            // A round as long as its pool asks every problem of the mode.
            EXPECT_EQ(*distinct.begin(), c.lo);
            EXPECT_EQ(*distinct.rbegin(), c.hi);
            for (int32_t n = 1; n <= 87; ++n)
                EXPECT_EQ(Drill().abProbUsed.Get(n), n >= c.lo && n <= c.hi) << n;
        }
    }
}

TEST_F(Round, FirstQuestionOfARoundMayBeAnyProblem) {
    // The problem before is forgotten at the start of each round, so the
    // number that ended one round may open the next.
    std::set<int32_t> firsts;
    for (uint32_t seed = 1; seed <= 400; ++seed) {
        ResetForSelection();
        RuntimeRandomSeed(seed);
        Drill().iPracticeMode = 2;
        Drill().iRoundLength = 5;
        StartRound();
        EXPECT_EQ(Drill().iLastProbNumber, P().iProbNumber);
        firsts.insert(P().iProbNumber);
    }
    EXPECT_EQ(firsts.size(), 37u);
}

TEST_F(Round, ScoreAndMissesAddUpToTheRoundLength) {
    for (int32_t length : {5, 10, 25}) {
        int right = 0;
        Play(3, length, 99u + static_cast<uint32_t>(length), [&](int q) {
            // Alternate right and wrong answers.
            const int32_t correct = P().iCorrectAnswerIs;
            if (q % 2 == 0) {
                ++right;
                return correct;
            }
            return correct == 10 ? 1 : correct + 1;
        });
        EXPECT_EQ(Drill().iScore, right);
        EXPECT_EQ(Drill().iScore + Drill().iMissedCount, length);
        EXPECT_EQ(Drill().iQuestionsLeft, 0);
    }
}

TEST_F(Round, MissedRecordHoldsTheTextAndTheTip) {
    // The classic record runs the tip on after a blank; the corrected one labels it.
    const std::pair<bool, const char *> editions[] = {{true, " "}, {false, "  Tip: "}};
    for (const auto &[classic, joint] : editions) {
        SetClassic(classic);
        ResetForSelection();
        RuntimeRandomSeed(1234);
        Drill().iPracticeMode = 1;
        Drill().iRoundLength = 5;
        StartRound();
        const std::string text = P().sProblemString.ToStd();
        const std::string tip = Drill().sTip.ToStd();
        const int32_t wrong = P().iCorrectAnswerIs == 1 ? 2 : 1;
        EXPECT_EQ(AnswerQuestion(wrong), AnswerResult::Wrong);
        EXPECT_EQ(Drill().iMissedCount, 1);
        EXPECT_EQ(Drill().asMissed.Get(1).ToStd(), text + joint + tip);
        EXPECT_EQ(Drill().iQuestionsLeft, 4);
    }
    SetClassic(false);
}

TEST_F(Round, FullScoreLeavesNoMissedRecord) {
    Play(1, 10, 77, [](int) { return P().iCorrectAnswerIs; });
    EXPECT_EQ(Drill().iScore, 10);
    EXPECT_EQ(Drill().iMissedCount, 0);
    for (int32_t i = 0; i <= 87; ++i)
        EXPECT_TRUE(Drill().asMissed.Get(i).Empty());
}

TEST_F(Round, OkWithoutAChoiceChangesNothing) {
    ResetForSelection();
    RuntimeRandomSeed(4321);
    Drill().iPracticeMode = 3;
    Drill().iRoundLength = 5;
    StartRound();
    const int32_t number = P().iProbNumber;
    const std::string text = P().sProblemString.ToStd();
    EXPECT_EQ(AnswerQuestion(0), AnswerResult::NoChoice);
    EXPECT_EQ(P().iProbNumber, number);
    EXPECT_EQ(P().sProblemString.ToStd(), text);
    EXPECT_EQ(Drill().iQuestionsLeft, 5);
    EXPECT_EQ(Drill().iScore, 0);
    EXPECT_EQ(Drill().iMissedCount, 0);
}

TEST_F(Round, ResetVarsClearsTheWorkingFieldsAndDrawsAnArrangement) {
    RuntimeRandomSeed(10);
    P().iProbNumber = 4;
    mSetProblem();
    ASSERT_FALSE(P().sName[1].Empty());
    std::set<int32_t> arrangements;
    for (int i = 0; i < 200; ++i) {
        mResetVars();
        EXPECT_TRUE(P().sName[1].Empty());
        EXPECT_EQ(P().iName[1], -1);
        EXPECT_EQ(P().iRandom[1], -1);
        EXPECT_EQ(P().iProbNumber, -1);
        EXPECT_FALSE(P().bProbfound);
        arrangements.insert(P().iRandomizer);
    }
    EXPECT_EQ(arrangements, (std::set<int32_t>{1, 2, 3}));
}

TEST_F(Round, SelectionResetClearsTotalsAndNameMemory) {
    Play(1, 5, 8, [](int) { return 1; });
    fPickName();
    ResetForSelection();
    EXPECT_EQ(Drill().iScore, 0);
    EXPECT_EQ(Drill().iMissedCount, 0);
    EXPECT_EQ(Drill().iLastName, kNoProblem);
    EXPECT_TRUE(Drill().sTip.Empty());
    for (int32_t i = 0; i <= 87; ++i)
        EXPECT_FALSE(Drill().abProbUsed.Get(i));
}

} // namespace
