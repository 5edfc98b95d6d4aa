#pragma once
// Text on its way to and from the operating system: file names, process
// arguments, the environment.
//
// The system default encoding of strings is ISO Latin 1, but the system
// itself speaks UTF-8.  Text labelled UTF-8 or ASCII, and bytes of unknown
// encoding, reach the system exactly as they are; text in any other
// encoding is converted to UTF-8 first.  Text from the system is labelled
// UTF-8 when it is valid UTF-8, and keeps the unknown word otherwise, so
// that a name the system gave can always be handed back byte for byte.
#include "strings/kstring.h"

#include <string>

namespace kelp {

std::string TextForSystem(const string &s);
string TextFromSystem(const char *bytes, long length);
string TextFromSystem(const std::string &bytes);

// Whether the bytes are well-formed UTF-8 (no overlong forms, surrogates or
// values above 0x10FFFF).
bool IsValidUTF8(const char *bytes, long length);

} // namespace kelp
