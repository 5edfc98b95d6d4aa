// The bare runtime: it finds the application image behind its own bytes (or
// the loose segment files in the current folder), binds it and runs it.
#include "main/process_main.h"

int main(int argc, char **argv) { return KelpProcessMain(argc, argv, nullptr); }
