#include "stream_classes/console_streams.h"

#include "stream_classes/descriptor_mechanism.h"
#include "stream_classes/stream_objects.h"
#include "stream_classes/text_input.h"
#include "stream_classes/text_output.h"

#include "base/fatal_report.h"
#include "encodings/text_encoding.h"
#include "objects/definitions.h"
#include "strings/kstring.h"

#include "kelp/objects.h"
#include "kelp/streams.h"

#include <memory>
#include <unistd.h>

namespace kelp {
namespace {

constexpr const char kFile[] = "runtime/stream_classes/console_streams.cpp";

const TypeRecord kEncodingType{kTypeObjectOf, nullptr, nullptr, 0, &TextEncodingDefinition};

struct StandardInputRecord {
    RuntimeObject object;
    TextInput *input; // null for an object the program made itself
};
struct StandardOutputRecord {
    RuntimeObject object;
    TextOutput *output;
};

TextInput *Input(RuntimeObject *self) {
    if (!self) {
        AssertionFailed(kFile, __LINE__, "stream");
        return nullptr;
    }
    return reinterpret_cast<StandardInputRecord *>(self)->input;
}

TextOutput *Output(RuntimeObject *self) {
    if (!self) {
        AssertionFailed(kFile, __LINE__, "stream");
        return nullptr;
    }
    return reinterpret_cast<StandardOutputRecord *>(self)->output;
}

void InputInitializer(RuntimeObject *self) {
    reinterpret_cast<StandardInputRecord *>(self)->input = nullptr;
}
void InputFinalizer(RuntimeObject *self) {
    auto *record = reinterpret_cast<StandardInputRecord *>(self);
    delete record->input;
    record->input = nullptr;
}
void OutputInitializer(RuntimeObject *self) {
    reinterpret_cast<StandardOutputRecord *>(self)->output = nullptr;
}
void OutputFinalizer(RuntimeObject *self) {
    auto *record = reinterpret_cast<StandardOutputRecord *>(self);
    delete record->output;
    record->output = nullptr;
}

KelpString StdInReadNoEncoding(RuntimeObject *self, int32_t count) {
    return RuntimeStdInputRead(self, count, nullptr);
}
KelpString StdInReadLineNoEncoding(RuntimeObject *self) {
    return RuntimeStdInputReadLine(self, nullptr);
}

// The terminal and the programs on a pipe read UTF-8: text of another known
// encoding is converted on the way out, so that it reads as it showed.
string ForTheSystem(KelpString text) {
    const string s = string::Wrap(text);
    const uint32_t encoding = s.Encoding();
    if (encoding == kEncodingUTF8 || encoding == kEncodingASCII || encoding == kEncodingUnknown)
        return s;
    return GetUTF8String(s);
}

// One object per descriptor, kept for the process; each caller gets a
// reference of its own.
RuntimeObject *Standard(int descriptor) {
    static RuntimeObject *objects[3] = {};
    RuntimeObject *&object = objects[descriptor];
    if (!object) {
        auto mechanism = std::make_unique<DescriptorMechanism>(descriptor);
        if (descriptor == STDIN_FILENO) {
            object = NewObjectOfDefinition(StandardInputStreamDefinition());
            if (object)
                reinterpret_cast<StandardInputRecord *>(object)->input =
                    new TextInput(std::move(mechanism));
        } else {
            object = NewObjectOfDefinition(StandardOutputStreamDefinition());
            if (object)
                reinterpret_cast<StandardOutputRecord *>(object)->output =
                    new TextOutput(std::move(mechanism));
        }
    }
    RuntimeLockObject(object);
    return object;
}

} // namespace

ObjectDefinition *StandardInputStreamDefinition() {
    static const ParameterRow count[] = {{"Count", &kTypeInteger}};
    static const ParameterRow countEncoding[] = {{"Count", &kTypeInteger},
                                                 {"Encoding", &kEncodingType}};
    static const ParameterRow encoding[] = {{"Encoding", &kEncodingType}};
    static const MethodRow methods[] = {
        {"Read", &kTypeString, count, 1, KELP_ENTRY(StdInReadNoEncoding)},
        {"Read", &kTypeString, countEncoding, 2, KELP_ENTRY(RuntimeStdInputRead)},
        {"ReadLine", &kTypeString, nullptr, 0, KELP_ENTRY(StdInReadLineNoEncoding)},
        {"ReadLine", &kTypeString, encoding, 1, KELP_ENTRY(RuntimeStdInputReadLine)},
        {"EOF", &kTypeBoolean, nullptr, 0, KELP_ENTRY(RuntimeStdInputEof)},
        {"ReadError", &kTypeBoolean, nullptr, 0, KELP_ENTRY(RuntimeStdInputError)},
    };
    static const ClassDescription description = {
        .name = "StandardInputStream",
        .instanceSize = sizeof(StandardInputRecord),
        .initializer = KELP_ENTRY(InputInitializer),
        .finalizer = KELP_ENTRY(InputFinalizer),
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *StandardOutputStreamDefinition() {
    static const ParameterRow line[] = {{"Line", &kTypeString, "\"\""}};
    static const MethodRow methods[] = {
        {"Write", nullptr, line, 1, KELP_ENTRY(RuntimeStdOutputStreamWrite)},
        {"WriteLine", nullptr, line, 1, KELP_ENTRY(RuntimeStdOutputStreamWriteLine)},
        {"Flush", nullptr, nullptr, 0, KELP_ENTRY(RuntimeStdOutFlush)},
        {"WriteError", &kTypeBoolean, nullptr, 0, KELP_ENTRY(RuntimeStdOutputError)},
    };
    static const ClassDescription description = {
        .name = "StandardOutputStream",
        .instanceSize = sizeof(StandardOutputRecord),
        .initializer = KELP_ENTRY(OutputInitializer),
        .finalizer = KELP_ENTRY(OutputFinalizer),
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *RuntimeGetStdIn(void) { return Standard(STDIN_FILENO); }
extern "C" RuntimeObject *RuntimeGetStdOut(void) { return Standard(STDOUT_FILENO); }
extern "C" RuntimeObject *RuntimeGetStdErr(void) { return Standard(STDERR_FILENO); }

extern "C" KelpString RuntimeStdInputRead(RuntimeObject *self, int32_t count,
                                          RuntimeObject *encoding) {
    TextInput *input = Input(self);
    return input ? input->Read(count, EncodingWordOf(encoding)).ExtractStringStorage() : nullptr;
}

extern "C" KelpString RuntimeStdInputReadLine(RuntimeObject *self, RuntimeObject *encoding) {
    TextInput *input = Input(self);
    return input ? input->ReadLine(EncodingWordOf(encoding)).ExtractStringStorage() : nullptr;
}

extern "C" uint8_t RuntimeStdInputEof(RuntimeObject *self) {
    TextInput *input = Input(self);
    return input && input->IsEOF();
}

extern "C" uint8_t RuntimeStdInputError(RuntimeObject *self) {
    TextInput *input = Input(self);
    return input && input->LastError() != 0;
}

extern "C" void RuntimeStdOutputStreamWrite(RuntimeObject *self, KelpString text) {
    if (TextOutput *output = Output(self))
        output->Write(ForTheSystem(text));
}

extern "C" void RuntimeStdOutputStreamWriteLine(RuntimeObject *self, KelpString text) {
    if (TextOutput *output = Output(self))
        output->WriteLine(ForTheSystem(text));
}

// Nothing is held back: each Write reaches the descriptor at once.
extern "C" void RuntimeStdOutFlush(RuntimeObject *self) {
    if (TextOutput *output = Output(self))
        output->Flush();
}

extern "C" uint8_t RuntimeStdOutputError(RuntimeObject *self) {
    TextOutput *output = Output(self);
    return output && output->LastError() != 0;
}
