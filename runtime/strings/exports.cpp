// The string entry points of compiled code.  They work on records directly
// and follow the reference rules: arguments borrowed, results owned.
#include "kelp/strings.h"

#include "strings/kstring.h"

extern "C" stringStorage *RuntimeLockString(stringStorage *s) {
    if (s)
        ++s->referenceCount;
    return s;
}

extern "C" void RuntimeUnlockString(stringStorage *s) { kelp::ReleaseStringStorage(s); }

extern "C" void RuntimeLockUnlockStrings(stringStorage *newValue, stringStorage *oldValue) {
    if (newValue == oldValue)
        return;
    // Lock first: assigning a string to itself must not free it on the way.
    RuntimeLockString(newValue);
    RuntimeUnlockString(oldValue);
}

extern "C" stringStorage *RuntimeAddString(stringStorage *a, stringStorage *b) {
    kelp::string left = kelp::string::Wrap(a);
    kelp::string right = kelp::string::Wrap(b);
    return (left + right).ExtractStringStorage();
}

extern "C" int32_t RuntimeStringCompare(stringStorage *a, stringStorage *b) {
    if (a == b)
        return 0;
    return kelp::LanguageCompare(kelp::string::Wrap(a), kelp::string::Wrap(b));
}
