// Text handed to declared external functions as a wide string (WString:
// NUL-terminated 32-bit characters, the C library's wchar_t here) or as the
// system's own string form (CFString: this system has no string objects,
// so it is NUL-terminated UTF-8, the form every system call takes).
//
// Lock makes a copy that stays put until Unlock, so a callee may keep the
// pointer for the length of the call; Swap moves a lock from old text to
// new, as when a structure's field of that type is assigned.  A pointer
// that isn't a live lock is ignored by Unlock and Swap rather than freed.
//
// Failure channel: a lock that can't be made answers null.
#include "encodings/os_text.h"

#include "strings/kstring.h"

#include "kelp/encodings.h"

#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <unordered_set>

namespace kelp {
namespace {

// The live locks of both kinds; any thread may lock and unlock.
struct Locks {
    std::mutex mutex;
    std::unordered_set<void *> live;
};
Locks &TheLocks() {
    static auto *locks = new Locks; // outlives static objects released at exit
    return *locks;
}

void *Keep(void *copy) {
    if (!copy)
        return nullptr;
    Locks &locks = TheLocks();
    std::lock_guard<std::mutex> hold(locks.mutex);
    locks.live.insert(copy);
    return copy;
}

void Release(void *copy) {
    if (!copy)
        return;
    Locks &locks = TheLocks();
    std::lock_guard<std::mutex> hold(locks.mutex);
    if (locks.live.erase(copy))
        std::free(copy);
}

// The code points of UTF-8 text; a malformed byte becomes U+FFFD alone.
std::u32string CodePoints(const std::string &utf8) {
    std::u32string out;
    const auto *p = reinterpret_cast<const unsigned char *>(utf8.data());
    const unsigned char *const end = p + utf8.size();
    while (p < end) {
        const unsigned char lead = *p;
        int extra = lead < 0x80 ? 0 : lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : -1;
        if (extra < 0 || end - p <= extra ||
            !IsValidUTF8(reinterpret_cast<const char *>(p), extra + 1)) {
            out += U'\uFFFD';
            ++p;
            continue;
        }
        char32_t c = extra == 0 ? lead : lead & (0x3F >> extra);
        for (int i = 1; i <= extra; ++i)
            c = (c << 6) | (p[i] & 0x3F);
        out += c;
        p += extra + 1;
    }
    return out;
}

void *LockWide(KelpString text) {
    const std::u32string wide = CodePoints(TextForSystem(string::Wrap(text)));
    static_assert(sizeof(wchar_t) == sizeof(char32_t), "wchar_t is 32-bit here");
    auto *copy = static_cast<char32_t *>(std::malloc((wide.size() + 1) * sizeof(char32_t)));
    if (copy)
        std::memcpy(copy, wide.c_str(), (wide.size() + 1) * sizeof(char32_t));
    return Keep(copy);
}

void *LockSystem(KelpString text) {
    const std::string bytes = TextForSystem(string::Wrap(text));
    auto *copy = static_cast<char *>(std::malloc(bytes.size() + 1));
    if (copy)
        std::memcpy(copy, bytes.c_str(), bytes.size() + 1);
    return Keep(copy);
}

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" void *LockWString(KelpString text) { return LockWide(text); }
extern "C" void UnlockWString(void *locked) { Release(locked); }
extern "C" void *SwapWStringLocks(void *locked, KelpString text) {
    Release(locked);
    return LockWide(text);
}

extern "C" void *LockCFString(KelpString text) { return LockSystem(text); }
extern "C" void UnlockCFString(void *locked) { Release(locked); }
extern "C" void *SwapCFStringLocks(void *locked, KelpString text) {
    Release(locked);
    return LockSystem(text);
}
