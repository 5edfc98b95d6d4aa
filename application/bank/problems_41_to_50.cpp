// Problems 41 to 50: books in a box, a room's walls, calculators, cookie and
// popcorn sales, video tapes, sacks, exercises and a grocery list.
#include "bank/problem_kit.h"

namespace sumbrook {

namespace {

void Problem41() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawRetry(10, 2, 5, 2));
    SetText(Name(1) + " has a box that can hold 12 books.  There are "_k + Str(r1) +
            " already in the box.  How many more books can be put into the box?"_k);
    SetTip("subtract"_k);
    AnswersOffset3(12 - r1, {{
        {2, {-1, 0, 1, 2, 3, 4, 5, 10, 15, 20}},
        {4, {-3, -2, -1, 0, 1, 2, 3, 4, 5, 10}},
        {6, {-5, -4, -3, -2, -1, 0, 1, 2, 3, 4}},
    }});
}

void Problem42() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawRetry(35, 10, 5, 10));
    const int32_t r2 = SetR(2, DrawRetry(25, 10, 5, 10));
    // "mesasured" is how the drill has always printed it.
    SetText(Name(1) + " measured the width of the walls in the classroom.  The wall mesasured: "_k +
            Str(r1) + " feet, "_k + Str(r1) + " feet, "_k + Str(r2) + " feet, and "_k + Str(r2) +
            " feet.  What is the distance around the room?"_k);
    SetTip("add"_k);
    AnswersOffset3(r1 + r1 + r2 + r2, {{
        {5, {-4, -3, -2, -1, 0, 1, 2, 3, 4, 5}},
        {6, {1, -3, 7, 5, 3, 0, -1, -2, -5, -7}},
        {8, {-6, 4, -4, 3, -3, -1, -5, 0, 5, 1}},
    }}, " feet"_k);
}

void Problem43() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawRetry(10, 2, 5, 2));
    SetText(Name(1) + "'s teacher received a case of 50 calculators for use in the science lab.  "_k +
            Str(r1) +
            " of the calculators had to be returned.  How many calculators did the class have to to begin working with?"_k);
    SetTip("subtract"_k);
    AnswersOffset3(50 - r1, {{
        {1, {0, 1, 2, 3, 4, 5, -1, -2, -3, -4}},
        {2, {-1, 0, 1, 5, 10, 12, 15, -5, -7, -9}},
        {7, {5, -10, -5, -3, -2, -1, 0, 1, 2, 3}},
    }}, " calculators"_k);
}

void Problem44() {
    DrawGirlsName(1);
    const int32_t r1 = SetR(1, DrawOr(5, 2, 2));
    const int32_t r2 = SetR(2, DrawOr(5, 2, 2));
    const int32_t r3 = SetR(3, DrawOr(5, 2, 2));
    const int32_t t1 = SetT(1, r1 + r2 + r3);
    SetText(Name(1) + " needed to sell 20 boxes of cookies to meet her fund raising goal.  On Monday she sold "_k +
            Str(r1) + " boxes.  On Wednesday she sold "_k + Str(r2) + " boxes.  On Friday she sold "_k +
            Str(r3) + " boxes.  How many more boxes of cookies does "_k + Name(1) +
            " need to sell to reach her goal?"_k);
    SetTip("add then subtract"_k);
    AnswersOffset3(20 - t1, {{
        {7, {-6, -5, -4, -3, -2, -1, 0, 1, 2, 3}},
        {9, {-3, 2, 1, 10, 8, 6, -5, -1, 0, 5}},
        {4, {-3, -2, -1, 0, 1, 2, 3, 5, 7, 9}},
    }});
}

void Problem45() {
    DrawBoysName(1);
    const int32_t r1 = SetR(1, DrawOr(5, 2, 2));
    const int32_t r2 = SetR(2, DrawOr(5, 2, 2));
    const int32_t r3 = SetR(3, DrawOr(10, 3, 3));
    const int32_t t1 = SetT(1, r1 + r2 + r3);
    SetText(Name(1) + " needs to sell 25 cans of popcorn to meet his fund raising goal.  On Tuesday he sold "_k +
            Str(r1) + " cans.  On Wednesday he sold "_k + Str(r2) + " cans.  On Saturday he sold "_k +
            Str(r3) + " cans.  How many more cans of popcorn does "_k + Name(1) +
            " need to sell to reach his goal?"_k);
    SetTip("add then subtract"_k);
    AnswersOffset3(25 - t1, {{
        {6, {-5, -6, 5, -4, -2, 0, -1, 1, 10, 9}},
        {5, {-5, 2, 1, 9, 0, 5, -3, -1, 8, 6}},
        {3, {-5, -2, 0, -1, 1, 2, 3, 6, 7, 10}},
    }});
}

void Problem46() {
    const int32_t r1 = SetR(1, DrawRetry(15, 10, 1, 10));
    const int32_t r2 = SetR(2, DrawRetry(15, 10, 1, 10));
    const int32_t r3 = SetR(3, DrawRetry(15, 10, 1, 10));
    const int32_t t1 = SetT(1, r1 + r2 + r3);
    SetText("The school librarian received three packages containing video tapes.  The first package contained "_k +
            Str(r1) + " tapes.  The second package contained "_k + Str(r2) +
            " tapes.  The third package contained "_k + Str(r3) +
            " tapes.  The librarian will put them in a container that can hold up to 30 video tapes.  How many will she have left over?"_k);
    SetTip("add then subtract"_k);
    AnswersOffset3(t1 <= 30 ? 30 - t1 : t1 - 30, {{
        {1, {0, -1, -2, -3, -4, -5, 1, 2, 3, 4}},
        {4, {-3, -2, -1, 0, 1, 2, 3, 5, 7, 10}},
        {9, {10, -10, -3, -2, 5, 3, 2, 1, 0, -1}},
    }});
}

void Problem47() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawRetry(5, 2, 1, 2));
    const int32_t r2 = SetR(2, DrawRetry(5, 2, 1, 2));
    const int32_t r3 = SetR(3, DrawRetry(5, 2, 1, 2));
    SetText(Name(1) + " has 3 sacks.  They weigh "_k + Str(r1) + " pounds, "_k + Str(r2) + " pounds, and "_k +
            Str(r3) + " pounds.  What would be the total weight if all three sacks were combined?"_k);
    SetTip("add"_k);
    AnswersOffset3(r1 + r2 + r3, {{
        {7, {10, -5, 5, -3, -2, -1, 0, 1, 2, 3}},
        {2, {-10, 0, 1, 2, 5, 6, 10, -1, -2, -3}},
        {5, {-5, -3, -2, -1, 0, 1, 2, 3, 5, 10}},
    }}, " pounds"_k);
}

Text ExerciseWord(int32_t r) {
    switch (r) {
    case 1: return "push ups"_k;
    case 2: return "jumping jacks"_k;
    case 3: return "chin ups"_k;
    default: return "sit ups"_k;
    }
}

void Problem48() {
    DrawName(1);
    const int32_t r1 = SetR(1, fRandomTo(4));
    const int32_t r2 = SetR(2, DrawRetry(25, 15, 2, 15));
    const int32_t r3 = SetR(3, DrawRetry(25, 15, 2, 15));
    const Text word = ExerciseWord(r1);
    const Text He = HeShe();
    SetText(Name(1) + " did "_k + word + " three days last week.  "_k + He + " did "_k + Str(r2) +
            " one day.  "_k + He + " did "_k + Str(r2) + " "_k + word + " the next day, and "_k + Str(r3) +
            " "_k + word + " the third day.  How many "_k + word + " did "_k + Name(1) + " do total?"_k);
    SetTip("addition"_k);
    AnswersOffset3(r2 + r2 + r3, {{
        {1, {0, -1, -2, -3, -4, -5, 9, 10, 8, 1}},
        {6, {-5, -4, -3, -2, -1, 0, 1, 2, 3, 5}},
        {10, {15, -10, 10, -5, -3, -1, 5, 2, 1, 0}},
    }}, " "_k + word);
}

void Problem49() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawOr(3, 2, 3));
    SetText(Name(1) + " purchased 1 gallon of milk, 1 loaf of bread, a carton of eggs, and "_k + Str(r1) +
            " pie crusts.  How many items did "_k + Name(1) + " buy?"_k);
    SetTip("add"_k);
    AnswersOffset3(3 + r1, {{
        {6, {-8, -4, -3, -2, -1, 0, 1, 2, 3, 4}},
        {7, {11, -5, 5, 3, 2, 1, 0, -1, -2, -3}},
        {9, {3, 4, 5, -5, -4, -3, -2, -1, 0, 1}},
    }}, " items"_k);
}

void Problem50() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawOr(3, 2, 2));
    SetText(Name(1) + " purchased 2 cartons of milk, 1 loaf of bread, a 2 pound brick of cheese, and "_k +
            Str(r1) + " pie crusts.  How many items did "_k + Name(1) + " buy?"_k);
    SetTip("add"_k);
    AnswersOffset3(4 + r1, {{
        {9, {-8, -4, -3, -2, -1, 1, 3, 2, 0, 4}},
        {1, {0, -5, 5, 3, 2, 1, 11, -1, -2, -3}},
        {2, {3, 0, 5, -5, -4, -3, -2, -1, 2, 1}},
    }}, " items"_k);
}

} // namespace

void mProb41to50(int32_t number) {
    switch (number) {
    case 41: Problem41(); break;
    case 42: Problem42(); break;
    case 43: Problem43(); break;
    case 44: Problem44(); break;
    case 45: Problem45(); break;
    case 46: Problem46(); break;
    case 47: Problem47(); break;
    case 48: Problem48(); break;
    case 49: Problem49(); break;
    case 50: Problem50(); break;
    default: break;
    }
}

} // namespace sumbrook
