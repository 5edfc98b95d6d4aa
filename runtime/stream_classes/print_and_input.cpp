// Print and Input, the console program's plain line output and input.  They
// go through the same standard stream objects as stdout and stdin, so a
// program that mixes the two forms keeps one buffer and one order.
#include "kelp/objects.h"
#include "kelp/streams.h"

extern "C" void RuntimeConsolePrint(KelpString text) {
    RuntimeObject *out = RuntimeGetStdOut();
    RuntimeStdOutputStreamWriteLine(out, text);
    // A line printed is a line someone may be waiting for (a pipe, a log).
    RuntimeStdOutFlush(out);
    RuntimeUnlockObject(out);
}

extern "C" KelpString RuntimeConsoleInput(void) {
    RuntimeObject *in = RuntimeGetStdIn();
    KelpString line = RuntimeStdInputReadLine(in, nullptr);
    RuntimeUnlockObject(in);
    return line;
}
