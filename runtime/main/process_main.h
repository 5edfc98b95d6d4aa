#pragma once
// The process from main's arguments to its end: toolkit, theme, runtime
// bring-up, the application image (found, bound and entered), shutdown tasks.
//
// builtinEntry, when not null, is an application linked into the executable:
// it is entered where an appended image's entry would be.
int KelpProcessMain(int argc, char **argv, void (*builtinEntry)(void));
