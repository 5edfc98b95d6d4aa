// The corrected edition's wording: one table of replacements per problem,
// and singular units after a lone 1.
#include "bank/corrections.h"

#include "drill/state.h"

#include <vector>

namespace sumbrook {

bool Classic() { return Drill().bClassicTexts; }
void SetClassic(bool classic) { Drill().bClassicTexts = classic; }

namespace {

// A replacement in the texts of one problem: its problem text, its tip and
// its answer entries.  Each `from` is long enough to occur only where it is
// meant to.
struct TextFix {
    int32_t number;
    Text from;
    Text to;
};

const std::vector<TextFix> &Fixes() {
    static const std::vector<TextFix> rows = {
        {3, "cards. "_k, "cards.  "_k},
        {4, " has "_k, " had "_k},
        {4, " have?"_k, " have now?"_k},
        {6, " studies for "_k, " studied for "_k},
        {7, "lady bugs"_k, "ladybugs"_k},
        {7, ". How many"_k, ".  How many"_k},
        {11, "too many pencils she"_k, "too many pencils, she"_k},
        {14, "fourth street"_k, "Fourth Street"_k},
        {15, "following list:"_k, "following list?"_k},
        {17, "first number what"_k, "first number, what"_k},
        {19, "gold fish"_k, "goldfish"_k},
        {21, "were: "_k, "were "_k},
        {22, "fell off how"_k, "fell off, how"_k},
        {23, "theatre"_k, "theater"_k},
        {23, "taken how many empty seats will remain."_k,
         "taken, how many empty seats will remain?"_k},
        {26, "How many items"_k, "How many different items"_k},
        {28, "If "_k, ""_k}, // an if-clause standing alone is no sentence
        {29, "three and half"_k, "three and a half"_k},
        {35, "further"_k, "farther"_k}, // a distance walked
        {42, "the width of the walls"_k, "the length of the walls"_k},
        {42, "The wall mesasured: "_k, "The walls measured "_k},
        {43, "have to to begin"_k, "have to begin"_k},
        {44, "fund raising"_k, "fund-raising"_k},
        {45, "fund raising"_k, "fund-raising"_k},
        {48, "push ups"_k, "push-ups"_k},
        {48, "chin ups"_k, "chin-ups"_k},
        {48, "sit ups"_k, "sit-ups"_k},
        {50, "2 pound brick"_k, "2-pound brick"_k},
        {51, "all the students how"_k, "all the students, how"_k},
        {52, "back packs"_k, "backpacks"_k},
        {58, "library books how"_k, "library books, how"_k},
        {59, "a period "_k, "a period of "_k},
        {60, "text book sales person"_k, "textbook salesperson"_k},
        {60, "each day how far"_k, "each day, how far"_k},
        {60, "seven day week"_k, "seven-day week"_k},
        {61, "text books"_k, "textbooks"_k},
        {61, "7 books how"_k, "7 books, how"_k},
        // "a marker costs $0.65 each" says the singular twice.
        {62, " each how many"_k, ", how many"_k},
        // Nothing is multiplied here: the answer is the number moved on any
        // one day, and the tip names that trap instead.
        {63, "multiply"_k, "each day means one day"_k},
        {68, "were: "_k, "were "_k},
        {71, "need."_k, "need?"_k},
        {73, " , "_k, " and "_k},
        {73, " ."_k, "."_k},
        {75, ".   "_k, ".  "_k},
        {76, "3 numbers multiply"_k, "3 numbers, multiply"_k},
        {77, "gallons."_k, "gallons?"_k},
        {78, "paper clips "_k, "paper clips"_k},
        {78, "collectors cards"_k, "collector cards"_k},
        // An office, a library or a shop is one thing, not "they".
        {79, "do they receive"_k, "does it receive"_k},
        {79, " day period"_k, "-day period"_k},
        {80, "5 students ordered"_k, "Five students ordered"_k},
        {80, "the one local"_k, "the local"_k},
        {80, "the bill evenly how"_k, "the bill evenly, how"_k},
        {83, "in quarters how"_k, "in quarters, how"_k},
        {84, "8 people how"_k, "8 people, how"_k},
        {86, ":00 what time"_k, ":00, what time"_k},
    };
    return rows;
}

// Units that follow a count in the texts and answers, plural and singular.
// "1 spiders" is what a child would never write.
struct Unit {
    Text plural;
    Text singular;
};

const std::vector<Unit> &Units() {
    static const std::vector<Unit> rows = {
        {"more blue marbles"_k, "more blue marble"_k},
        {"hamburgers"_k, "hamburger"_k},
        {"spiders"_k, "spider"_k},
        {"guppies"_k, "guppy"_k},
        {"inches"_k, "inch"_k},
        {"leaves"_k, "leaf"_k},
        {"blocks"_k, "block"_k},
        {"degrees"_k, "degree"_k},
        {"pencils"_k, "pencil"_k},
        {"beans"_k, "bean"_k},
        {"bugs"_k, "bug"_k},
        {"birds"_k, "bird"_k},
        {"items"_k, "item"_k},
        {"boards"_k, "board"_k},
        {"crayons"_k, "crayon"_k},
        {"copies"_k, "copy"_k},
        {"minutes"_k, "minute"_k},
        {"feet"_k, "foot"_k},
        {"calculators"_k, "calculator"_k},
        {"pounds"_k, "pound"_k},
        {"pie crusts"_k, "pie crust"_k},
        {"marbles"_k, "marble"_k},
        {"books"_k, "book"_k},
        {"miles"_k, "mile"_k},
        {"students"_k, "student"_k},
        {"points"_k, "point"_k},
        {"seconds"_k, "second"_k},
        {"eggs"_k, "egg"_k},
        {"snails"_k, "snail"_k},
        {"tickets"_k, "ticket"_k},
        {"quarts"_k, "quart"_k},
        {"gallons"_k, "gallon"_k},
        {"calls"_k, "call"_k},
        {"people"_k, "person"_k},
        {"tables"_k, "table"_k},
        {"cars"_k, "car"_k},
        {"jumping jacks"_k, "jumping jack"_k},
        {"push-ups"_k, "push-up"_k},
        {"chin-ups"_k, "chin-up"_k},
        {"sit-ups"_k, "sit-up"_k},
        {"rocks"_k, "rock"_k},
        {"puppets"_k, "puppet"_k},
        {"bows"_k, "bow"_k},
        {"buttons"_k, "button"_k},
        {"cards"_k, "card"_k},
        {"boxes"_k, "box"_k},
        {"cans"_k, "can"_k},
        {"tapes"_k, "tape"_k},
        {"sacks"_k, "sack"_k},
        {"sticks"_k, "stick"_k},
        {"collector cards"_k, "collector card"_k},
        {"paper clips"_k, "paper clip"_k},
        {"colored pencils"_k, "colored pencil"_k},
        {"days"_k, "day"_k},
        {"weeks"_k, "week"_k},
        {"hours"_k, "hour"_k},
        {"taxis"_k, "taxi"_k},
        {"pizzas"_k, "pizza"_k},
        {"ink pens"_k, "ink pen"_k},
        {"cartons"_k, "carton"_k},
        {"envelopes"_k, "envelope"_k},
        {"laps"_k, "lap"_k},
        {"tires"_k, "tire"_k},
        {"mats"_k, "mat"_k},
        {"men"_k, "man"_k},
        {"bananas"_k, "banana"_k},
        {"quarters"_k, "quarter"_k},
        {"nickels"_k, "nickel"_k},
    };
    return rows;
}

Text ReplaceAll(const Text &source, const Text &from, const Text &to) {
    return Text::Adopt(StringReplaceAllB(source.get(), from.get(), to.get()));
}

// " 1 inches" -> " 1 inch".  The blank in front keeps "11 inches" and
// "-1 inches" as they are; the blank or end behind keeps "1 cars" from
// touching "1 cartons".
Text SingularAfterOne(const Text &text) {
    // An answer entry starts with its number: give it the blank in front
    // for the search, and take it off again.
    Text work = " "_k + text + " "_k;
    if (StringInStrB(1, work.get(), " 1 "_k.get()) == 0)
        return text;
    for (const Unit &u : Units()) {
        for (const Text &behind : {" "_k, "."_k, "?"_k, ","_k, "\r"_k}) {
            work = ReplaceAll(work, " 1 "_k + u.plural + behind, " 1 "_k + u.singular + behind);
        }
    }
    return Text::Adopt(StringMid3(work.get(), 2, work.Length() - 2));
}

} // namespace

Text Corrected(int32_t number, const Text &text) {
    if (Classic() || text.Empty())
        return text;
    Text out = text;
    for (const TextFix &fix : Fixes()) {
        if (fix.number == number)
            out = ReplaceAll(out, fix.from, fix.to);
    }
    return SingularAfterOne(out);
}

} // namespace sumbrook
