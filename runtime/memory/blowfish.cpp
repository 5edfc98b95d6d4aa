// _Blowfish: the published Blowfish cipher on memory blocks and on pairs of
// integers.
#include "memory/blowfish.h"

#include "memory/blowfish_tables.h"
#include "memory/memory_block.h"

#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "strings/kstring.h"

#include "kelp/memory.h"

#include <cstring>

namespace kelp {
namespace {

uint32_t F(const BlowfishKey &key, uint32_t x) {
    return ((key.s[0][x >> 24] + key.s[1][(x >> 16) & 0xFF]) ^ key.s[2][(x >> 8) & 0xFF]) +
           key.s[3][x & 0xFF];
}

struct BlowfishObject {
    RuntimeObject object;
    uint8_t keyed; // 0 until a key of at least one byte was given
    BlowfishKey key;
};

BlowfishObject *CipherOf(RuntimeObject *self) {
    if (!self) {
        RaiseNilObject();
        return nullptr;
    }
    return reinterpret_cast<BlowfishObject *>(self);
}

constexpr char kEmptyKey[] = "Cannot initialize blowfish with an empty string";

// A cipher without a key refuses, rather than scrambling data with the
// bare tables that anybody could undo.
bool Ready(BlowfishObject *cipher) {
    if (!cipher)
        return false;
    if (!cipher->keyed)
        RaiseWithMessage("UnsupportedFormatException", kEmptyKey);
    return cipher->keyed != 0;
}

void ByBlock(RuntimeObject *self, RuntimeObject *blockObject, bool encipher) {
    BlowfishObject *cipher = CipherOf(self);
    if (!cipher || !blockObject)
        return;
    auto *block = reinterpret_cast<MemoryBlockObject *>(blockObject);
    if (!block->mData || !block->mSizeKnown || block->mSize <= 0)
        return;
    if (block->mSize % 8 != 0) {
        RaiseWithMessage("UnsupportedFormatException",
                         encipher ? "The data being encrypted must be in multiples of 8 bytes"
                                  : "The data being decrypted must be in multiples of 8 bytes");
        return;
    }
    if (!Ready(cipher))
        return;
    for (int32_t at = 0; at < block->mSize; at += 8) {
        auto xl = static_cast<uint32_t>(memoryGetLong(blockObject, at));
        auto xr = static_cast<uint32_t>(memoryGetLong(blockObject, at + 4));
        if (encipher)
            BlowfishEncipherHalves(cipher->key, xl, xr);
        else
            BlowfishDecipherHalves(cipher->key, xl, xr);
        memorySetLong(blockObject, at, static_cast<int32_t>(xl));
        memorySetLong(blockObject, at + 4, static_cast<int32_t>(xr));
    }
}

} // namespace

void BlowfishEncipherHalves(const BlowfishKey &key, uint32_t &xl, uint32_t &xr) {
    uint32_t l = xl, r = xr;
    for (int i = 0; i < 16; ++i) {
        l ^= key.p[i];
        r ^= F(key, l);
        std::swap(l, r);
    }
    std::swap(l, r);
    r ^= key.p[16];
    l ^= key.p[17];
    xl = l;
    xr = r;
}

void BlowfishDecipherHalves(const BlowfishKey &key, uint32_t &xl, uint32_t &xr) {
    uint32_t l = xl, r = xr;
    for (int i = 17; i > 1; --i) {
        l ^= key.p[i];
        r ^= F(key, l);
        std::swap(l, r);
    }
    std::swap(l, r);
    r ^= key.p[1];
    l ^= key.p[0];
    xl = l;
    xr = r;
}

void BlowfishSchedule(BlowfishKey &key, const uint8_t *bytes, size_t length) {
    std::memcpy(key.p, kBlowfishInitialP, sizeof key.p);
    std::memcpy(key.s, kBlowfishInitialS, sizeof key.s);
    size_t j = 0;
    for (uint32_t &word : key.p) {
        uint32_t data = 0;
        for (int k = 0; k < 4; ++k) {
            data = (data << 8) | bytes[j];
            j = (j + 1) % length;
        }
        word ^= data;
    }
    uint32_t l = 0, r = 0;
    for (int i = 0; i < 18; i += 2) {
        BlowfishEncipherHalves(key, l, r);
        key.p[i] = l;
        key.p[i + 1] = r;
    }
    for (auto &box : key.s)
        for (int i = 0; i < 256; i += 2) {
            BlowfishEncipherHalves(key, l, r);
            box[i] = l;
            box[i + 1] = r;
        }
}

ObjectDefinition *BlowfishDefinition() {
    static const ParameterRow initParams[] = {{"init", &kTypeString}};
    static const ParameterRow halves[] = {{"xl", &kTypeInteger, nullptr, kParamByRef},
                                          {"xr", &kTypeInteger, nullptr, kParamByRef}};
    static const TypeRecord blockType{kTypeObjectOf, nullptr, nullptr, 0, &MemoryBlockDefinition};
    static const ParameterRow blockParams[] = {{"block", &blockType}};
    static const MethodRow methods[] = {
        {"Constructor", nullptr, initParams, 1, KELP_ENTRY(BlowfishInitialize)},
        {"Encipher", nullptr, halves, 2, KELP_ENTRY(BlowfishEncipher)},
        {"Decipher", nullptr, halves, 2, KELP_ENTRY(BlowfishDecipher)},
        {"Encipher", nullptr, blockParams, 1, KELP_ENTRY(BlowfishEncipherByBlock)},
        {"Decipher", nullptr, blockParams, 1, KELP_ENTRY(BlowfishDecipherByBlock)},
    };
    static const ClassDescription description = {
        .name = "_Blowfish",
        .instanceSize = sizeof(BlowfishObject),
        .targetFlags = {1, 0, 0},
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" void BlowfishInitialize(RuntimeObject *self, KelpString keyText) {
    BlowfishObject *cipher = CipherOf(self);
    if (!cipher)
        return;
    string key = string::Wrap(keyText);
    if (key.Length() == 0) {
        cipher->keyed = 0;
        RaiseWithMessage("UnsupportedFormatException", kEmptyKey);
        return;
    }
    BlowfishSchedule(cipher->key, reinterpret_cast<const uint8_t *>(key.CString()),
                     static_cast<size_t>(key.Length()));
    cipher->keyed = 1;
}

extern "C" void BlowfishEncipher(RuntimeObject *self, int32_t *xl, int32_t *xr) {
    BlowfishObject *cipher = CipherOf(self);
    if (!xl || !xr || !Ready(cipher))
        return;
    auto l = static_cast<uint32_t>(*xl), r = static_cast<uint32_t>(*xr);
    BlowfishEncipherHalves(cipher->key, l, r);
    *xl = static_cast<int32_t>(l);
    *xr = static_cast<int32_t>(r);
}

extern "C" void BlowfishDecipher(RuntimeObject *self, int32_t *xl, int32_t *xr) {
    BlowfishObject *cipher = CipherOf(self);
    if (!xl || !xr || !Ready(cipher))
        return;
    auto l = static_cast<uint32_t>(*xl), r = static_cast<uint32_t>(*xr);
    BlowfishDecipherHalves(cipher->key, l, r);
    *xl = static_cast<int32_t>(l);
    *xr = static_cast<int32_t>(r);
}

extern "C" void BlowfishEncipherByBlock(RuntimeObject *self, RuntimeObject *block) {
    ByBlock(self, block, true);
}

extern "C" void BlowfishDecipherByBlock(RuntimeObject *self, RuntimeObject *block) {
    ByBlock(self, block, false);
}
