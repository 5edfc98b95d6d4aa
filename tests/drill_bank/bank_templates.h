// The text of every problem of 41 to 87 as the bank writes it, with its
// slots in braces, and its tip.  The tests turn each template into a pattern
// and hold the drill's texts against it.
#pragma once

#include <cstdint>
#include <map>
#include <utility>

namespace banktest {

inline const std::map<int32_t, std::pair<const char *, const char *>> &BankTemplates() {
    static const std::map<int32_t, std::pair<const char *, const char *>> templates = {
        {41, {R"({name1} has a box that can hold 12 books.  There are {r1} already in the box.  How many more books can be put into the box?)", "subtract"}},
        {42, {R"({name1} measured the width of the walls in the classroom.  The wall mesasured: {r1} feet, {r1} feet, {r2} feet, and {r2} feet.  What is the distance around the room?)", "add"}},
        {43, {R"({name1}'s teacher received a case of 50 calculators for use in the science lab.  {r1} of the calculators had to be returned.  How many calculators did the class have to to begin working with?)", "subtract"}},
        {44, {R"({name1} needed to sell 20 boxes of cookies to meet her fund raising goal.  On Monday she sold {r1} boxes.  On Wednesday she sold {r2} boxes.  On Friday she sold {r3} boxes.  How many more boxes of cookies does {name1} need to sell to reach her goal?)", "add then subtract"}},
        {45, {R"({name1} needs to sell 25 cans of popcorn to meet his fund raising goal.  On Tuesday he sold {r1} cans.  On Wednesday he sold {r2} cans.  On Saturday he sold {r3} cans.  How many more cans of popcorn does {name1} need to sell to reach his goal?)", "add then subtract"}},
        {46, {R"(The school librarian received three packages containing video tapes.  The first package contained {r1} tapes.  The second package contained {r2} tapes.  The third package contained {r3} tapes.  The librarian will put them in a container that can hold up to 30 video tapes.  How many will she have left over?)", "add then subtract"}},
        {47, {R"({name1} has 3 sacks.  They weigh {r1} pounds, {r2} pounds, and {r3} pounds.  What would be the total weight if all three sacks were combined?)", "add"}},
        {48, {R"({name1} did {word} three days last week.  {He/She} did {r2} one day.  {He/She} did {r2} {word} the next day, and {r3} {word} the third day.  How many {word} did {name1} do total?)", "addition"}},
        {49, {R"({name1} purchased 1 gallon of milk, 1 loaf of bread, a carton of eggs, and {r1} pie crusts.  How many items did {name1} buy?)", "add"}},
        {50, {R"({name1} purchased 2 cartons of milk, 1 loaf of bread, a 2 pound brick of cheese, and {r1} pie crusts.  How many items did {name1} buy?)", "add"}},
        {51, {R"(There are {r1} students in the class.  If we were to split {t1} marbles evenly among all the students how many marbles would each student get?)", "divide"}},
        {52, {R"({name1}, {name2}, and {name3} each have {r1} books in their back packs.  What is the total number of books?)", "multiply"}},
        {53, {R"({name1} and {name2} have a dozen {word}.  How many {word} would each get if they were to share equally?)", "divide"}},
        {54, {R"(There are 4 tires on each car.  {name1} counted {r1} cars in the mall parking lot.  How many tires were there total?)", "multiply"}},
        {55, {R"(The train travels {r1} miles each day of the week.  How many miles does it travel each week?)", "multiply"}},
        {56, {R"({name1} found a shirt priced {$r1}.  The store was having a 10% off sale.  How much did {name1} save?  (Do not round.))", "multiply or divide"}},
        {57, {R"({name1} found shoes priced {$r1}.  The store was having a 25% off sale.  How much did {name1} save?  (Do not round.))", "multiply or divide"}},
        {58, {R"({r1} students attend {word} School.  If each student checks out 3 library books how many books will be checked out total?)", "multiply"}},
        {59, {R"(Students at {word} practice silent reading for 20 minutes each day.  How many minutes do they read over a period {r1} days?)", "multiply"}},
        {60, {R"(The local text book sales person travels {t1} miles a week.  If {he/she} travels the same distance each day how far does {he/she} travel each day?  (Calculate using a seven day week.))", "divide"}},
        {61, {R"(There are {t1} text books currently on loan to students at {word} Junior High.  If each student gets 7 books how many students are there?)", "divide"}},
        {62, {R"(If {word} costs {$r1} each how many can you buy for $10.00?)", "divide"}},
        {63, {R"(Each day 3 students are picked to help move {r1} mats in the gym at 11 o'clock.  How many mats were moved each day last week?)", "multiply"}},
        {64, {R"(Side 3 of a square is {r1} inches long.  What is the perimeter of the square?)", "multiply"}},
        {65, {R"(The long side of the rectangle is {t1} inches.  The short side of the rectangle is {t2} inches.  What is the perimeter?)", "multiply and add"}},
        {66, {R"({name1}, {name2}, and {name3} each have {r1} sticks of gum.  How many sticks of gum do they have total?)", "multiply"}},
        {67, {R"(On a recent test {name1} scored {r1}, {name2} scored {r2}, and {name3} scored {r3}.  What was the average score?  (Truncate decimals.  Do not round.))", "add then divide"}},
        {68, {R"(The {word} made 3 laps of the track.  The times were: {r1} seconds, {r2} seconds, and {r3} seconds.  What was the average time to complete a lap?  (Truncate decimals.  Do not round.))", "add then divide"}},
        {69, {R"(Average the following list of numbers.  Exclude the 3rd number from all calculations.  (Truncate decimals.  Do not round.){CRLF}{r1}{CRLF}{r2}{CRLF}25{CRLF}{r3}{CRLF}{r4})", "add then divide"}},
        {70, {R"(Each carton of eggs contains one dozen eggs.  The store had {r1} cartons left on the shelf.  How many eggs were there in all?)", "multiply"}},
        {71, {R"({name1} needs to buy 2 ink pens.  Each ink pen costs {$r1}.  How much money does {name1} need.)", "multiply"}},
        {72, {R"({name1}'s bill came to {$r1}.  The cashier then took 20% off the total.  How much did {name1} pay?  (Truncate the result of the discount.  Do not round.))", "multiply or divide then subtract"}},
        {73, {R"(Round the following two numbers to the nearest whole number and multiply them: {r1}.{r2} , {r3}.{r4} .)", "round and multiply"}},
        {74, {R"(There are {r1} snails in the fish tank.  The number of snails doubles each week.  How many snails will there be at the end of {r2} weeks?)", "multi-part multiplication problem"}},
        {75, {R"({name1} was assigned the task of sorting tickets for the school fair.   {He/She} was to divide {t1} tickets evenly into {r1} envelopes.  How many tickets did {name1} put into each envelope?)", "divide"}},
        {76, {R"(For the following list of 3 numbers multiply the first number by the third and then add the second.{CRLF}{r1}{CRLF}{r3}{CRLF}{r2}{CRLF})", "multiply then add"}},
        {77, {R"(There are four quarts in a gallon.  How many quarts are there in {r1} gallons.)", "multiply"}},
        {78, {R"({name1} has {t1}{word}.  {name2} has {t2}{word}.  {name3} has {t3}{word}.  How many{word} would each person have if they were combined and then divided equally?)", "add then divide"}},
        {79, {R"(The{word}receives {r1} phone calls each day.  How many calls do they receive over a {r2} day period?)", "multiply"}},
        {80, {R"(5 students ordered 2 pizzas at the one local pizza shop.  The total of the order was {$t2}.  If the students were to split the bill evenly how much would each student pay?)", "divide"}},
        {81, {R"(Each of the {r1} taxis has three passengers.  How many people are in the taxis?)", "don't forget the driver, multiply"}},
        {82, {R"({name1} puts {$t1} into a savings account each month.  How much money will {he/she} have saved in 1 year?)", "multiply"}},
        {83, {R"(If {name1} were to exchange {$t1} in mixed currency for the same amount of money in quarters how many quarters would {he/she} receive?)", "divide"}},
        {84, {R"(If each picnic table can seat 8 people how many tables will be needed for {t1} people?)", "divide"}},
        {85, {R"({name1} needs to find the perimeter of the room in inches.  The room is square.  One wall is {r1} feet wide.  What is the distance around the room?)", "multi-part multiplication"}},
        {86, {R"({name1} found that it takes {t1} minutes for an ice cube to melt at the current temperature.  If 3 ice cubes were gotten out of the freezer at {r2}:00 what time will it be when the last ice cube has melted?)", "3 cubes make 1 group, multiply by 1"}},
        {87, {R"(There are 60 minutes in an hour.  {name1} wants to know how many seconds are in {r1} hours.  How many seconds are there in {r1} hours?)", "multi-part multiplication"}},
    };
    return templates;
}

} // namespace banktest
