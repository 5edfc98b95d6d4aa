/* The runtime's string exports, as compiled code calls them.
 *
 * A string is a stringStorage pointer, null for the empty string.  Arguments
 * are borrowed; a returned string is an owned reference that the caller
 * releases with RuntimeUnlockString.  Null is accepted everywhere. */
#ifndef KELP_STRINGS_H
#define KELP_STRINGS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Count + 1 unless null; returns s. */
stringStorage *RuntimeLockString(stringStorage *s);
/* Count - 1 unless null; at 0 the buffer and the record are freed. */
void RuntimeUnlockString(stringStorage *s);
/* Assignment: if they differ, locks newValue then unlocks oldValue.  The
 * store itself is the caller's. */
void RuntimeLockUnlockStrings(stringStorage *newValue, stringStorage *oldValue);
/* A new reference to a + b, with the encoding rules of concatenation.  The
 * arguments are not consumed. */
stringStorage *RuntimeAddString(stringStorage *a, stringStorage *b);
/* Below, equal to or above zero; case-insensitive in every encoding. */
int32_t RuntimeStringCompare(stringStorage *a, stringStorage *b);

/* Views for declared external functions; valid while the string is held.
 * The C text (buffer + 1) and the Pascal text (buffer); "" for null. */
const char *StringGetCString(stringStorage *s);
const char *StringToCString(stringStorage *s);
const uint8_t *StringGetPString(stringStorage *s);
const uint8_t *StringToPString(stringStorage *s);
/* Owned: the text in 16-bit units (UTF-16) / in UTF-8. */
stringStorage *StringToWString(stringStorage *s);
stringStorage *StringToCFString(stringStorage *s);
/* The first four bytes, most significant first, blank-padded. */
uint32_t StringToOSType(stringStorage *s);

#ifdef __cplusplus
}
#endif

#endif
