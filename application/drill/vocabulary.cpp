// The vocabulary: the pools of names and items, and the pickers that every
// problem draws from.  All randomness comes from the runtime's rnd, and every
// float-to-integer step is the runtime's own truncation.
#include "drill/vocabulary.h"
#include "bank/corrections.h"
#include "bank/problem_kit.h"
#include "drill/state.h"

#include <array>

namespace sumbrook {

namespace {

// A name's tag follows from its index alone.
bool IsMaleIndex(int32_t index) {
    return index < 10 || (index >= 20 && index < 30) || (index >= 40 && index <= 50);
}

struct ItemRow {
    Text phrase;
    int32_t min;
    int32_t max;
    Text corrected = Text(); // the corrected edition's phrase, empty when it is the same
};

const std::array<ItemRow, kItemCount> &ItemTable() {
    static const std::array<ItemRow, kItemCount> rows = {{
        {"a pack of gum"_k, 33, 79},
        {"a candy bar"_k, 45, 89},
        {"breath mints"_k, 39, 69},
        {"an ink pen"_k, 40, 90},
        {"a pencil"_k, 30, 45},
        {"an eraser"_k, 25, 75},
        {"a book mark"_k, 10, 90, "a bookmark"_k},
        {"bubble gum"_k, 25, 75},
        {"a ruler"_k, 50, 125},
        {"licorice"_k, 90, 133},
        {"a notebook"_k, 65, 150},
        {"pencils"_k, 90, 135},
        {"ink pens"_k, 99, 199},
        {"erasers"_k, 79, 169},
        {"book covers"_k, 65, 150},
        {"a pencil bag"_k, 75, 179},
        {"a calculator"_k, 99, 299},
        {"batteries"_k, 99, 199},
        {"snack chips"_k, 49, 89},
        {"cookies"_k, 59, 89},
        {"a desert"_k, 50, 75, "a dessert"_k},
        {"an apple"_k, 35, 55},
        {"an extra milk"_k, 35, 45, "an extra carton of milk"_k},
        {"a banana"_k, 35, 65},
        {"a pencil sharpener"_k, 50, 175},
        {"a marker"_k, 50, 99},
        {"a stapler"_k, 75, 125},
        {"glue"_k, 75, 99, "a bottle of glue"_k},
        {"a desk organizer"_k, 200, 299},
        {"paper clips"_k, 50, 99},
        {"folders"_k, 99, 199},
        {"a protractor"_k, 50, 125},
        {"a compass"_k, 50, 125},
        {"colored pencils"_k, 75, 150},
        {"water colors set"_k, 75, 150, "a watercolor set"_k},
        {"a paper back book"_k, 125, 299, "a paperback book"_k},
        {"a magazine"_k, 299, 399},
        {"a can of soda"_k, 50, 80},
        {"shoe laces"_k, 55, 99, "shoelaces"_k},
        {"a watch"_k, 300, 900},
        {"a poster"_k, 300, 400},
        {"a basketball"_k, 300, 500},
        {"a softball"_k, 100, 200},
        {"a football"_k, 300, 500},
        {"a baseball"_k, 200, 500},
        {"a soccer ball"_k, 300, 500},
        {"a t-shirt"_k, 500, 999, "a T-shirt"_k},
        {"a sweat shirt"_k, 750, 1250, "a sweatshirt"_k},
        {"a lunch box"_k, 750, 1000},
        {"a back pack"_k, 800, 1500, "a backpack"_k},
        {"a ball cap"_k, 750, 1200},
    }};
    return rows;
}

} // namespace

void mFillPools() {
    ModuleState &d = Drill();
    static const std::array<Text, kNameCount> names = {
        "Joey"_k,   "Billy"_k,  "Bob"_k,      "Randy"_k,   "John"_k,     "Martin"_k,   "Jerry"_k,
        "Terry"_k,  "Leslie"_k, "Robert"_k,   "Cindy"_k,   "Sally"_k,    "Mandy"_k,    "Jackie"_k,
        "Jodi"_k,   "Wilma"_k,  "Betty"_k,    "Martha"_k,  "Isabelle"_k, "Lucy"_k,     "Michael"_k,
        "Mike"_k,   "Jared"_k,  "Matt"_k,     "Mathew"_k,  "Andy"_k,     "Andrew"_k,   "Gil"_k,
        "Gerard"_k, "Juan"_k,   "Patricia"_k, "Patti"_k,   "Patty"_k,    "Jeanette"_k, "Jeanie"_k,
        "Anna"_k,   "Alice"_k,  "Marie"_k,    "Maria"_k,   "Kathy"_k,    "Marc"_k,     "Ed"_k,
        "Edward"_k, "Peter"_k,  "Jon"_k,      "Nathan"_k,  "Jacob"_k,    "Hector"_k,   "George"_k,
        "Darian"_k, "Walter"_k, "Alicia"_k,   "Bonnie"_k,  "Sheila"_k,   "Judy"_k,     "Juanita"_k,
        "Janice"_k, "Shelby"_k, "Heather"_k,  "Augusta"_k, "Linda"_k,
    };
    for (int32_t i = 0; i < kNameCount; ++i)
        d.asNames.Set(i, names[i]);
    const auto &items = ItemTable();
    for (int32_t i = 0; i < kItemCount; ++i)
        d.asItems.Set(i, items[i].phrase);
}

void LoopTurn() { RuntimeBackgroundTask(); }

int32_t fRandomTo(int32_t n) { return RuntimeFloatToInt(rnd() * n + 1); }

int32_t fPickName() {
    ModuleState &d = Drill();
    int32_t idx = RuntimeFloatToInt(rnd() * kNameCount);
    while (idx == d.iLastName) {
        LoopTurn();
        idx = RuntimeFloatToInt(rnd() * kNameCount);
    }
    d.sGender = IsMaleIndex(idx) ? "male"_k : "female"_k;
    d.iLastName = idx;
    return idx;
}

int32_t fPickItem() { return RuntimeFloatToInt(rnd() * kItemCount); }

int32_t fPriceOf(const Text &item) {
    const auto &rows = ItemTable();
    // The phrases are distinct under the runtime's comparison, so the first
    // row that compares equal is the one that holds this very record when the
    // phrase came from the pool; look for that first and compare only when
    // the phrase was built elsewhere.
    const ItemRow *row = nullptr;
    for (const ItemRow &r : rows) {
        if (r.phrase.get() == item.get() ||
            (r.corrected.get() && r.corrected.get() == item.get())) {
            row = &r;
            break;
        }
    }
    if (row == nullptr) {
        for (const ItemRow &r : rows) {
            if (SameText(r.phrase, item) || (!r.corrected.Empty() && SameText(r.corrected, item))) {
                row = &r;
                break;
            }
        }
    }
    // Every phrase comes from the pool; an unknown one has no price.
    if (row == nullptr)
        return 0;

    int32_t price = RuntimeFloatToInt(rnd() * row->max);
    int32_t redraws = 0;
    while (price < row->min) {
        LoopTurn();
        price = RuntimeFloatToInt(rnd() * row->max);
        ++redraws;
        // Items with a high floor would keep a child waiting on luck: after
        // the fifth redraw the floor itself is taken.
        if (redraws == 5) {
            price = row->min;
            break;
        }
    }
    return price;
}

Text fMoneyText(int32_t cents) {
    const int32_t c = cents % 100; // keeps the sign of cents
    const int32_t d = (cents - c) / 100;
    if (c > 9)
        return "$"_k + Str(d) + "."_k + Str(c);
    if (c >= 1)
        return "$"_k + Str(d) + ".0"_k + Str(c);
    if (c == 0)
        return "$"_k + Str(d) + ".00"_k;
    return Text();
}

Text NameAt(int32_t index) { return Drill().asNames.Get(index); }
// The pool keeps the classic phrases; the corrected edition shows its own
// where it has one, and fPriceOf knows a row by either.
Text ItemAt(int32_t index) {
    if (!Classic() && index >= 0 && index < kItemCount) {
        const Text &corrected = ItemTable()[static_cast<std::size_t>(index)].corrected;
        if (!corrected.Empty())
            return corrected;
    }
    return Drill().asItems.Get(index);
}

int32_t ItemKind(int32_t index) {
    // Items that are the same thing to a child, one or many: a pencil,
    // pencils and colored pencils; an ink pen and ink pens; an eraser and
    // erasers; a pack of gum and bubble gum.
    switch (index) {
    case 11:
    case 33: return 4;
    case 12: return 3;
    case 13: return 5;
    case 7: return 0;
    default: return index;
    }
}

int32_t ItemMin(int32_t index) { return ItemTable().at(static_cast<std::size_t>(index)).min; }
int32_t ItemMax(int32_t index) { return ItemTable().at(static_cast<std::size_t>(index)).max; }
bool NameIsMale(int32_t index) { return IsMaleIndex(index); }

} // namespace sumbrook
