/*
 * The stream classes, as compiled code calls them: TextInputStream,
 * TextOutputStream and BinaryStream.
 *
 * Every operation on a closed stream does nothing and gives the neutral
 * value (0, false, nil string); none raises.  Read and write failures show
 * only through LastErrorCode, ReadError and WriteError.  An optional
 * encoding argument is a TextEncoding object or nil (the stream's own).
 * Strings are borrowed; a returned string is the caller's reference.
 */
#ifndef KELP_STREAMS_H
#define KELP_STREAMS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

void TextInputStreamInitializer(RuntimeObject *self);
void TextInputStreamDestructor(RuntimeObject *self);
void TextInputStreamClose(RuntimeObject *self);
uint8_t TextInputStreamEOF(RuntimeObject *self);
int32_t TextInputStreamGetPosition(RuntimeObject *self, int32_t unused);
void TextInputStreamSetPosition(RuntimeObject *self, int32_t unused, int32_t position);
int32_t TextInputStreamLastErrorGetter(RuntimeObject *self, int32_t unused);
KelpString TextInputStreamRead(RuntimeObject *self, int32_t count, RuntimeObject *encoding);
KelpString TextInputStreamReadAll(RuntimeObject *self, RuntimeObject *encoding);
KelpString TextInputStreamReadLine(RuntimeObject *self, RuntimeObject *encoding);

void TextOutputStreamInitializer(RuntimeObject *self);
void TextOutputStreamDestructor(RuntimeObject *self);
void TextOutputStreamClose(RuntimeObject *self);
void TextOutputStreamFlush(RuntimeObject *self);
int32_t TextOutputStreamLastErrorGetter(RuntimeObject *self, int32_t unused);
void TextOutputStreamWrite(RuntimeObject *self, KelpString text);
void TextOutputStreamWriteLine(RuntimeObject *self, KelpString text);

void BinaryStreamInitializer(RuntimeObject *self);
void BinaryStreamDestructor(RuntimeObject *self);
void BinaryStringStringCtor(RuntimeObject *self, KelpString text);
void BinaryStringMemoryBlockCtor(RuntimeObject *self, RuntimeObject *block);
void BinaryStreamClose(RuntimeObject *self);
void BinaryStreamFlush(RuntimeObject *self);
uint8_t BinaryStreamEOF(RuntimeObject *self);
int32_t BinaryStreamGetLength(RuntimeObject *self, int32_t unused);
void BinaryStreamSetLength(RuntimeObject *self, int32_t unused, int32_t length);
int32_t BinaryStreamGetPosition(RuntimeObject *self, int32_t unused);
void BinaryStreamSetPosition(RuntimeObject *self, int32_t unused, int32_t position);
/* A nil stream is the fatal assertion "obj". */
int32_t BinaryStreamLastErrorGetter(RuntimeObject *self, int32_t unused);
KelpString BinaryStreamRead(RuntimeObject *self, int32_t count, RuntimeObject *encoding);
uint8_t BinaryStreamReadBoolean(RuntimeObject *self);
int32_t BinaryStreamReadByte(RuntimeObject *self);
double BinaryStreamReadDouble(RuntimeObject *self);
double BinaryStreamReadFloat(RuntimeObject *self);
int32_t BinaryStreamReadLong(RuntimeObject *self);
KelpString BinaryStreamReadPString(RuntimeObject *self, RuntimeObject *encoding);
int32_t BinaryStreamReadShort(RuntimeObject *self);
void BinaryStreamWrite(RuntimeObject *self, KelpString text);
void BinaryStreamWriteBoolean(RuntimeObject *self, uint8_t value);
void BinaryStreamWriteByte(RuntimeObject *self, int32_t value);
void BinaryStreamWriteDouble(RuntimeObject *self, double value);
void BinaryStreamWriteFloat(RuntimeObject *self, double value);
void BinaryStreamWriteLong(RuntimeObject *self, int32_t value);
void BinaryStreamWritePString(RuntimeObject *self, KelpString text);
void BinaryStreamWriteShort(RuntimeObject *self, int32_t value);

/* stdin, stdout and stderr: one StandardInputStream and two
 * StandardOutputStreams, kept for the process; each call gives a new
 * reference.  Output text of a known encoding other than UTF-8 is converted
 * to UTF-8 on the way out; input is tagged as the TextInputStream's is. */
RuntimeObject *RuntimeGetStdIn(void);
RuntimeObject *RuntimeGetStdOut(void);
RuntimeObject *RuntimeGetStdErr(void);
KelpString RuntimeStdInputRead(RuntimeObject *self, int32_t count, RuntimeObject *encoding);
KelpString RuntimeStdInputReadLine(RuntimeObject *self, RuntimeObject *encoding);
uint8_t RuntimeStdInputEof(RuntimeObject *self);
uint8_t RuntimeStdInputError(RuntimeObject *self);
void RuntimeStdOutputStreamWrite(RuntimeObject *self, KelpString text);
void RuntimeStdOutputStreamWriteLine(RuntimeObject *self, KelpString text);
void RuntimeStdOutFlush(RuntimeObject *self);
uint8_t RuntimeStdOutputError(RuntimeObject *self);

/* Print: the text and an end of line on standard output, flushed. */
void RuntimeConsolePrint(KelpString text);
/* Input: the next line of standard input without its end of line (a new
 * reference); empty at the end of the input. */
KelpString RuntimeConsoleInput(void);

#ifdef __cplusplus
}
#endif

#endif
