// Every problem of the bank, in every arrangement, over many draws: what a
// child reads must add up.  The correct entry is the answer worked out from
// the numbers the text shows, it stands at a position that does not move with
// the draw, and the text, tip and entries hold together.
#include "support/drill_bank_support.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <vector>

using namespace sumbrook;
using drilltest::Answer;
using drilltest::Build;
using drilltest::CorrectText;
using drilltest::MoneyIn;
using drilltest::NumbersIn;
using drilltest::ProblemText;

namespace {

using V = const std::vector<int32_t> &;
using Solve = std::string (*)(const std::string &text, V n, V m, int32_t arrangement);

std::string S(int32_t v) { return std::to_string(v); }
std::string Money(int32_t cents) { return fMoneyText(cents).ToStd(); }
// The exercise word of problem 48: "did sit ups three days".
std::string Exercise(const std::string &t) {
    const size_t from = t.find(" did ") + 5;
    return t.substr(from, t.find(" three days") - from);
}

// What the text says the answer is, from its plain numbers n and its money
// amounts m in the order they stand, and what every entry ends with.
struct AnswerRow {
    int32_t number;
    Solve correct;
    const char *unit;
};

// Problem 5 is left to its own test below: its answer may be replaced.
const AnswerRow kAnswers[] = {
    {1, [](auto &, V, V m, int32_t) { return Money(m.at(0) - m.at(1)); }, ""},
    {2, [](auto &, V, V, int32_t r) { return std::string(r == 2 ? "three items" : "3 items"); },
     ""},
    {3, [](auto &, V n, V, int32_t) { return S(n.at(0) - 2); }, ""},
    {4, [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(1)); }, ""},
    {6, [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(1) + n.at(2) + n.at(3)); }, ""},
    {7, [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(1) + n.at(2)) + " bugs"; }, " bugs"},
    {8, [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(1)) + " beans"; }, " beans"},
    {9, [](auto &, V, V m, int32_t) { return Money(m.at(1) - m.at(0)); }, ""},
    {10,
     [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(1) + n.at(2) + n.at(3)) + " birds"; },
     " birds"},
    {11, [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(1) - n.at(2)) + " pencils"; },
     " pencils"},
    {12, [](auto &, V n, V, int32_t) { return S(n.at(0)); }, ""},
    // "{r1} boards that are 6 feet long and {r2} boards that are 8 feet"
    {13, [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(2)) + " boards"; }, " boards"},
    {14, [](auto &, V, V, int32_t) { return std::string("12"); }, ""},
    {15, [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(1)); }, ""},
    {16, [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(2)); }, ""},
    {17, [](auto &, V n, V, int32_t) { return S(n.at(0) - n.at(2)); }, ""},
    {18, [](auto &, V n, V, int32_t) { return S(n.at(1) + n.at(2) - n.at(0)); }, ""},
    {19, [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(1)) + " fish"; }, " fish"},
    {20, [](auto &, V, V m, int32_t) { return Money(m.at(0) - m.at(1)); }, ""},
    {21,
     [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(1) + n.at(2) + n.at(3)) + " inches"; },
     " inches"},
    {22, [](auto &, V n, V, int32_t) { return S(1000 - n.at(0)) + " leaves"; }, " leaves"},
    {23, [](auto &, V n, V, int32_t) { return S(n.at(0) - n.at(1)); }, ""},
    {24, [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(1)); }, ""},
    {25, [](auto &, V n, V, int32_t) { return S(n.at(0) - 3); }, ""},
    {26, [](auto &, V, V, int32_t) { return std::string("3"); }, ""},
    {27, [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(1) + n.at(2)) + " cars"; }, " cars"},
    {28, [](auto &, V, V, int32_t) { return std::string("3"); }, ""},
    {29,
     [](auto &, V, V, int32_t r) {
         return std::string(r == 1 ? "2.5 miles" : "two and a half miles");
     },
     ""},
    {30, [](auto &, V, V, int32_t) { return std::string("90"); }, ""},
    {31, [](auto &, V n, V, int32_t) { return S(n.at(0)); }, ""},
    // "{r1} people ... at {r3} Second Street.  {r2} people ... at {r4} ..."
    {32, [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(2)); }, ""},
    {33, [](auto &, V n, V, int32_t) { return S(n.at(1) - n.at(0)) + " inches"; }, " inches"},
    {34, [](auto &, V n, V, int32_t) { return S(n.at(0) - n.at(1)) + " crayons"; }, " crayons"},
    {35, [](auto &, V n, V, int32_t) { return S(n.at(1) + n.at(2) - n.at(0)) + " blocks"; },
     " blocks"},
    {36, [](auto &, V n, V, int32_t) { return S(n.at(1) - n.at(0)) + " degrees"; }, " degrees"},
    {37, [](auto &, V n, V, int32_t) { return S(n.at(0) - n.at(1)) + " degrees"; }, " degrees"},
    {38,
     [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(1) + n.at(2) + n.at(3)) + " copies"; },
     " copies"},
    {39, [](auto &, V, V m, int32_t) { return Money(m.at(0) + m.at(1) + m.at(2)); }, ""},
    {40, [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(1)) + " minutes"; }, " minutes"},
    {41, [](auto &, V n, V, int32_t) { return S(n.at(0) - n.at(1)); }, ""},
    {42, [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(1) + n.at(2) + n.at(3)) + " feet"; },
     " feet"},
    {43, [](auto &, V n, V, int32_t) { return S(n.at(0) - n.at(1)) + " calculators"; },
     " calculators"},
    {44, [](auto &, V n, V, int32_t) { return S(n.at(0) - n.at(1) - n.at(2) - n.at(3)); }, ""},
    {45, [](auto &, V n, V, int32_t) { return S(n.at(0) - n.at(1) - n.at(2) - n.at(3)); }, ""},
    {46, [](auto &, V n, V, int32_t) { return S(std::abs(n.at(0) + n.at(1) + n.at(2) - n.at(3))); },
     ""},
    {47, [](auto &, V n, V, int32_t) { return S(n.at(1) + n.at(2) + n.at(3)) + " pounds"; },
     " pounds"},
    {48,
     [](auto &t, V n, V, int32_t) { return S(n.at(0) + n.at(1) + n.at(2)) + " " + Exercise(t); },
     ""},
    // "1 gallon of milk, 1 loaf of bread, a carton of eggs, and {r1} pie crusts"
    {49, [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(1) + 1 + n.at(2)) + " items"; },
     " items"},
    // "2 cartons of milk, 1 loaf of bread, a 2 pound brick of cheese, and {r1} pie crusts"
    {50, [](auto &, V n, V, int32_t) { return S(n.at(0) + n.at(1) + 1 + n.at(3)) + " items"; },
     " items"},
    {51, [](auto &, V n, V, int32_t) { return S(n.at(1) / n.at(0)) + " marbles"; }, " marbles"},
    {52, [](auto &, V n, V, int32_t) { return S(3 * n.at(0)) + " books"; }, " books"},
    {53, [](auto &, V, V, int32_t) { return std::string("six"); }, ""},
    {54, [](auto &, V n, V, int32_t) { return S(n.at(0) * n.at(1)); }, ""},
    {55, [](auto &, V n, V, int32_t) { return S(7 * n.at(0)) + " miles"; }, " miles"},
    {56, [](auto &, V, V m, int32_t) { return Money(m.at(0) / 10); }, ""},
    {57, [](auto &, V, V m, int32_t) { return Money(m.at(0) / 4); }, ""},
    {58, [](auto &, V n, V, int32_t) { return S(n.at(0) * n.at(1)); }, ""},
    {59, [](auto &, V n, V, int32_t) { return S(n.at(0) * n.at(1)); }, ""},
    {60, [](auto &, V n, V, int32_t) { return S(n.at(0) / 7) + " miles"; }, " miles"},
    {61, [](auto &, V n, V, int32_t) { return S(n.at(0) / n.at(1)) + " students"; }, " students"},
    {62, [](auto &, V, V m, int32_t) { return S(m.at(1) / m.at(0)); }, ""},
    // "Each day 3 students are picked to help move {r1} mats"
    {63, [](auto &, V n, V, int32_t) { return S(n.at(1)); }, ""},
    {64, [](auto &, V n, V, int32_t) { return S(4 * n.at(1)) + " inches"; }, " inches"},
    {65, [](auto &, V n, V, int32_t) { return S(2 * n.at(0) + 2 * n.at(1)) + " inches"; },
     " inches"},
    {66, [](auto &, V n, V, int32_t) { return S(3 * n.at(0)); }, ""},
    {67, [](auto &, V n, V, int32_t) { return S((n.at(0) + n.at(1) + n.at(2)) / 3) + " points"; },
     " points"},
    {68, [](auto &, V n, V, int32_t) { return S((n.at(1) + n.at(2) + n.at(3)) / 3) + " seconds"; },
     " seconds"},
    // "Exclude the 3rd number ...\r\n{r1}\r\n{r2}\r\n25\r\n{r3}\r\n{r4}"
    {69, [](auto &, V n, V, int32_t) { return S((n.at(1) + n.at(2) + n.at(4) + n.at(5)) / 4); },
     ""},
    {70, [](auto &, V n, V, int32_t) { return S(12 * n.at(0)) + " eggs"; }, " eggs"},
    {71, [](auto &, V n, V m, int32_t) { return Money(n.at(0) * m.at(0)); }, ""},
    {72, [](auto &, V, V m, int32_t) { return Money(m.at(0) - m.at(0) / 5); }, ""},
    // "9.5 , 3.2 ." rounds to 10 times 3.
    {73,
     [](auto &, V n, V,
        int32_t) { return S((n.at(0) + (n.at(1) >= 5)) * (n.at(2) + (n.at(3) >= 5))); },
     ""},
    {74, [](auto &, V n, V, int32_t) { return S(n.at(0) << n.at(1)) + " snails"; }, " snails"},
    {75, [](auto &, V n, V, int32_t) { return S(n.at(0) / n.at(1)) + " tickets"; }, " tickets"},
    // "list of 3 numbers: multiply the first by the third and add the second"
    {76, [](auto &, V n, V, int32_t) { return S(n.at(1) * n.at(3) + n.at(2)); }, ""},
    {77, [](auto &, V n, V, int32_t) { return S(4 * n.at(0)) + " quarts"; }, " quarts"},
    {78, [](auto &, V n, V, int32_t) { return S((n.at(0) + n.at(1) + n.at(2)) / 3); }, ""},
    {79, [](auto &, V n, V, int32_t) { return S(n.at(0) * n.at(1)) + " calls"; }, " calls"},
    // Five students, written "5" or "Five" by the edition.
    {80, [](auto &, V, V m, int32_t) { return Money(m.at(0) / 5); }, ""},
    // Three passengers and the driver.
    {81, [](auto &, V n, V, int32_t) { return S(4 * n.at(0)) + " people"; }, " people"},
    {82, [](auto &, V, V m, int32_t) { return Money(12 * m.at(0)); }, ""},
    {83, [](auto &, V, V m, int32_t) { return S(m.at(0) / 25); }, ""},
    {84, [](auto &, V n, V, int32_t) { return S(n.at(1) / n.at(0)) + " tables"; }, " tables"},
    {85, [](auto &, V n, V, int32_t) { return S(48 * n.at(0)) + " inches"; }, " inches"},
    // The cubes melt side by side: one cube's minutes after the hour.
    {86, [](auto &, V n, V, int32_t) { return S(n.at(2)) + ":0" + S(n.at(0)); }, ""},
    {87, [](auto &, V n, V, int32_t) { return S(n.at(0) * 60 * n.at(1)) + " seconds"; },
     " seconds"},
};

// Name slots that must be a boy's or a girl's name, and slots of a family
// that must differ from each other.
struct PickRule {
    int32_t number;
    int32_t boySlot, girlSlot;     // 0 for none
    bool namesDiffer, itemsDiffer; // slots 1 to 3
};
const PickRule kPickRules[] = {
    {2, 0, 0, false, true},
    {10, 1, 0, false, false},
    {11, 0, 1, false, false},
    {44, 0, 1, false, false},
    {45, 1, 0, false, false},
    {52, 0, 0, true, false},
    // The corrected edition's own rules.
    {26, 0, 0, false, true},
    {39, 0, 0, false, true},
    {66, 0, 0, true, false},
    {67, 0, 0, true, false},
    {78, 0, 0, true, false},
};

bool EndsWith(const std::string &s, const std::string &tail) {
    return s.size() >= tail.size() && s.compare(s.size() - tail.size(), tail.size(), tail) == 0;
}
// " inches" for one inch is " inch": the units whose singular is not the
// plural less its s.
std::string SingularOf(const std::string &unit) {
    static const std::map<std::string, std::string> irregular = {
        {" inches", " inch"}, {" leaves", " leaf"},   {" feet", " foot"},
        {" copies", " copy"}, {" people", " person"}, {" fish", " fish"}};
    const auto it = irregular.find(unit);
    return it != irregular.end() ? it->second : unit.substr(0, unit.size() - 1);
}
// An entry carries the problem's unit; one of a thing carries it singular.
bool HasUnit(const std::string &entry, const std::string &unit) {
    return EndsWith(entry, unit) || (!unit.empty() && entry == "1" + SingularOf(unit));
}
// The corrected edition says "1 inch" where the classic one says "1 inches".
std::string InEdition(const std::string &entry, const std::string &unit) {
    if (Classic() || unit.empty() || entry != "1" + unit)
        return entry;
    return "1" + SingularOf(unit);
}

// What every built problem keeps, whatever its numbers.
void CheckShape(int32_t number) {
    const ProblemFields &p = P();
    const std::string text = ProblemText();
    ASSERT_FALSE(text.empty());
    ASSERT_NE(text.front(), ' ') << text;
    // A slot left empty shows as a run of blanks after a word, or as a lone
    // dollar sign; runs of blanks belong behind the end of a sentence.
    for (size_t at = text.find("  "); at != std::string::npos; at = text.find("  ", at)) {
        if (number != 78) { // its collection word carries blanks of its own
            ASSERT_TRUE(at > 0 && std::string(".?):").find(text[at - 1]) != std::string::npos)
                << text;
        }
        at = text.find_first_not_of(' ', at);
    }
    for (size_t at = text.find('$'); at != std::string::npos; at = text.find('$', at + 1))
        ASSERT_TRUE(at + 1 < text.size() && isdigit(static_cast<unsigned char>(text[at + 1])))
            << text;
    ASSERT_FALSE(drilltest::TipText().empty());
    ASSERT_GE(p.iCorrectAnswerIs, 1);
    ASSERT_LE(p.iCorrectAnswerIs, 10);
    for (int32_t i = 1; i <= 10; ++i) {
        ASSERT_NE(Answer(i), "stale") << "entry " << i;
        ASSERT_FALSE(Answer(i).empty()) << "entry " << i;
    }
    // Names and items come from their lists, and the last pick is the one
    // the memory holds.
    int32_t lastName = -1;
    for (int k = 1; k <= 5; ++k) {
        if (p.iName[k] >= 0) {
            ASSERT_LT(p.iName[k], kNameCount);
            ASSERT_EQ(p.sName[k].ToStd(), NameAt(p.iName[k]).ToStd());
            lastName = p.iName[k];
        } else {
            ASSERT_TRUE(p.sName[k].Empty());
        }
        if (p.iItem[k] >= 0) {
            ASSERT_LT(p.iItem[k], kItemCount);
            ASSERT_EQ(p.sItem[k].ToStd(), ItemAt(p.iItem[k]).ToStd());
            ASSERT_NE(text.find(p.sItem[k].ToStd()), std::string::npos) << "item " << k;
        }
    }
    if (lastName >= 0) {
        ASSERT_EQ(Drill().iLastName, lastName);
        ASSERT_EQ(Drill().sGender.ToStd(), NameIsMale(lastName) ? "male" : "female");
    }
}

class BankAnswers : public ::testing::Test {
protected:
    void SetUp() override { drilltest::PrepareDrill(); }

    // Builds over stale fields, so that a value left from before can't pass
    // for a new one.
    static void BuildFresh(int32_t number, int32_t arrangement, uint32_t seed) {
        ResetForSelection();
        RuntimeRandomSeed(seed);
        for (int32_t i = 0; i <= 10; ++i)
            P().sAnswerStrings.Set(i, "stale"_k);
        P().iCorrectAnswerIs = 0;
        Drill().sTip = Text();
        Build(number, arrangement);
    }
    static void CheckAnswerTable();
};

// Every edition's correct entry is the answer worked out from its own text.
TEST_F(BankAnswers, CorrectEntryIsTheAnswerToTheText) {
    for (bool classic : {true, false}) {
        drilltest::PrepareDrill(classic);
        CheckAnswerTable();
    }
}

void BankAnswers::CheckAnswerTable() {
    for (const AnswerRow &row : kAnswers) {
        std::string tip;
        for (int32_t arrangement = 1; arrangement <= 3; ++arrangement) {
            int32_t position = 0;
            for (uint32_t seed = 1; seed <= 40; ++seed) {
                BuildFresh(row.number, arrangement,
                           seed * 104729u + static_cast<uint32_t>(row.number));
                const std::string text = ProblemText();
                SCOPED_TRACE("problem " + S(row.number) + " arrangement " + S(arrangement) +
                             " seed " + S(seed) + ": " + text);
                CheckShape(row.number);
                if (HasFatalFailure())
                    return;
                ASSERT_EQ(CorrectText(),
                          InEdition(row.correct(text, NumbersIn(text), MoneyIn(text), arrangement),
                                    row.unit));
                // The right answer is offered once; a wrong one may repeat.
                int32_t copies = 0;
                for (int32_t i = 1; i <= 10; ++i) {
                    copies += Answer(i) == CorrectText();
                    ASSERT_TRUE(HasUnit(Answer(i), row.unit)) << Answer(i);
                }
                ASSERT_EQ(copies, 1);
                // The position and the tip belong to the arrangement, not the draw.
                if (position == 0)
                    position = P().iCorrectAnswerIs;
                ASSERT_EQ(P().iCorrectAnswerIs, position);
                if (tip.empty())
                    tip = drilltest::TipText();
                ASSERT_EQ(drilltest::TipText(), tip);
            }
        }
    }
}

TEST_F(BankAnswers, PickersKeepTheProblemsRules) {
    for (const PickRule &rule : kPickRules) {
        for (uint32_t seed = 1; seed <= 300; ++seed) {
            BuildFresh(rule.number, 1 + seed % 3, seed);
            SCOPED_TRACE("problem " + S(rule.number) + " seed " + S(seed));
            const ProblemFields &p = P();
            if (rule.boySlot) {
                ASSERT_TRUE(NameIsMale(p.iName[rule.boySlot]));
            }
            if (rule.girlSlot) {
                ASSERT_FALSE(NameIsMale(p.iName[rule.girlSlot]));
            }
            const int32_t *slots = rule.namesDiffer   ? p.iName
                                   : rule.itemsDiffer ? p.iItem
                                                      : nullptr;
            if (slots) {
                ASSERT_EQ((std::set<int32_t>{slots[1], slots[2], slots[3]}.size()), 3u);
            }
        }
    }
    // A boy's problem says "he" throughout, a girl's never does.
    for (uint32_t seed = 1; seed <= 50; ++seed) {
        BuildFresh(11, 1, seed);
        EXPECT_EQ(ProblemText().find(" he "), std::string::npos) << ProblemText();
    }
}

// Problem 5 never shows a price difference below a cent: in the classic
// edition such a value, the correct one included, becomes a made-up sum from
// $30.00 up; the corrected one never draws two equal prices.
TEST_F(BankAnswers, PriceDifferenceNeverShowsBelowACent) {
    drilltest::PrepareDrill(/*classic=*/true);
    bool sawEqualPrices = false;
    for (uint32_t seed = 1; seed <= 300; ++seed) {
        for (int32_t r = 1; r <= 3; ++r) {
            BuildFresh(5, r, seed);
            CheckShape(5);
            const auto m = MoneyIn(ProblemText());
            const int32_t T = std::abs(m.at(0) - m.at(1));
            for (int32_t i = 1; i <= 10; ++i)
                ASSERT_GE(MoneyIn(Answer(i)).at(0), 1) << Answer(i);
            if (T >= 1) {
                ASSERT_EQ(CorrectText(), Money(T));
            } else {
                ASSERT_GE(MoneyIn(CorrectText()).at(0), 3000);
                sawEqualPrices = true;
            }
        }
    }
    EXPECT_TRUE(sawEqualPrices);
    drilltest::PrepareDrill();
    for (uint32_t seed = 1; seed <= 900; ++seed) {
        BuildFresh(5, 1 + seed % 3, seed);
        const auto m = MoneyIn(ProblemText());
        ASSERT_NE(m.at(0), m.at(1)) << ProblemText();
        ASSERT_EQ(CorrectText(), Money(std::abs(m.at(0) - m.at(1))));
        ASSERT_NE(P().iItem[1], P().iItem[2]);
    }
}

// Built one after another as a round builds them, no problem picks the name
// the one before it picked last.
TEST_F(BankAnswers, NameMemoryCarriesAcrossProblems) {
    for (uint32_t seed = 11; seed <= 400; seed += 13) {
        ResetForSelection();
        RuntimeRandomSeed(seed);
        for (int32_t number = 1; number <= 87; ++number) {
            const int32_t before = Drill().iLastName;
            Build(number, 1 + (number + static_cast<int32_t>(seed)) % 3);
            if (P().iName[1] >= 0 && before != kNoProblem) {
                ASSERT_NE(P().iName[1], before) << "problem " << number << " seed " << seed;
            }
            for (int k = 2; k <= 5 && P().iName[k] >= 0; ++k)
                ASSERT_NE(P().iName[k], P().iName[k - 1]) << "problem " << number;
        }
    }
}

// A damaged arrangement number (outside 1 to 3) builds the first
// arrangement rather than reading past the lists.
TEST_F(BankAnswers, ArrangementOutOfRangeBuildsTheFirst) {
    // These problems still fall through to their third arrangement.
    const std::set<int32_t> thirdInstead = {2, 9, 14, 26, 28, 29, 30};
    for (int32_t number = 1; number <= 87; ++number) {
        if (thirdInstead.count(number))
            continue;
        for (int32_t damaged : {0, -1, 4, 1000}) {
            const uint32_t seed =
                977u * static_cast<uint32_t>(number) + static_cast<uint32_t>(damaged + 5);
            BuildFresh(number, 1, seed);
            std::vector<std::string> first{ProblemText(), S(P().iCorrectAnswerIs)};
            for (int32_t i = 1; i <= 10; ++i)
                first.push_back(Answer(i));
            BuildFresh(number, damaged, seed);
            std::vector<std::string> got{ProblemText(), S(P().iCorrectAnswerIs)};
            for (int32_t i = 1; i <= 10; ++i)
                got.push_back(Answer(i));
            ASSERT_EQ(got, first) << "problem " << number << " arrangement " << damaged;
        }
    }
}

// A block asked for a number outside its ten builds nothing and draws
// nothing.
TEST_F(BankAnswers, BlockIgnoresNumbersOutsideItsRange) {
    const std::pair<void (*)(int32_t), std::vector<int32_t>> blocks[] = {
        {mProb1to10, {0, 11, -3}}, {mProb11to20, {10, 21}}, {mProb21to30, {20, 31}},
        {mProb31to40, {30, 41}},   {mProb41to50, {40, 51}}, {mProb51to60, {50, 61, 99}},
        {mProb61to70, {60, 71}},   {mProb71to80, {70, 81}}, {mProb81to90, {80, 88, 89, 90}},
    };
    for (const auto &[block, numbers] : blocks) {
        for (int32_t number : numbers) {
            ResetForSelection();
            ClearWorkingFields();
            P().sProblemString = Text();
            P().iCorrectAnswerIs = 0;
            RuntimeRandomSeed(1234);
            const double expected = rnd();
            RuntimeRandomSeed(1234);
            block(number);
            EXPECT_TRUE(P().sProblemString.Empty()) << number;
            EXPECT_EQ(P().iCorrectAnswerIs, 0) << number;
            EXPECT_EQ(rnd(), expected) << number << " drew from the generator";
        }
    }
}

} // namespace
