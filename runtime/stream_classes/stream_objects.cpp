#include "stream_classes/stream_objects.h"

#include "stream_classes/memory_block_mechanism.h"
#include "stream_classes/string_mechanism.h"

#include "base/fatal_report.h"
#include "encodings/text_encoding.h"
#include "exceptions/raise.h"
#include "memory/memory_block.h"
#include "objects/definitions.h"

#include "kelp/encodings.h"
#include "kelp/objects.h"
#include "kelp/streams.h"

#include <cstddef>
#include <limits>

namespace kelp {
namespace {

constexpr const char kFile[] = "runtime/stream_classes/stream_objects.cpp";

const TypeRecord kEncodingType{kTypeObjectOf, nullptr, nullptr, 0, &TextEncodingDefinition};

TextInput *Input(RuntimeObject *self) {
    if (!self) {
        AssertionFailed(kFile, __LINE__, "stream");
        return nullptr;
    }
    return reinterpret_cast<TextInputStreamRecord *>(self)->input;
}

TextOutput *Output(RuntimeObject *self) {
    if (!self) {
        AssertionFailed(kFile, __LINE__, "stream");
        return nullptr;
    }
    return reinterpret_cast<TextOutputStreamRecord *>(self)->output;
}

BinaryData *Data(RuntimeObject *self) {
    if (!self) {
        AssertionFailed(kFile, __LINE__, "stream");
        return nullptr;
    }
    return reinterpret_cast<BinaryStreamRecord *>(self)->data;
}

// The language's Integer is 32 bits: larger positions and lengths are held
// at its largest value rather than wrapped to a negative one.
int32_t Narrow(int64_t value) {
    return value > std::numeric_limits<int32_t>::max() ? std::numeric_limits<int32_t>::max()
                                                       : static_cast<int32_t>(value);
}

// The language's forms without the optional encoding argument.
KelpString ReadNoEncoding(RuntimeObject *self, int32_t count) {
    return TextInputStreamRead(self, count, nullptr);
}
KelpString ReadLineNoEncoding(RuntimeObject *self) {
    return TextInputStreamReadLine(self, nullptr);
}
KelpString ReadAllNoEncoding(RuntimeObject *self) { return TextInputStreamReadAll(self, nullptr); }
// Encoding: the tag of texts read without one.  Nil claims no encoding.
RuntimeObject *InputEncodingGetter(RuntimeObject *self, int32_t) {
    TextInput *input = Input(self);
    return input && input->mEncoding != kEncodingUnknown ? SharedTextEncoding(input->mEncoding)
                                                         : nullptr;
}
void InputEncodingSetter(RuntimeObject *self, int32_t, RuntimeObject *encoding) {
    if (TextInput *input = Input(self))
        input->mEncoding = encoding ? GetEncodingFromTEObject(encoding) : kEncodingUnknown;
}
uint8_t ReadError(RuntimeObject *self) { return TextInputStreamLastErrorGetter(self, 0) != 0; }
uint8_t WriteError(RuntimeObject *self) { return TextOutputStreamLastErrorGetter(self, 0) != 0; }
KelpString DelimiterGetter(RuntimeObject *self, int32_t) {
    TextOutput *output = Output(self);
    return output ? output->mDelimiter.ExtractStringStorage() : nullptr;
}
void DelimiterSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (TextOutput *output = Output(self))
        output->mDelimiter = string::Wrap(value);
}
KelpString BinaryReadNoEncoding(RuntimeObject *self, int32_t count) {
    return BinaryStreamRead(self, count, nullptr);
}
KelpString BinaryReadPStringNoEncoding(RuntimeObject *self) {
    return BinaryStreamReadPString(self, nullptr);
}
uint8_t BinaryReadError(RuntimeObject *self) {
    BinaryData *data = Data(self);
    return data && data->LastError() != 0;
}
uint8_t LittleEndianGetter(RuntimeObject *self, int32_t) {
    BinaryData *data = Data(self);
    return data && data->mLittleEndian;
}
void LittleEndianSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (BinaryData *data = Data(self))
        data->mLittleEndian = value != 0;
}

template <typename Record, typename Engine>
RuntimeObject *NewStream(ObjectDefinition *definition, Engine *engine, Engine *Record::*field) {
    RuntimeObject *object = NewObjectOfDefinition(definition);
    if (!object) {
        delete engine;
        return nullptr;
    }
    reinterpret_cast<Record *>(object)->*field = engine;
    return object;
}

} // namespace

uint32_t EncodingWordOf(RuntimeObject *encoding) {
    return encoding ? GetEncodingFromTEObject(encoding) : kEncodingNotGiven;
}

RuntimeObject *NewTextInputStream(std::unique_ptr<RandomAccessMechanism> mechanism) {
    return NewStream(TextInputStreamDefinition(), new TextInput(std::move(mechanism)),
                     &TextInputStreamRecord::input);
}

RuntimeObject *NewTextOutputStream(std::unique_ptr<RandomAccessMechanism> mechanism) {
    return NewStream(TextOutputStreamDefinition(), new TextOutput(std::move(mechanism)),
                     &TextOutputStreamRecord::output);
}

RuntimeObject *NewBinaryStream(std::unique_ptr<RandomAccessMechanism> mechanism) {
    return NewStream(BinaryStreamDefinition(), new BinaryData(std::move(mechanism)),
                     &BinaryStreamRecord::data);
}

ObjectDefinition *TextInputStreamDefinition() {
    static const PropertyRow properties[] = {
        {0, "PositionB", &kTypeInteger, KELP_ENTRY(TextInputStreamGetPosition),
         KELP_ENTRY(TextInputStreamSetPosition)},
        {0, "Encoding", &kEncodingType, KELP_ENTRY(InputEncodingGetter),
         KELP_ENTRY(InputEncodingSetter)},
        {0, "LastErrorCode", &kTypeInteger, KELP_ENTRY(TextInputStreamLastErrorGetter), {}},
    };
    static const ParameterRow countParams[] = {{"Count", &kTypeInteger}};
    static const ParameterRow countEncodingParams[] = {{"Count", &kTypeInteger},
                                                       {"Encoding", &kEncodingType}};
    static const ParameterRow encodingParams[] = {{"Encoding", &kEncodingType}};
    static const MethodRow methods[] = {
        {"Read", &kTypeString, countParams, 1, KELP_ENTRY(ReadNoEncoding)},
        {"Read", &kTypeString, countEncodingParams, 2, KELP_ENTRY(TextInputStreamRead)},
        {"ReadLine", &kTypeString, nullptr, 0, KELP_ENTRY(ReadLineNoEncoding)},
        {"ReadLine", &kTypeString, encodingParams, 1, KELP_ENTRY(TextInputStreamReadLine)},
        {"ReadAll", &kTypeString, nullptr, 0, KELP_ENTRY(ReadAllNoEncoding)},
        {"ReadAll", &kTypeString, encodingParams, 1, KELP_ENTRY(TextInputStreamReadAll)},
        {"Close", nullptr, nullptr, 0, KELP_ENTRY(TextInputStreamClose)},
        {"EOF", &kTypeBoolean, nullptr, 0, KELP_ENTRY(TextInputStreamEOF)},
        {"ReadError", &kTypeBoolean, nullptr, 0, KELP_ENTRY(ReadError)},
    };
    static const ClassDescription description = {
        .name = "TextInputStream",
        .instanceSize = sizeof(TextInputStreamRecord),
        .initializer = KELP_ENTRY(TextInputStreamInitializer),
        .finalizer = KELP_ENTRY(TextInputStreamDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *TextOutputStreamDefinition() {
    static const PropertyRow properties[] = {
        {0, "Delimiter", &kTypeString, KELP_ENTRY(DelimiterGetter), KELP_ENTRY(DelimiterSetter)},
        {0, "LastErrorCode", &kTypeInteger, KELP_ENTRY(TextOutputStreamLastErrorGetter), {}},
    };
    static const ParameterRow lineParams[] = {{"Line", &kTypeString, "\"\""}};
    static const MethodRow methods[] = {
        {"WriteLine", nullptr, lineParams, 1, KELP_ENTRY(TextOutputStreamWriteLine)},
        {"Write", nullptr, lineParams, 1, KELP_ENTRY(TextOutputStreamWrite)},
        {"Close", nullptr, nullptr, 0, KELP_ENTRY(TextOutputStreamClose)},
        {"Flush", nullptr, nullptr, 0, KELP_ENTRY(TextOutputStreamFlush)},
        {"WriteError", &kTypeBoolean, nullptr, 0, KELP_ENTRY(WriteError)},
    };
    static const ClassDescription description = {
        .name = "TextOutputStream",
        .instanceSize = sizeof(TextOutputStreamRecord),
        .initializer = KELP_ENTRY(TextOutputStreamInitializer),
        .finalizer = KELP_ENTRY(TextOutputStreamDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *BinaryStreamDefinition() {
    static const PropertyRow properties[] = {
        {0, "LittleEndian", &kTypeBoolean, KELP_ENTRY(LittleEndianGetter),
         KELP_ENTRY(LittleEndianSetter)},
        {0, "Length", &kTypeInteger, KELP_ENTRY(BinaryStreamGetLength),
         KELP_ENTRY(BinaryStreamSetLength)},
        {0, "Position", &kTypeInteger, KELP_ENTRY(BinaryStreamGetPosition),
         KELP_ENTRY(BinaryStreamSetPosition)},
        {0, "LastErrorCode", &kTypeInteger, KELP_ENTRY(BinaryStreamLastErrorGetter), {}},
    };
    static const ParameterRow countParams[] = {{"byteCount", &kTypeInteger}};
    static const ParameterRow countEncodingParams[] = {{"byteCount", &kTypeInteger},
                                                       {"Encoding", &kEncodingType}};
    static const ParameterRow encodingParams[] = {{"Encoding", &kEncodingType}};
    static const ParameterRow intParams[] = {{"value", &kTypeInteger}};
    static const ParameterRow doubleParams[] = {{"value", &kTypeDouble}};
    static const ParameterRow boolParams[] = {{"value", &kTypeBoolean}};
    static const ParameterRow stringParams[] = {{"value", &kTypeString}};
    static const ParameterRow ctorParams[] = {{"aString", &kTypeString}};
    static const TypeRecord blockType{kTypeObjectOf, nullptr, nullptr, 0, &MemoryBlockDefinition};
    static const ParameterRow blockCtorParams[] = {{"aMemoryBlock", &blockType}};
    static const MethodRow methods[] = {
        {"Constructor", nullptr, ctorParams, 1, KELP_ENTRY(BinaryStringStringCtor)},
        {"Constructor", nullptr, blockCtorParams, 1, KELP_ENTRY(BinaryStringMemoryBlockCtor)},
        {"ReadByte", &kTypeInteger, nullptr, 0, KELP_ENTRY(BinaryStreamReadByte)},
        {"ReadShort", &kTypeInteger, nullptr, 0, KELP_ENTRY(BinaryStreamReadShort)},
        {"ReadLong", &kTypeInteger, nullptr, 0, KELP_ENTRY(BinaryStreamReadLong)},
        {"ReadPString", &kTypeString, nullptr, 0, KELP_ENTRY(BinaryReadPStringNoEncoding)},
        {"ReadPString", &kTypeString, encodingParams, 1, KELP_ENTRY(BinaryStreamReadPString)},
        {"ReadSingle", &kTypeDouble, nullptr, 0, KELP_ENTRY(BinaryStreamReadFloat)},
        {"ReadDouble", &kTypeDouble, nullptr, 0, KELP_ENTRY(BinaryStreamReadDouble)},
        {"ReadBoolean", &kTypeBoolean, nullptr, 0, KELP_ENTRY(BinaryStreamReadBoolean)},
        {"Read", &kTypeString, countParams, 1, KELP_ENTRY(BinaryReadNoEncoding)},
        {"Read", &kTypeString, countEncodingParams, 2, KELP_ENTRY(BinaryStreamRead)},
        {"WriteByte", nullptr, intParams, 1, KELP_ENTRY(BinaryStreamWriteByte)},
        {"WriteShort", nullptr, intParams, 1, KELP_ENTRY(BinaryStreamWriteShort)},
        {"WriteLong", nullptr, intParams, 1, KELP_ENTRY(BinaryStreamWriteLong)},
        {"WritePString", nullptr, stringParams, 1, KELP_ENTRY(BinaryStreamWritePString)},
        {"WriteSingle", nullptr, doubleParams, 1, KELP_ENTRY(BinaryStreamWriteFloat)},
        {"WriteDouble", nullptr, doubleParams, 1, KELP_ENTRY(BinaryStreamWriteDouble)},
        {"WriteBoolean", nullptr, boolParams, 1, KELP_ENTRY(BinaryStreamWriteBoolean)},
        {"Write", nullptr, stringParams, 1, KELP_ENTRY(BinaryStreamWrite)},
        {"Close", nullptr, nullptr, 0, KELP_ENTRY(BinaryStreamClose)},
        {"Flush", nullptr, nullptr, 0, KELP_ENTRY(BinaryStreamFlush)},
        {"WriteError", &kTypeBoolean, nullptr, 0, KELP_ENTRY(BinaryReadError)},
        {"ReadError", &kTypeBoolean, nullptr, 0, KELP_ENTRY(BinaryReadError)},
        {"EOF", &kTypeBoolean, nullptr, 0, KELP_ENTRY(BinaryStreamEOF)},
    };
    static const ClassDescription description = {
        .name = "BinaryStream",
        .instanceSize = sizeof(BinaryStreamRecord),
        .initializer = KELP_ENTRY(BinaryStreamInitializer),
        .finalizer = KELP_ENTRY(BinaryStreamDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

// ------------------------------------------------------------ TextInputStream

extern "C" void TextInputStreamInitializer(RuntimeObject *self) {
    if (self)
        reinterpret_cast<TextInputStreamRecord *>(self)->input = nullptr;
}

extern "C" void TextInputStreamDestructor(RuntimeObject *self) {
    if (!self)
        return;
    auto *record = reinterpret_cast<TextInputStreamRecord *>(self);
    delete record->input; // closes
    record->input = nullptr;
}

extern "C" void TextInputStreamClose(RuntimeObject *self) {
    if (TextInput *input = Input(self))
        input->Close();
}

extern "C" uint8_t TextInputStreamEOF(RuntimeObject *self) {
    TextInput *input = Input(self);
    return input && input->IsEOF();
}

extern "C" int32_t TextInputStreamGetPosition(RuntimeObject *self, int32_t) {
    TextInput *input = Input(self);
    return input ? Narrow(input->Position()) : 0;
}

extern "C" void TextInputStreamSetPosition(RuntimeObject *self, int32_t, int32_t position) {
    if (TextInput *input = Input(self))
        input->SetPosition(position);
}

extern "C" int32_t TextInputStreamLastErrorGetter(RuntimeObject *self, int32_t) {
    TextInput *input = Input(self);
    return input ? input->LastError() : 0;
}

extern "C" KelpString TextInputStreamRead(RuntimeObject *self, int32_t count,
                                          RuntimeObject *encoding) {
    TextInput *input = Input(self);
    return input ? input->Read(count, EncodingWordOf(encoding)).ExtractStringStorage() : nullptr;
}

extern "C" KelpString TextInputStreamReadAll(RuntimeObject *self, RuntimeObject *encoding) {
    TextInput *input = Input(self);
    return input ? input->ReadAll(EncodingWordOf(encoding)).ExtractStringStorage() : nullptr;
}

extern "C" KelpString TextInputStreamReadLine(RuntimeObject *self, RuntimeObject *encoding) {
    TextInput *input = Input(self);
    return input ? input->ReadLine(EncodingWordOf(encoding)).ExtractStringStorage() : nullptr;
}

// ----------------------------------------------------------- TextOutputStream

extern "C" void TextOutputStreamInitializer(RuntimeObject *self) {
    if (self)
        reinterpret_cast<TextOutputStreamRecord *>(self)->output = nullptr;
}

extern "C" void TextOutputStreamDestructor(RuntimeObject *self) {
    if (!self)
        return;
    auto *record = reinterpret_cast<TextOutputStreamRecord *>(self);
    delete record->output;
    record->output = nullptr;
}

extern "C" void TextOutputStreamClose(RuntimeObject *self) {
    if (TextOutput *output = Output(self))
        output->Close();
}

extern "C" void TextOutputStreamFlush(RuntimeObject *self) {
    if (TextOutput *output = Output(self))
        output->Flush();
}

extern "C" int32_t TextOutputStreamLastErrorGetter(RuntimeObject *self, int32_t) {
    TextOutput *output = Output(self);
    return output ? output->LastError() : 0;
}

extern "C" void TextOutputStreamWrite(RuntimeObject *self, KelpString text) {
    if (TextOutput *output = Output(self))
        output->Write(string::Wrap(text));
}

extern "C" void TextOutputStreamWriteLine(RuntimeObject *self, KelpString text) {
    if (TextOutput *output = Output(self))
        output->WriteLine(string::Wrap(text));
}

// ---------------------------------------------------------------- BinaryStream

extern "C" void BinaryStreamInitializer(RuntimeObject *self) {
    if (self)
        reinterpret_cast<BinaryStreamRecord *>(self)->data = nullptr;
}

extern "C" void BinaryStreamDestructor(RuntimeObject *self) {
    if (!self)
        return;
    auto *record = reinterpret_cast<BinaryStreamRecord *>(self);
    delete record->data;
    record->data = nullptr;
}

extern "C" void BinaryStringStringCtor(RuntimeObject *self, KelpString text) {
    if (!self)
        return;
    auto *record = reinterpret_cast<BinaryStreamRecord *>(self);
    delete record->data;
    record->data = new BinaryData(std::make_unique<StringStorageMechanism>(string::Wrap(text)));
}

extern "C" void BinaryStringMemoryBlockCtor(RuntimeObject *self, RuntimeObject *block) {
    if (!self)
        return;
    if (!block) {
        RaiseNilObject();
        return;
    }
    auto *record = reinterpret_cast<BinaryStreamRecord *>(self);
    auto *memory = reinterpret_cast<MemoryBlockObject *>(block);
    delete record->data;
    record->data = new BinaryData(std::make_unique<MemoryBlockMechanism>(memory));
    record->data->mLittleEndian = memory->littleEndian != 0;
}

extern "C" void BinaryStreamClose(RuntimeObject *self) {
    if (BinaryData *data = Data(self))
        data->Close();
}

extern "C" void BinaryStreamFlush(RuntimeObject *self) {
    if (BinaryData *data = Data(self))
        data->Flush();
}

extern "C" uint8_t BinaryStreamEOF(RuntimeObject *self) {
    BinaryData *data = Data(self);
    return data && data->IsEOF();
}

extern "C" int32_t BinaryStreamGetLength(RuntimeObject *self, int32_t) {
    BinaryData *data = Data(self);
    return data ? Narrow(data->Length()) : 0;
}

extern "C" void BinaryStreamSetLength(RuntimeObject *self, int32_t, int32_t length) {
    if (BinaryData *data = Data(self))
        data->SetLength(length);
}

extern "C" int32_t BinaryStreamGetPosition(RuntimeObject *self, int32_t) {
    BinaryData *data = Data(self);
    return data ? Narrow(data->Position()) : 0;
}

extern "C" void BinaryStreamSetPosition(RuntimeObject *self, int32_t, int32_t position) {
    if (BinaryData *data = Data(self))
        data->SetPosition(position);
}

extern "C" int32_t BinaryStreamLastErrorGetter(RuntimeObject *self, int32_t) {
    if (!self) {
        AssertionFailed(kFile, __LINE__, "obj");
        return 0;
    }
    BinaryData *data = Data(self);
    return data ? data->LastError() : 0;
}

extern "C" KelpString BinaryStreamRead(RuntimeObject *self, int32_t count,
                                       RuntimeObject *encoding) {
    BinaryData *data = Data(self);
    return data ? data->Read(count, EncodingWordOf(encoding)).ExtractStringStorage() : nullptr;
}

extern "C" uint8_t BinaryStreamReadBoolean(RuntimeObject *self) {
    BinaryData *data = Data(self);
    return data && data->ReadBoolean();
}

extern "C" int32_t BinaryStreamReadByte(RuntimeObject *self) {
    BinaryData *data = Data(self);
    return data ? data->ReadByte() : 0;
}

extern "C" double BinaryStreamReadDouble(RuntimeObject *self) {
    BinaryData *data = Data(self);
    return data ? data->ReadDouble() : 0.0;
}

extern "C" double BinaryStreamReadFloat(RuntimeObject *self) {
    BinaryData *data = Data(self);
    return data ? data->ReadSingle() : 0.0;
}

extern "C" int32_t BinaryStreamReadLong(RuntimeObject *self) {
    BinaryData *data = Data(self);
    return data ? data->ReadLong() : 0;
}

extern "C" KelpString BinaryStreamReadPString(RuntimeObject *self, RuntimeObject *encoding) {
    BinaryData *data = Data(self);
    return data ? data->ReadPString(EncodingWordOf(encoding)).ExtractStringStorage() : nullptr;
}

extern "C" int32_t BinaryStreamReadShort(RuntimeObject *self) {
    BinaryData *data = Data(self);
    return data ? data->ReadShort() : 0;
}

extern "C" void BinaryStreamWrite(RuntimeObject *self, KelpString text) {
    if (BinaryData *data = Data(self))
        data->Write(string::Wrap(text));
}

extern "C" void BinaryStreamWriteBoolean(RuntimeObject *self, uint8_t value) {
    if (BinaryData *data = Data(self))
        data->WriteBoolean(value != 0);
}

extern "C" void BinaryStreamWriteByte(RuntimeObject *self, int32_t value) {
    if (BinaryData *data = Data(self))
        data->WriteByte(value);
}

extern "C" void BinaryStreamWriteDouble(RuntimeObject *self, double value) {
    if (BinaryData *data = Data(self))
        data->WriteDouble(value);
}

extern "C" void BinaryStreamWriteFloat(RuntimeObject *self, double value) {
    if (BinaryData *data = Data(self))
        data->WriteSingle(value);
}

extern "C" void BinaryStreamWriteLong(RuntimeObject *self, int32_t value) {
    if (BinaryData *data = Data(self))
        data->WriteLong(value);
}

extern "C" void BinaryStreamWritePString(RuntimeObject *self, KelpString text) {
    if (BinaryData *data = Data(self))
        data->WritePString(string::Wrap(text));
}

extern "C" void BinaryStreamWriteShort(RuntimeObject *self, int32_t value) {
    if (BinaryData *data = Data(self))
        data->WriteShort(value);
}
