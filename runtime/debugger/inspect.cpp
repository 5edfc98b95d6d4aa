#include "debugger/inspect.h"

#include "debugger/link_state.h"
#include "debugger/safe_memory.h"
#include "debugger/wire_format.h"

#include "arrays/array_family.h"
#include "objects/object_model.h"
#include "variants/variant_classes.h"

#include "kelp/image.h"
#include "kelp/objects.h"
#include "kelp/plugin.h"
#include "kelp/strings.h"
#include "kelp/variants.h"

#include <pthread.h>

#include <cstddef>
#include <cstring>

namespace kelp::debugger {
namespace {

// Longer texts are cut: a reply stays a line the IDE can take at once.
constexpr int32_t kMaxStringBytes = 1 << 20;
constexpr int32_t kMaxDimensions = 32;
constexpr int kMaxFrames = 4096;

std::string StringWire(KelpString s) {
    if (!s)
        return HexString(kEncodingASCII, {});
    return HexString(s->encoding, std::string_view(reinterpret_cast<const char *>(s->buffer) + 1,
                                                   static_cast<size_t>(s->length)));
}

// The stack of the calling thread, so a walk never leaves it.
bool StackRange(uintptr_t &low, uintptr_t &high) {
    pthread_attr_t attr;
    if (pthread_getattr_np(pthread_self(), &attr) != 0)
        return false;
    void *base = nullptr;
    size_t size = 0;
    bool ok = pthread_attr_getstack(&attr, &base, &size) == 0;
    pthread_attr_destroy(&attr);
    low = reinterpret_cast<uintptr_t>(base);
    high = low + size;
    return ok;
}

} // namespace

bool StringTextAt(uintptr_t record, std::string &wire) {
    if (record == 0) {
        wire = HexString(kEncodingASCII, {});
        return true;
    }
    stringStorage s;
    if (!ReadValue(record, s) || s.length < 0)
        return false;
    std::string bytes(static_cast<size_t>(s.length < kMaxStringBytes ? s.length : kMaxStringBytes),
                      '\0');
    if (!ReadMemory(reinterpret_cast<uintptr_t>(s.buffer) + 1, bytes.data(), bytes.size()))
        return false;
    wire = HexString(s.encoding, bytes);
    return true;
}

bool ClassNameAt(uintptr_t object, std::string &name) {
    RuntimeObject header;
    RuntimeClass klass;
    stringStorage text;
    if (!ReadValue(object, header) ||
        !ReadMemory(reinterpret_cast<uintptr_t>(header.klass), &klass, sizeof klass) ||
        !ReadValue(reinterpret_cast<uintptr_t>(klass.name), text) || text.length < 0 ||
        text.length > 4096)
        return false;
    name.assign(static_cast<size_t>(text.length), '\0');
    return ReadMemory(reinterpret_cast<uintptr_t>(text.buffer) + 1, name.data(), name.size());
}

bool ObjectText(uintptr_t object, std::string &wire) {
    wire = HexNumber(object, kAddressBytes);
    if (object == 0)
        return true;
    std::string name;
    if (!ClassNameAt(object, name))
        return false;
    wire += ' ';
    wire += name;
    return true;
}

bool IsLiveObject(uintptr_t object) {
    if (object == 0)
        return false;
    for (RuntimeObject *o = AllObjectsHead(); o; o = o->next)
        if (reinterpret_cast<uintptr_t>(o) == object)
            return true;
    return false;
}

bool VariantText(uintptr_t variant, std::string &wire) {
    auto *object = reinterpret_cast<RuntimeObject *>(variant);
    if (variant == 0 || !IsLiveObject(variant) || BoxOf(object) == Box::kNone)
        return ObjectText(variant, wire);
    KelpString text = variantToString(object);
    wire = StringWire(text);
    RuntimeUnlockString(text);
    return true;
}

bool ArrayBoundsText(uintptr_t array, std::string &wire) {
    RuntimeArray header;
    if (!ReadMemory(array, &header, sizeof header))
        return false;
    if (arrays::IsCastWrapper(&header)) {
        if (!ReadValue(array + offsetof(RuntimeCastArray, inner), array) ||
            !ReadMemory(array, &header, sizeof header))
            return false;
    }
    int32_t kind = arrays::KindOfTable(header.operations);
    if (kind < 0 || header.dimensions < 1 || header.dimensions > kMaxDimensions)
        return false;
    int32_t bounds[kMaxDimensions];
    if (!ReadMemory(array + offsetof(RuntimeArray, upperBounds), bounds,
                    sizeof(int32_t) * static_cast<size_t>(header.dimensions)))
        return false;
    wire = HexNumber(static_cast<uint32_t>(kind), 4);
    for (int32_t i = 0; i < header.dimensions; ++i)
        wire += ' ' + HexNumber(static_cast<uint32_t>(bounds[i]), 4);
    return true;
}

bool PropertyText(uintptr_t object, uintptr_t klass, const std::string &name, char kind,
                  std::string &wire) {
    auto *o = reinterpret_cast<RuntimeObject *>(object);
    if (!IsLiveObject(object) ||
        (klass != 0 && !ClassInherits(o->klass, reinterpret_cast<RuntimeClass *>(klass))))
        return false;
    switch (kind) {
    case 'B': {
        int32_t v = 0;
        if (!KELPGetPropValueBool(o, name.c_str(), &v))
            return false;
        wire = v ? "01" : "00";
        return true;
    }
    case 'I': {
        int32_t v = 0;
        if (!KELPGetPropValueInt(o, name.c_str(), &v))
            return false;
        wire = HexNumber(static_cast<uint32_t>(v), 4);
        return true;
    }
    case 'F':
    case 'D': {
        double v = 0;
        if (!KELPGetPropValueDouble(o, name.c_str(), &v))
            return false;
        if (kind == 'F') {
            float f = static_cast<float>(v);
            uint32_t bits;
            std::memcpy(&bits, &f, sizeof bits);
            wire = HexNumber(bits, 4);
        } else {
            uint64_t bits;
            std::memcpy(&bits, &v, sizeof bits);
            wire = HexNumber(bits, 8);
        }
        return true;
    }
    case 'S': {
        KelpString v = nullptr;
        if (!KELPGetPropValueString(o, name.c_str(), &v))
            return false;
        wire = StringWire(v);
        RuntimeUnlockString(v);
        return true;
    }
    case 'O':
    case 'V': {
        RuntimeObject *v = nullptr;
        if (!KELPGetPropValueObject(o, name.c_str(), &v))
            return false;
        auto address = reinterpret_cast<uintptr_t>(v);
        bool ok = kind == 'O' ? ObjectText(address, wire) : VariantText(address, wire);
        RuntimeUnlockObject(v);
        return ok;
    }
    default: return false;
    }
}

void SendStackWalk(uintptr_t stopFrame, uintptr_t stopReturn) {
    uintptr_t low = 0, high = 0;
    const bool bounded = StackRange(low, high);
    uintptr_t frame = stopFrame, returnAddress = stopReturn;
    for (int count = 0; frame != 0 && count < kMaxFrames; ++count) {
        if (bounded && (frame < low || frame + 2 * sizeof(uintptr_t) > high))
            break;
        const char *name = nullptr;
        uint32_t offset = 0;
        if (!returnAddress ||
            !LookupCodeSymbol(reinterpret_cast<void *>(returnAddress), &name, &offset))
            name = "", offset = 0;
        Reply("SFR", HexNumber(frame, kAddressBytes) + ' ' + HexString(kEncodingUTF8, name) + ' ' +
                         HexNumber(offset, 4));
        // The frame: the caller's saved frame pointer, then the address the
        // frame's function returns to.  A walk only goes towards older
        // frames, so a damaged chain ends it.
        uintptr_t words[2];
        if (!ReadMemory(frame, words, sizeof words) || words[0] <= frame)
            break;
        frame = words[0];
        returnAddress = words[1];
    }
    Reply("SC", "");
}

} // namespace kelp::debugger
