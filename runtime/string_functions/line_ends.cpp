// Line ends: the platform's own, the three conventions, and rewriting them.
#include "kelp/string_functions.h"
#include "string_functions/text_units.h"

#include <cstring>

using namespace kelp;
using namespace kelp::text;

namespace {
// Built once and held for the life of the process.
stringStorage *Held(const char *text) {
    return string::FromBytes(text, static_cast<long>(std::strlen(text)), kEncodingASCII).Release();
}
} // namespace

extern "C" stringStorage *getMacEndOfLine(void) {
    static stringStorage *const held = Held("\r");
    return RuntimeLockString(held);
}
extern "C" stringStorage *getWin32EndOfLine(void) {
    static stringStorage *const held = Held("\r\n");
    return RuntimeLockString(held);
}
extern "C" stringStorage *getUNIXEndOfLine(void) {
    static stringStorage *const held = Held("\n");
    return RuntimeLockString(held);
}
extern "C" stringStorage *RuntimeEndOfLine(void) { return getUNIXEndOfLine(); }

extern "C" stringStorage *RuntimeReplaceLineEndings(stringStorage *s, stringStorage *eol) {
    if (s == nullptr)
        return nullptr;
    const string crlf = string::FromBytes("\r\n", 2, kEncodingASCII);
    const string cr = string::FromBytes("\r", 1, kEncodingASCII);
    const string lf = string::FromBytes("\n", 1, kEncodingASCII);
    string step1 = string::Adopt(StringReplaceAllB(s, crlf.Storage(), lf.Storage()));
    string step2 = string::Adopt(StringReplaceAllB(step1.Storage(), cr.Storage(), lf.Storage()));
    string out = string::Adopt(StringReplaceAllB(step2.Storage(), lf.Storage(), eol));
    if (!out.IsEmpty())
        out.SetEncoding(Arg(s).Encoding());
    return Out(out);
}

// The language's EndOfLine value is the platform's line end whatever object
// stands for it, so the object itself is not looked at.
extern "C" stringStorage *RuntimeEndOfLineAdd(RuntimeObject *, stringStorage *s) {
    const string eol = string::Adopt(RuntimeEndOfLine());
    return RuntimeAddString(eol.Storage(), s);
}

extern "C" stringStorage *RuntimeEndOfLineAddRight(RuntimeObject *, stringStorage *s) {
    const string eol = string::Adopt(RuntimeEndOfLine());
    return RuntimeAddString(s, eol.Storage());
}

extern "C" int32_t RuntimeEndOfLineCompare(RuntimeObject *, stringStorage *s) {
    const string eol = string::Adopt(RuntimeEndOfLine());
    return RuntimeStringCompare(eol.Storage(), s);
}
