// Problems 1 to 40 worked out from their own text: the numbers the text
// shows give the correct entry, the units stand behind every number entry,
// and the special problems hold their fixed answers.
#include "support/drill_bank_support.h"
#include "support/drill_reference_rnd.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <string>

using namespace sumbrook;
using drilltest::Answer;
using drilltest::Build;
using drilltest::CorrectText;
using drilltest::MoneyIn;
using drilltest::NumbersIn;
using drilltest::ProblemText;

namespace {

std::string S(int32_t v) { return std::to_string(v); }
std::string Money(int32_t cents) { return fMoneyText(cents).ToStd(); }

struct Expectation {
    std::string correct; // the correct entry's text
    std::string unit;    // what every entry ends with ("" for none)
};

using Solver = std::function<Expectation(const std::vector<int32_t> &n,
                                         const std::vector<int32_t> &m, int32_t randomizer)>;

// For each problem: what its text says the answer is.
const std::map<int32_t, Solver> &Solvers() {
    static const std::map<int32_t, Solver> solvers = {
        {1,
         [](auto &, auto &m, int32_t) {
             return Expectation{Money(m.at(0) - m.at(1)), ""};
         }},
        {2,
         [](auto &, auto &, int32_t r) {
             return Expectation{r == 2 ? "three items" : "3 items", ""};
         }},
        {3,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) - 2), ""};
         }},
        {4,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) + n.at(1)), ""};
         }},
        {6,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) + n.at(1) + n.at(2) + n.at(3)), ""};
         }},
        {7,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) + n.at(1) + n.at(2)) + " bugs", " bugs"};
         }},
        {8,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) + n.at(1)) + " beans", " beans"};
         }},
        {9,
         [](auto &, auto &, int32_t) {
             return Expectation{"$4.15", ""};
         }},
        {10,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) + n.at(1) + n.at(2) + n.at(3)) + " birds", " birds"};
         }},
        {11,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) + n.at(1) - n.at(2)) + " pencils", " pencils"};
         }},
        {12,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0)), ""};
         }},
        // "{r1} boards that are 6 feet long and {r2} boards that are 8 feet"
        {13,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) + n.at(2)) + " boards", " boards"};
         }},
        {14,
         [](auto &, auto &, int32_t) {
             return Expectation{"12", ""};
         }},
        {15,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) + n.at(1)), ""};
         }},
        {16,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) + n.at(2)), ""};
         }},
        {17,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) - n.at(2)), ""};
         }},
        {18,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(1) + n.at(2) - n.at(0)), ""};
         }},
        {19,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) + n.at(1)) + " fish", " fish"};
         }},
        {20,
         [](auto &, auto &m, int32_t) {
             return Expectation{Money(m.at(0) - m.at(1)), ""};
         }},
        {21,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) + n.at(1) + n.at(2) + n.at(3)) + " inches", " inches"};
         }},
        {22,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(1000 - n.at(0)) + " leaves", " leaves"};
         }},
        {23,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) - n.at(1)), ""};
         }},
        {24,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) + n.at(1)), ""};
         }},
        {25,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) - 3), ""};
         }},
        {26,
         [](auto &, auto &, int32_t) {
             return Expectation{"3", ""};
         }},
        {27,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) + n.at(1) + n.at(2)) + " cars", " cars"};
         }},
        {28,
         [](auto &, auto &, int32_t) {
             return Expectation{"3", ""};
         }},
        {29,
         [](auto &, auto &, int32_t r) {
             return Expectation{r == 1 ? "2.5 miles" : "two and a half miles", ""};
         }},
        {30,
         [](auto &, auto &, int32_t) {
             return Expectation{"90", ""};
         }},
        {31,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0)), ""};
         }},
        // "{r1} people ... at {r3} Second Street.  {r2} people ... at {r4} ..."
        {32,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) + n.at(2)), ""};
         }},
        {33,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(1) - n.at(0)) + " inches", " inches"};
         }},
        {34,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) - n.at(1)) + " crayons", " crayons"};
         }},
        {35,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(1) + n.at(2) - n.at(0)) + " blocks", " blocks"};
         }},
        {36,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(1) - n.at(0)) + " degrees", " degrees"};
         }},
        {37,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) - n.at(1)) + " degrees", " degrees"};
         }},
        {38,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) + n.at(1) + n.at(2) + n.at(3)) + " copies", " copies"};
         }},
        {39,
         [](auto &, auto &m, int32_t) {
             return Expectation{Money(m.at(0) + m.at(1) + m.at(2)), ""};
         }},
        {40,
         [](auto &n, auto &, int32_t) {
             return Expectation{S(n.at(0) + n.at(1)) + " minutes", " minutes"};
         }},
    };
    return solvers;
}

class Bank1to40 : public ::testing::Test {
protected:
    void SetUp() override { drilltest::PrepareDrill(); }
};

TEST_F(Bank1to40, CorrectEntryFollowsFromTheText) {
    for (const auto &[number, solve] : Solvers()) {
        for (int32_t randomizer = 1; randomizer <= 3; ++randomizer) {
            for (uint32_t seed = 1; seed <= 60; ++seed) {
                RuntimeRandomSeed(seed * 104729u + static_cast<uint32_t>(number * 31 + randomizer));
                Build(number, randomizer);
                const std::string text = ProblemText();
                const Expectation e = solve(NumbersIn(text), MoneyIn(text), randomizer);
                ASSERT_EQ(CorrectText(), e.correct) << "problem " << number << ": " << text;
                if (!e.unit.empty()) {
                    for (int32_t i = 1; i <= 10; ++i) {
                        const std::string a = Answer(i);
                        ASSERT_GE(a.size(), e.unit.size());
                        ASSERT_EQ(a.substr(a.size() - e.unit.size()), e.unit)
                            << "problem " << number;
                    }
                }
            }
        }
    }
}

TEST_F(Bank1to40, OffsetListsMoveWithTheValue) {
    // Problem 3 with its three lists, checked entry by entry against the
    // number of cards in the text.
    const int32_t lists[3][10] = {
        {5, 7, 1, -2, -5, 0, 3, -3, 6, -6},
        {1, 2, 3, 6, -2, -3, 4, 0, 5, -1},
        {5, 4, -4, 3, -3, 2, -2, 1, -1, 0},
    };
    bool sawFive = false;
    for (uint32_t seed = 1; seed <= 200; ++seed) {
        for (int32_t r = 1; r <= 3; ++r) {
            RuntimeRandomSeed(seed);
            Build(3, r);
            const int32_t cards = NumbersIn(ProblemText()).at(0);
            ASSERT_GE(cards, 5);
            ASSERT_LE(cards, 10);
            for (int32_t i = 0; i < 10; ++i)
                ASSERT_EQ(Answer(i + 1), S(cards - 2 + lists[r - 1][i]));
            if (cards == 5 && r == 1) {
                // A wrong entry below zero shows as it comes.
                EXPECT_EQ(Answer(10), "-3");
                sawFive = true;
            }
        }
    }
    EXPECT_TRUE(sawFive);
}

TEST_F(Bank1to40, TeaserAndFixedListsReadAsWritten) {
    RuntimeRandomSeed(3);
    Build(14, 2);
    EXPECT_EQ(ProblemText().substr(0, 14), "Five boys ate ");
    EXPECT_NE(ProblemText().find(" hamburgers at 11 o'clock on fourth street.  How many nickels do "
                                 "you need to have a dozen?"),
              std::string::npos);
    const std::string r1 = S(NumbersIn(ProblemText()).at(0));
    const char *fixed[10] = {"2", "4", "1", "13", "22", ".05", "11", "12", nullptr, "5"};
    for (int32_t i = 0; i < 10; ++i)
        EXPECT_EQ(Answer(i + 1), fixed[i] ? fixed[i] : r1);

    Build(29, 2);
    // Its second list holds "three miles" twice; only the position decides.
    EXPECT_EQ(Answer(3), "three miles");
    EXPECT_EQ(Answer(7), "three miles");
    EXPECT_EQ(P().iCorrectAnswerIs, 2);
}

TEST_F(Bank1to40, ListsOfNumbersStandOnLinesOfTheirOwn) {
    for (int32_t number : {15, 16, 17, 18}) {
        RuntimeRandomSeed(static_cast<uint32_t>(number));
        Build(number, 1);
        const std::string text = ProblemText();
        const auto n = NumbersIn(text);
        ASSERT_EQ(n.size(), 3u);
        const std::string tail = "\r\n" + S(n[0]) + "\r\n" + S(n[1]) + "\r\n" + S(n[2]) + "\r\n";
        ASSERT_GE(text.size(), tail.size());
        EXPECT_EQ(text.substr(text.size() - tail.size()), tail) << number;
        EXPECT_EQ(text.find('\n'), text.find("\r\n") + 1);
    }
}

TEST_F(Bank1to40, FixedPronounsForBoysAndGirlsProblems) {
    for (uint32_t seed = 1; seed <= 50; ++seed) {
        RuntimeRandomSeed(seed);
        Build(10, 1);
        EXPECT_TRUE(NameIsMale(P().iName[1]));
        EXPECT_EQ(Drill().sGender.ToStd(), "male");
        Build(11, 1);
        EXPECT_FALSE(NameIsMale(P().iName[1]));
        EXPECT_EQ(ProblemText().find(" he "), std::string::npos);
    }
}

TEST_F(Bank1to40, PriceDifferenceNeverShowsBelowACent) {
    // Problem 5: every value below 1 is replaced by a made-up sum from
    // $30.00 to $50.00, whatever the position.
    for (uint32_t seed = 1; seed <= 300; ++seed) {
        for (int32_t r = 1; r <= 3; ++r) {
            RuntimeRandomSeed(seed);
            Build(5, r);
            const auto m = MoneyIn(ProblemText());
            const int32_t T = std::abs(m.at(0) - m.at(1));
            for (int32_t i = 1; i <= 10; ++i) {
                const auto v = MoneyIn(Answer(i));
                ASSERT_EQ(v.size(), 1u) << Answer(i);
                ASSERT_GE(v[0], 1);
            }
            if (T >= 1)
                ASSERT_EQ(CorrectText(), Money(T));
            else
                ASSERT_GE(MoneyIn(CorrectText()).at(0), 3000);
        }
    }
}

// The draws of a problem, in the order the bank lists them, predicted by the
// reference generator; the text built from them must match word for word.
TEST_F(Bank1to40, DrawsComeInTheBanksOrder) {
    for (uint32_t seed : {11u, 222u, 3333u, 44444u}) {
        // Problem 4: name1; r1: 10..250; r2: 1..250.
        ResetForSelection();
        RuntimeRandomSeed(seed);
        drilltest::ReferenceRnd ref(seed);
        Build(4, 2);
        const int32_t name = static_cast<int32_t>(ref.Next() * 61);
        int32_t r1 = ref.To(250);
        while (r1 < 10)
            r1 = ref.To(250);
        const int32_t r2 = ref.To(250);
        const std::string who = NameAt(name).ToStd();
        const std::string he = NameIsMale(name) ? "He" : "She";
        EXPECT_EQ(ProblemText(), who + " has " + S(r1) + " blue marbles.  " + he +
                                     " bought a bag that contained " + S(r2) +
                                     " more blue marbles.  How many blue marbles does " + who +
                                     " have?");
        EXPECT_EQ(Answer(3), S(r1 + r2));

        // Problem 40: name1; r1 and r2 redrawn up to 4 times while below 45;
        // r3 picks the instrument.
        ResetForSelection();
        RuntimeRandomSeed(seed);
        drilltest::ReferenceRnd ref40(seed);
        Build(40, 1);
        const int32_t name40 = static_cast<int32_t>(ref40.Next() * 61);
        auto retry = [&] {
            int32_t v = ref40.To(60);
            for (int i = 0; i < 4 && v < 45; ++i)
                v = ref40.To(60);
            return v < 45 ? 45 : v;
        };
        const int32_t a = retry();
        const int32_t b = retry();
        const char *instruments[4] = {"guitar", "trumpet", "drums", "saxophone"};
        const std::string instrument = instruments[ref40.To(4) - 1];
        const std::string who40 = NameAt(name40).ToStd();
        EXPECT_EQ(ProblemText(), who40 + " practiced playing the " + instrument + " for " + S(a) +
                                     " minutes on Monday.  " + (NameIsMale(name40) ? "He" : "She") +
                                     " practiced " + S(b) +
                                     " minutes on Wednesday.  How many minutes did " + who40 +
                                     " practice total?");
        EXPECT_EQ(Answer(9), S(a + b) + " minutes");
    }
}

TEST_F(Bank1to40, ShoppingProblemDrawsNameItemThenPrice) {
    for (uint32_t seed : {5u, 55u, 555u}) {
        ResetForSelection();
        RuntimeRandomSeed(seed);
        drilltest::ReferenceRnd ref(seed);
        Build(20, 3);
        const int32_t name = static_cast<int32_t>(ref.Next() * 61);
        const int32_t item = static_cast<int32_t>(ref.Next() * 51);
        int32_t price = static_cast<int32_t>(ref.Next() * ItemMax(item));
        for (int redraws = 0; price < ItemMin(item);) {
            price = static_cast<int32_t>(ref.Next() * ItemMax(item));
            if (++redraws == 5) {
                price = ItemMin(item);
                break;
            }
        }
        const std::string he = NameIsMale(name) ? "he" : "she";
        EXPECT_EQ(ProblemText(), NameAt(name).ToStd() + " had $32.00.  Yesterday " + he +
                                     " bought " + ItemAt(item).ToStd() + " for " + Money(price) +
                                     ".  How much did " + he + " have left?");
        EXPECT_EQ(P().iPrice, price);
        EXPECT_EQ(Answer(6), Money(3200 - price));
        EXPECT_EQ(Answer(1), Money(2780 - price));
        EXPECT_EQ(Answer(4), Answer(1)); // the list holds 2780 twice
    }
}

} // namespace
