#pragma once
// The process from main's arguments to its end: the wiring of the layers,
// the process bring-up (toolkit, theme), the application image (found, bound
// and entered), the shutdown tasks.
//
// builtinEntry, when not null, is an application linked into the executable:
// it is entered where an appended image's entry would be.
int KelpProcessMain(int argc, char **argv, void (*builtinEntry)(void));
