// Problems 61 to 87: each problem's model from its own slots and text, then
// every arrangement over many seeds, and the cases these problems are known
// for (truncated division, the list orders, rounding, the driver, the
// melting cubes).
#include "bank_model.h"

#include <gtest/gtest.h>

namespace banktest {
namespace {

std::string Word(int32_t r, std::initializer_list<const char *> words) {
    return *(words.begin() + (r - 1));
}

Model P61(Gen &g) {
    const int32_t r1 = g.Retry(600, 300, 3, 315);
    const std::string w = Word(g.To(3), {"Plains", "City Magnet", "Cardinal"});
    Model m{"There are " + S(r1 * 7) + " text books currently on loan to students at " + w +
                " Junior High.  If each student gets 7 books how many students are there?",
            "divide", r1};
    m.unit = " students";
    return m;
}

Model P62(Gen &g) {
    const int32_t r1 = g.Retry(99, 20, 3, 26);
    const std::string w = Word(g.To(3), {"a marker", "a pen", "a pencil"});
    Model m{"If " + w + " costs " + Money(r1) + " each how many can you buy for $10.00?", "divide",
            1000 / r1};
    m.r1 = r1;
    return m;
}

Model P63(Gen &g) {
    const int32_t r1 = g.Retry(5, 2, 2, 3);
    Model m{"Each day 3 students are picked to help move " + S(r1) +
                " mats in the gym at 11 o'clock.  How many mats were moved each day last week?",
            "multiply", r1};
    m.r1 = r1;
    return m;
}

Model P64(Gen &g) {
    const int32_t r1 = g.Retry(15, 2, 3, 2);
    Model m{"Side 3 of a square is " + S(r1) +
                " inches long.  What is the perimeter of the square?",
            "multiply", r1 * 4};
    m.unit = " inches";
    return m;
}

Model P65(Gen &g) {
    int32_t r1 = g.Retry(18, 6, 3, 8);
    const int32_t r2 = g.Retry(24, 4, 3, 6);
    if (r1 == r2)
        ++r1;
    const int32_t big = std::max(r1, r2), small = std::min(r1, r2);
    Model m{"The long side of the rectangle is " + S(big) +
                " inches.  The short side of the rectangle is " + S(small) +
                " inches.  What is the perimeter?",
            "multiply and add", 2 * big + 2 * small};
    m.unit = " inches";
    return m;
}

Model P66(Gen &g) {
    const std::string n1 = g.Name(), n2 = g.Name(), n3 = g.Name();
    const int32_t r1 = g.Retry(5, 2, 3, 6);
    return {n1 + ", " + n2 + ", and " + n3 + " each have " + S(r1) +
                " sticks of gum.  How many sticks of gum do they have total?",
            "multiply", 3 * r1};
}

Model P67(Gen &g) {
    const std::string n1 = g.Name(), n2 = g.Name(), n3 = g.Name();
    const int32_t r1 = g.Retry(100, 70, 3, 75), r2 = g.Retry(100, 70, 3, 85),
                  r3 = g.Retry(100, 70, 3, 90);
    Model m{"On a recent test " + n1 + " scored " + S(r1) + ", " + n2 + " scored " + S(r2) +
                ", and " + n3 + " scored " + S(r3) +
                ".  What was the average score?  (Truncate decimals.  Do not round.)",
            "add then divide", (r1 + r2 + r3) / 3};
    m.unit = " points";
    return m;
}

Model P68(Gen &g) {
    const int32_t r1 = g.Retry(59, 30, 3, 60), r2 = g.Retry(60, 30, 3, 50),
                  r3 = g.Retry(60, 30, 3, 55);
    const std::string w = g.To(2) == 1 ? "race car" : "horse";
    Model m{"The " + w + " made 3 laps of the track.  The times were: " + S(r1) + " seconds, " +
                S(r2) + " seconds, and " + S(r3) +
                " seconds.  What was the average time to complete a lap?  (Truncate decimals.  Do "
                "not round.)",
            "add then divide", (r1 + r2 + r3) / 3};
    m.unit = " seconds";
    return m;
}

Model P69(Gen &g) {
    const int32_t r1 = g.To(100), r2 = g.To(100), r3 = g.Or(100, 5, 5), r4 = g.To(100);
    return {"Average the following list of numbers.  Exclude the 3rd number from all calculations. "
            " (Truncate "
            "decimals.  Do not round.)\r\n" +
                S(r1) + "\r\n" + S(r2) + "\r\n25\r\n" + S(r3) + "\r\n" + S(r4),
            "add then divide", (r1 + r2 + r3 + r4) / 4};
}

Model P70(Gen &g) {
    const int32_t r1 = g.Retry(11, 3, 3, 12);
    Model m{"Each carton of eggs contains one dozen eggs.  The store had " + S(r1) +
                " cartons left on the shelf.  How many eggs were there in all?",
            "multiply", 12 * r1};
    m.unit = " eggs";
    return m;
}

Model P71(Gen &g) {
    const std::string n1 = g.Name();
    const int32_t r1 = g.Retry(124, 50, 3, 125);
    Model m{n1 + " needs to buy 2 ink pens.  Each ink pen costs " + Money(r1) +
                ".  How much money does " + n1 + " need.",
            "multiply", 2 * r1};
    m.money = true;
    return m;
}

Model P72(Gen &g) {
    const std::string n1 = g.Name();
    const int32_t r1 = g.Retry(2500, 1000, 3, 1200);
    Model m{n1 + "'s bill came to " + Money(r1) +
                ".  The cashier then took 20% off the total.  How much did " + n1 +
                " pay?  (Truncate the result of the discount.  Do not round.)",
            "multiply or divide then subtract", r1 - r1 / 5};
    m.money = true;
    m.r1 = r1;
    return m;
}

Model P73(Gen &g) {
    const int32_t r1 = g.To(9), r2 = g.To(9), r3 = g.To(9), r4 = g.To(9);
    const int32_t a = r1 + (r2 >= 5 ? 1 : 0), b = r3 + (r4 >= 5 ? 1 : 0);
    Model m{"Round the following two numbers to the nearest whole number and multiply them: " +
                S(r1) + "." + S(r2) + " , " + S(r3) + "." + S(r4) + " .",
            "round and multiply", a * b};
    m.r1 = r1 * 1000 + r2 * 100 + r3 * 10 + r4; // the four digits, for the cases below
    return m;
}

Model P74(Gen &g) {
    const int32_t r1 = g.Or(5, 2, 6);
    const int32_t weeks = g.To(2) == 2 ? 4 : 3;
    Model m{"There are " + S(r1) +
                " snails in the fish tank.  The number of snails doubles each week.  How many "
                "snails will there be "
                "at the end of " +
                S(weeks) + " weeks?",
            "multi-part multiplication problem", weeks == 3 ? r1 * 8 : r1 * 16};
    m.unit = " snails";
    return m;
}

Model P75(Gen &g) {
    const std::string n1 = g.Name();
    const int32_t r1 = g.Or(9, 2, 10), r2 = g.Or(49, 10, 50);
    Model m{n1 + " was assigned the task of sorting tickets for the school fair.   " + g.He() +
                " was to divide " + S(r1 * r2) + " tickets evenly into " + S(r1) +
                " envelopes.  How many tickets did " + n1 + " put into each envelope?",
            "divide", r2};
    m.unit = " tickets";
    return m;
}

Model P76(Gen &g) {
    const int32_t r1 = g.To(10), r2 = g.To(10), r3 = g.To(500);
    return {"For the following list of 3 numbers multiply the first number by the third and then "
            "add the "
            "second.\r\n" +
                S(r1) + "\r\n" + S(r3) + "\r\n" + S(r2) + "\r\n",
            "multiply then add", r1 * r2 + r3};
}

Model P77(Gen &g) {
    const int32_t r1 = g.Or(9, 2, 10);
    Model m{"There are four quarts in a gallon.  How many quarts are there in " + S(r1) +
                " gallons.",
            "multiply", r1 * 4};
    m.unit = " quarts";
    return m;
}

Model P78(Gen &g) {
    const std::string n1 = g.Name(), n2 = g.Name(), n3 = g.Name();
    const int32_t r1 = g.To(10), r2 = g.To(10), r3 = g.To(10);
    const std::string w = Word(g.To(3), {" paper clips ", " collectors cards", " colored pencils"});
    return {n1 + " has " + S(r1 * 3) + w + ".  " + n2 + " has " + S(r2 * 3) + w + ".  " + n3 +
                " has " + S(r3 * 3) + w + ".  How many" + w +
                " would each person have if they were combined and then divided equally?",
            "add then divide", (3 * r1 + 3 * r2 + 3 * r3) / 3};
}

Model P79(Gen &g) {
    const int32_t r1 = g.Retry(50, 10, 3, 10), r2 = g.Retry(20, 10, 3, 11);
    const std::string w = Word(g.To(3), {" school office ", " local library ", " snack shop "});
    Model m{"The" + w + "receives " + S(r1) +
                " phone calls each day.  How many calls do they receive over a " + S(r2) +
                " day period?",
            "multiply", r1 * r2};
    m.unit = " calls";
    return m;
}

Model P80(Gen &g) {
    const int32_t T = g.To(100) + 200;
    Model m{
        "5 students ordered 2 pizzas at the one local pizza shop.  The total of the order was " +
            Money(T * 5) +
            ".  If the students were to split the bill evenly how much would each student pay?",
        "divide", T};
    m.money = true;
    return m;
}

Model P81(Gen &g) {
    const int32_t r1 = g.Or(9, 2, 10);
    Model m{"Each of the " + S(r1) +
                " taxis has three passengers.  How many people are in the taxis?",
            "don't forget the driver, multiply", r1 * 4};
    m.unit = " people";
    m.r1 = r1;
    return m;
}

Model P82(Gen &g) {
    const std::string n1 = g.Name();
    const int32_t t1 = g.To(500) + 500;
    Model m{n1 + " puts " + Money(t1) +
                " into a savings account each month.  How much money will " + g.he() +
                " have saved in 1 year?",
            "multiply", t1 * 12};
    m.money = true;
    return m;
}

Model P83(Gen &g) {
    const std::string n1 = g.Name();
    const int32_t r1 = g.Retry(20, 5, 3, 7);
    return {
        "If " + n1 + " were to exchange " + Money(r1 * 25) +
            " in mixed currency for the same amount of money in quarters how many quarters would " +
            g.he() + " receive?",
        "divide", r1};
}

Model P84(Gen &g) {
    const int32_t r1 = g.Retry(100, 10, 3, 11);
    Model m{"If each picnic table can seat 8 people how many tables will be needed for " +
                S(r1 * 8) + " people?",
            "divide", r1};
    m.unit = " tables";
    return m;
}

Model P85(Gen &g) {
    const std::string n1 = g.Name();
    const int32_t r1 = g.Retry(20, 10, 3, 21);
    Model m{n1 +
                " needs to find the perimeter of the room in inches.  The room is square.  One "
                "wall is " +
                S(r1) + " feet wide.  What is the distance around the room?",
            "multi-part multiplication", r1 * 48};
    m.unit = " inches";
    m.r1 = r1;
    return m;
}

Model P86(Gen &g) {
    const std::string n1 = g.Name();
    const int32_t t1 = g.To(3) + 4;
    const int32_t r2 = g.To(12);
    Model m{n1 + " found that it takes " + S(t1) +
                " minutes for an ice cube to melt at the current temperature.  If 3 ice cubes were "
                "gotten out of the "
                "freezer at " +
                S(r2) + ":00 what time will it be when the last ice cube has melted?",
            "3 cubes make 1 group, multiply by 1", 0};
    m.fill = {{"{r2}", S(r2)},
              {"{t1+1}", S(t1 + 1)},
              {"{t1+2}", S(t1 + 2)},
              {"{t1*3}", S(t1 * 3)},
              {"{t1}", S(t1)}};
    return m;
}

Model P87(Gen &g) {
    const std::string n1 = g.Name();
    const int32_t r1 = g.Retry(5, 2, 3, 6);
    Model m{"There are 60 minutes in an hour.  " + n1 + " wants to know how many seconds are in " +
                S(r1) + " hours.  How many seconds are there in " + S(r1) + " hours?",
            "multi-part multiplication", r1 * 3600};
    m.unit = " seconds";
    m.r1 = r1;
    return m;
}

const RegisterModel kRegistered[] = {
    {61, P61}, {62, P62}, {63, P63}, {64, P64}, {65, P65}, {66, P66}, {67, P67},
    {68, P68}, {69, P69}, {70, P70}, {71, P71}, {72, P72}, {73, P73}, {74, P74},
    {75, P75}, {76, P76}, {77, P77}, {78, P78}, {79, P79}, {80, P80}, {81, P81},
    {82, P82}, {83, P83}, {84, P84}, {85, P85}, {86, P86}, {87, P87},
};

class Bank61to87 : public ::testing::TestWithParam<int32_t> {};

TEST_P(Bank61to87, TextTipEntriesAndDrawsFollowTheBank) {
    CheckProblem(GetParam(), Models().at(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Problems, Bank61to87, ::testing::Range(61, 88));

class Bank61to87Cases : public ::testing::Test {
protected:
    void SetUp() override { PrepareDrill(); }
    void BuildFrom(int32_t number, uint32_t seed, int32_t randomizer) {
        sumbrook::ResetForSelection();
        RuntimeRandomSeed(seed);
        Build(number, randomizer);
    }
    static std::string Text() { return sumbrook::P().sProblemString.ToStd(); }
    static std::string Correct() { return Entry(sumbrook::P().iCorrectAnswerIs); }
};

// $0.26 a marker buys 38 of them for $10.00: the division truncates.
TEST_F(Bank61to87Cases, MarkersForTenDollarsTruncate) {
    const uint32_t seed = FindSeed(P62, [](const Model &m, Gen &) { return m.r1 == 26; });
    ASSERT_NE(seed, 0u);
    BuildFrom(62, seed, 1);
    EXPECT_NE(Text().find(" costs $0.26 each"), std::string::npos);
    EXPECT_EQ(Correct(), "38");
}

// The third line of the list is always 25 and r3 stands fourth; the
// average leaves the 25 out.
TEST_F(Bank61to87Cases, AverageLeavesTheThirdLineOut) {
    for (uint32_t seed = 1; seed <= 200; ++seed) {
        BuildFrom(69, seed, 2);
        const std::string t = Text();
        const size_t head = t.find("Do not round.)\r\n");
        ASSERT_NE(head, std::string::npos);
        std::vector<int32_t> lines;
        for (size_t at = head + 16; at <= t.size();) {
            size_t end = t.find("\r\n", at);
            if (end == std::string::npos)
                end = t.size();
            lines.push_back(std::stoi(t.substr(at, end - at)));
            at = end + 2;
        }
        ASSERT_EQ(lines.size(), 5u) << t;
        EXPECT_EQ(lines[2], 25);
        EXPECT_EQ(lines[3], sumbrook::P().iRandom[3]);
        EXPECT_GE(lines[3], 5);
        EXPECT_EQ(Correct(), S((lines[0] + lines[1] + lines[3] + lines[4]) / 4));
    }
}

// "9.5 , 3.2 ." rounds to 10 and 3: the text keeps the digits as drawn.
TEST_F(Bank61to87Cases, RoundingHappensAfterTheText) {
    const uint32_t seed = FindSeed(P73, [](const Model &m, Gen &) { return m.r1 == 9532; });
    ASSERT_NE(seed, 0u);
    BuildFrom(73, seed, 3);
    EXPECT_NE(Text().find("multiply them: 9.5 , 3.2 ."), std::string::npos) << Text();
    EXPECT_EQ(Correct(), "30");
    EXPECT_EQ(sumbrook::P().iCorrectAnswerIs, 6);
}

// The list shows r1, r3, r2: the second line is the number to add.
TEST_F(Bank61to87Cases, ListShowsTheAddendSecond) {
    for (uint32_t seed = 1; seed <= 200; ++seed) {
        BuildFrom(76, seed, 1);
        const auto &p = sumbrook::P();
        const std::string tail =
            "\r\n" + S(p.iRandom[1]) + "\r\n" + S(p.iRandom[3]) + "\r\n" + S(p.iRandom[2]) + "\r\n";
        ASSERT_GE(Text().size(), tail.size());
        EXPECT_EQ(Text().substr(Text().size() - tail.size()), tail);
        EXPECT_EQ(Correct(), S(p.iRandom[1] * p.iRandom[2] + p.iRandom[3]));
    }
}

// The collection word keeps its blanks: " paper clips " leaves a blank
// before the full stop and after "How many".
TEST_F(Bank61to87Cases, CollectionWordKeepsItsBlanks) {
    const uint32_t seed = FindSeed(P78, [](const Model &m, Gen &) {
        return m.text.find(" paper clips ") != std::string::npos &&
               m.text.find("has 9 paper") != std::string::npos;
    });
    ASSERT_NE(seed, 0u);
    BuildFrom(78, seed, 1);
    EXPECT_NE(Text().find("has 9 paper clips ."), std::string::npos) << Text();
    EXPECT_NE(Text().find("How many paper clips  would each"), std::string::npos) << Text();
}

// The driver counts: r1 taxis carry r1 x 4 people, and r1 x 3 is offered as
// a wrong entry in every arrangement.
TEST_F(Bank61to87Cases, TaxisCountTheDriver) {
    for (uint32_t seed = 1; seed <= 100; ++seed) {
        for (int32_t randomizer = 1; randomizer <= 3; ++randomizer) {
            BuildFrom(81, seed, randomizer);
            const int32_t r1 = sumbrook::P().iRandom[1];
            ASSERT_EQ(Correct(), S(r1 * 4) + " people");
            bool withoutDrivers = false;
            for (int32_t i = 1; i <= 10; ++i)
                withoutDrivers = withoutDrivers || (i != sumbrook::P().iCorrectAnswerIs &&
                                                    Entry(i) == S(r1 * 3) + " people");
            EXPECT_TRUE(withoutDrivers);
        }
    }
}

// Three cubes melt side by side: the answer is one cube's time after the
// hour, and the tripled time is a wrong entry.
TEST_F(Bank61to87Cases, CubesMeltTogether) {
    for (uint32_t seed = 1; seed <= 100; ++seed) {
        for (int32_t randomizer = 1; randomizer <= 3; ++randomizer) {
            BuildFrom(86, seed, randomizer);
            const int32_t t1 = sumbrook::P().iTemp[1], r2 = sumbrook::P().iRandom[2];
            ASSERT_GE(t1, 5);
            ASSERT_LE(t1, 7);
            EXPECT_EQ(Correct(), S(r2) + ":0" + S(t1));
            bool tripled = false;
            for (int32_t i = 1; i <= 10; ++i)
                tripled = tripled || Entry(i) == S(r2) + ":" + S(t1 * 3);
            EXPECT_TRUE(tripled);
        }
    }
}

// The wall's own length is among problem 85's wrong entries, and
// 60 x r1 x r1 among problem 87's.
TEST_F(Bank61to87Cases, TemptingWrongEntries) {
    for (uint32_t seed = 1; seed <= 60; ++seed) {
        for (int32_t randomizer = 1; randomizer <= 3; ++randomizer) {
            BuildFrom(85, seed, randomizer);
            int32_t r1 = sumbrook::P().iRandom[1];
            int found = 0;
            for (int32_t i = 1; i <= 10; ++i)
                found += Entry(i) == S(r1) + " inches";
            EXPECT_EQ(found, 1);
            EXPECT_EQ(Correct(), S(r1 * 48) + " inches");
            BuildFrom(87, seed, randomizer);
            r1 = sumbrook::P().iRandom[1];
            found = 0;
            for (int32_t i = 1; i <= 10; ++i)
                found += Entry(i) == S(60 * r1 * r1) + " seconds";
            EXPECT_GE(found, 1);
            EXPECT_EQ(Correct(), S(r1 * 3600) + " seconds");
        }
    }
}

// The second arrangement of problem 66 holds a plain "0" that does not move
// with the draw, beside the correct value.
TEST_F(Bank61to87Cases, GumListHoldsAPlainZero) {
    for (uint32_t seed = 1; seed <= 50; ++seed) {
        BuildFrom(66, seed, 2);
        EXPECT_EQ(Entry(3), "0");
        EXPECT_EQ(Correct(), S(3 * sumbrook::P().iRandom[1]));
        EXPECT_EQ(sumbrook::P().iCorrectAnswerIs, 7);
    }
}

// Two rectangle sides never come out equal: a tie lengthens the first.
TEST_F(Bank61to87Cases, RectangleSidesDiffer) {
    uint32_t tie = 0;
    int32_t side = 0;
    for (uint32_t s = 1; s < 200000 && tie == 0; ++s) {
        Gen g(s);
        const int32_t a = g.Retry(18, 6, 3, 8), b = g.Retry(24, 4, 3, 6);
        if (a == b) {
            tie = s;
            side = a;
        }
    }
    ASSERT_NE(tie, 0u);
    BuildFrom(65, tie, 2);
    EXPECT_NE(Text().find("long side of the rectangle is " + S(side + 1) +
                          " inches.  The short side of the rectangle is " + S(side) + " inches."),
              std::string::npos)
        << Text();
    EXPECT_EQ(Correct(), S(4 * side + 2) + " inches");
}

} // namespace
} // namespace banktest
