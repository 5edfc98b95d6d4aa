// Sumbrook: the runtime with the drill linked in.  The drill's entry stands
// where an appended image's entry would, and reaches the runtime only through
// its exported functions.
#include "main/process_main.h"

extern "C" void SumbrookEntry(void);

int main(int argc, char **argv) { return KelpProcessMain(argc, argv, &SumbrookEntry); }
