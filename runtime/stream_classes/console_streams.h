#pragma once
// StandardInputStream and StandardOutputStream: the text streams on the
// process's standard input, output and error, one object each, made at
// first use and kept for the process (stdin, stdout, stderr).
//
// Failure channel: none raises.  A read at the end gives "" and EOF; a
// failed write shows through WriteError.  A nil stream is the failed
// assertion "stream" and does nothing.
#include "kelp/records.h"

namespace kelp {

struct ObjectDefinition;
ObjectDefinition *StandardInputStreamDefinition();
ObjectDefinition *StandardOutputStreamDefinition();

} // namespace kelp
