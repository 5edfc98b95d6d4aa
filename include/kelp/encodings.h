/*
 * Text encodings as compiled code reaches them: TextEncoding, TextConverter,
 * the Encodings module and the string functions that carry an encoding.
 *
 * Failure channel: none of these raise.  A conversion that can't be done
 * gives the source string unchanged; an unknown word gives nil where an
 * encoding object is asked for.  Strings and objects returned are owned
 * references.
 */
#ifndef KELP_ENCODINGS_H
#define KELP_ENCODINGS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------ strings */

/* The TextEncoding of the string's word: ASCII for the empty string, nil for
 * an unknown word. */
RuntimeObject *StringGetEncoding(KelpString s);
/* DefineEncoding: the same bytes with the encoding's word (unknown for nil). */
KelpString StringSetEncoding(KelpString s, RuntimeObject *encoding);
/* ConvertEncoding: the text converted to the encoding through iconv. */
KelpString StringConvertEncoding(KelpString s, RuntimeObject *encoding);

/* ------------------------------------------------------ TextEncoding */

/* The shared TextEncoding of base, variant and format (one object per word). */
RuntimeObject *getTextEncoding(int32_t base, int32_t variant, int32_t format);
RuntimeObject *getInternetTextEncoding(int32_t base, int32_t variant);
/* Every font maps to the system default (ISO Latin 1) here. */
RuntimeObject *getFontTextEncoding(KelpString fontName);
int32_t textEncodingBaseGetter(RuntimeObject *encoding);
int32_t textEncodingVariantGetter(RuntimeObject *encoding);
int32_t textEncodingFormatGetter(RuntimeObject *encoding);
/* "UTF-8", "UTF-16", "windows-1252", ...; empty when it has no such name. */
KelpString textEncodingInternetName(RuntimeObject *encoding);
/* A one-character string of `code` in the encoding. */
KelpString TextEncodingChr(RuntimeObject *encoding, int32_t code);
/* The same object, or both present with equal words. */
uint8_t TextEncodingEquals(RuntimeObject *a, RuntimeObject *b);
/* The encoding word of a TextEncoding; unknown (0xFFFF) for nil. */
uint32_t GetEncodingFromTEObject(RuntimeObject *encoding);
/* For text of unknown encoding: ISO-2022-JP, EUC-JP or Shift-JIS when the
 * bytes settle it, else nil.  Text with a word gives that word's encoding. */
RuntimeObject *guessJapaneseEncoding(KelpString s);

/* ------------------------------------------------------ TextConverter */

/* A new converter; nil if either encoding is nil. */
RuntimeObject *getTextConverter(RuntimeObject *from, RuntimeObject *to);
/* The bytes of s from the source encoding to the target, whatever word s
 * carries. */
KelpString textConverterConvert(RuntimeObject *converter, KelpString s);
/* Converters keep no state between calls here: nothing to clear. */
void textConverterClear(RuntimeObject *converter);
void textConverterDestructor(RuntimeObject *converter);

/* ------------------------------------------------------ Encodings module */

/* The property of the Encodings module with this selector (1 UTF8, 2 UTF16,
 * ... 92 SystemDefault); nil above 92. */
RuntimeObject *EncodingsGetter(RuntimeObject *module, int32_t selector);
/* Encodings.GetFromCode(word). */
RuntimeObject *EncodingsGetFromCode(int32_t word);
/* The one instance of the hidden class _Encodings, with a new reference. */
RuntimeObject *GetEncodingsObject(void);

/* Copies of a text for declared external functions, kept until unlocked:
 * WString as NUL-terminated 32-bit characters (wchar_t), CFString as
 * NUL-terminated UTF-8.  Swap unlocks the old copy and locks the new text.
 * Unlock and Swap ignore a pointer that is not a live lock; null when a
 * copy can't be made. */
void *LockWString(KelpString text);
void UnlockWString(void *locked);
void *SwapWStringLocks(void *locked, KelpString text);
void *LockCFString(KelpString text);
void UnlockCFString(void *locked);
void *SwapCFStringLocks(void *locked, KelpString text);

#ifdef __cplusplus
}
#endif

#endif
