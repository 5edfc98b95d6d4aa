#pragma once
// TextInputStream, TextOutputStream and BinaryStream of the language: each
// object holds one engine, which owns the mechanism.  FolderItem makes them
// on the files it opens through the New... functions here.
#include "stream_classes/binary_data.h"
#include "stream_classes/text_input.h"
#include "stream_classes/text_output.h"

#include "kelp/records.h"

namespace kelp {

struct ObjectDefinition;

struct TextInputStreamRecord {
    RuntimeObject object;
    TextInput *input; // null before a mechanism is given, and after the finalizer
};
struct TextOutputStreamRecord {
    RuntimeObject object;
    TextOutput *output;
};
struct BinaryStreamRecord {
    RuntimeObject object;
    BinaryData *data;
};

ObjectDefinition *TextInputStreamDefinition();
ObjectDefinition *TextOutputStreamDefinition();
ObjectDefinition *BinaryStreamDefinition();

// New objects (one reference, the caller's) on a mechanism they take over.
RuntimeObject *NewTextInputStream(std::unique_ptr<RandomAccessMechanism> mechanism);
RuntimeObject *NewTextOutputStream(std::unique_ptr<RandomAccessMechanism> mechanism);
RuntimeObject *NewBinaryStream(std::unique_ptr<RandomAccessMechanism> mechanism);

// The encoding word of a TextEncoding object given as an optional argument;
// kEncodingNotGiven for nil.
uint32_t EncodingWordOf(RuntimeObject *encoding);

} // namespace kelp
