/* The runtime's string function exports, as compiled code calls them.
 *
 * Arguments are borrowed, results are new references owned by the caller,
 * and an empty result is null.  Positions are 1-based.  The names without
 * DBCS count bytes; the DBCS names (and InStr, Replace, CountFields, ...)
 * count characters by the encoding word of the string: code points in
 * UTF-8, 16-bit units in UTF-16, bytes otherwise. */
#ifndef KELP_STRING_FUNCTIONS_H
#define KELP_STRING_FUNCTIONS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Byte forms. */
stringStorage *StringLeft(stringStorage *s, int32_t count);
stringStorage *StringRight(stringStorage *s, int32_t count);
stringStorage *StringMid2(stringStorage *s, int32_t position);
stringStorage *StringMid3(stringStorage *s, int32_t position, int32_t length);
int32_t StringLen(stringStorage *s);
int32_t StringAsc(stringStorage *s);
stringStorage *StringChr(int32_t code);
int32_t StringInStrB(int32_t start, stringStorage *source, stringStorage *find);
int32_t StringExtendsInStrB(stringStorage *source, int32_t start, stringStorage *find);
stringStorage *StringReplaceB(stringStorage *source, stringStorage *find,
                              stringStorage *replacement);
stringStorage *StringReplaceAllB(stringStorage *source, stringStorage *find,
                                 stringStorage *replacement);
int32_t StringCountFieldsB(stringStorage *source, stringStorage *separator);
stringStorage *StringNthFieldB(stringStorage *source, stringStorage *separator, int32_t index);
RuntimeArray *StringSplitB(stringStorage *source, stringStorage *separator);

/* Text forms. */
stringStorage *StringDBCSLeft(stringStorage *s, int32_t count);
stringStorage *StringDBCSRight(stringStorage *s, int32_t count);
stringStorage *StringDBCSMid2(stringStorage *s, int32_t position);
stringStorage *StringDBCSMid3(stringStorage *s, int32_t position, int32_t length);
int32_t StringDBCSLen(stringStorage *s);
int32_t StringDBCSAsc(stringStorage *s);
stringStorage *StringDBCSChr(int32_t code);
int32_t StringInStr(int32_t start, stringStorage *source, stringStorage *find);
int32_t StringExtendsInStr(stringStorage *source, int32_t start, stringStorage *find);
int32_t StringDBCSInStr(int32_t start, stringStorage *source, stringStorage *find);
stringStorage *StringReplace(stringStorage *source, stringStorage *find,
                             stringStorage *replacement);
stringStorage *StringReplaceAll(stringStorage *source, stringStorage *find,
                                stringStorage *replacement);
int32_t StringCountFields(stringStorage *source, stringStorage *separator);
stringStorage *StringNthField(stringStorage *source, stringStorage *separator, int32_t index);
RuntimeArray *StringSplit(stringStorage *source, stringStorage *separator);
stringStorage *StringJoin(RuntimeArray *array, stringStorage *separator);
stringStorage *StringUCase(stringStorage *s);
stringStorage *StringLCase(stringStorage *s);
stringStorage *StringTitleCase(stringStorage *s);
stringStorage *runTrim(stringStorage *s);
stringStorage *runLTrim(stringStorage *s);
stringStorage *runRTrim(stringStorage *s);

/* -1, 0 or 1; mode 0 compares raw bytes, any other mode characters. */
int32_t StringStrCompare(stringStorage *a, stringStorage *b, int32_t mode);

/* Numbers and text. */
stringStorage *StringStr(double value);
double StringVal(stringStorage *s);
double runCDbl(stringStorage *s);
stringStorage *StringFormat(double value, stringStorage *mask);
stringStorage *RuntimeHex(int32_t value);
stringStorage *RuntimeOct(int32_t value);
stringStorage *RuntimeBin(int32_t value);

/* Line ends. */
stringStorage *RuntimeEndOfLine(void);
stringStorage *getMacEndOfLine(void);
stringStorage *getWin32EndOfLine(void);
stringStorage *getUNIXEndOfLine(void);
stringStorage *RuntimeReplaceLineEndings(stringStorage *s, stringStorage *eol);
/* The EndOfLine value of the language stands for the platform's line end:
 * `eol` + s, s + `eol`, and a comparison with s (as RuntimeStringCompare). */
stringStorage *RuntimeEndOfLineAdd(RuntimeObject *eol, stringStorage *s);
stringStorage *RuntimeEndOfLineAddRight(RuntimeObject *eol, stringStorage *s);
int32_t RuntimeEndOfLineCompare(RuntimeObject *eol, stringStorage *s);
/* The single EndOfLine object of the process, made on first use; the caller
 * owns the returned reference. */
RuntimeObject *RuntimeGetEndOfLineObject(void);

#ifdef __cplusplus
}
#endif

#endif
