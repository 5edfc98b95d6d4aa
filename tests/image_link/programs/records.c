/* A program that holds every kind of address an image can: runtime exports
 * by address and by call, C library functions, its own code and data, string
 * constants, addresses in writable data, a static constructor, a weak
 * function nobody defines and a variable of the C library.  It prints what it computes through them. */
#include "kelp/image_code.h"
#include "kelp/string_functions.h"
#include "kelp/strings.h"

#include <stdio.h>

/* calls.c, built for the small code model: it reaches the runtime and the C
 * library by call and jump displacements. */
KelpString Doubled(KelpString s);
int Say(const char *text);

extern int NobodyDefinesThis(void) __attribute__((weak));

KELP_DEFINE_STRING(kTitle, "records");
static int gCounter = 40;
static int gZeroed[4];
static int Square(int x) { return x * x; }
static int Cube(int x) { return x * x * x; }
static int (*const kOperations[])(int) = {Square, Cube};
static int (*gOperation)(int) = Cube;
static int *gCounterPlace = &gCounter;
static KelpString gTitle = &kTitle.record;
static KelpString (*gJoin)(KelpString, KelpString) = RuntimeAddString;
static int (*gPrint)(const char *) = puts;
static const char *const kWords[] = {"zero", "one", "two"};
static int gConstructed;

__attribute__((constructor)) static void SetUp(void) { gConstructed = gCounter + 2; }

/* Many dense cases: the compiler makes a table of code addresses. */
static int Classify(int n) {
    switch (n) {
    case 0: return 11;
    case 1: return 23;
    case 2: return 37;
    case 3: return 41;
    case 4: return 53;
    case 5: return 67;
    case 6: return 79;
    default: return -1;
    }
}

void ProgramRecords(void) {
    gZeroed[2] = 9;
    printf("constructed %d, counter %d, zeroed %d %d\n", gConstructed, *gCounterPlace, gZeroed[0],
           gZeroed[2]);
    printf("operations %d %d %d\n", kOperations[0](7), kOperations[1](3), gOperation(2));
    int sum = 0;
    for (int n = 0; n < 8; ++n)
        sum = sum * 3 + Classify(n);
    printf("classified %d, words %s %s\n", sum, kWords[1], kWords[2]);
    KelpString twice = Doubled(KELP_STRING("ab"));
    KelpString joined = gJoin(gTitle, twice);
    printf("joined %s (%d bytes)\n", StringGetCString(joined), joined ? joined->length : -1);
    RuntimeUnlockString(joined);
    RuntimeUnlockString(twice);
    KelpString number = StringStr(2.5);
    gPrint(StringGetCString(number));
    RuntimeUnlockString(number);
    Say("said through a jump");
    printf("weak %s\n", NobodyDefinesThis ? "bound" : "absent");
    fputs("through the C library's stdout\n", stdout);
}
