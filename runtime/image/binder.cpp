#include "image/binder.h"

#include "base/fatal_report.h"
#include "base/soft_library.h"
#include "exports/export_table.h"
#include "image/image_format.h"
#include "image/report_tally.h"
#include "kelp/records.h"
#include "strings/kstring.h"

#include <cstddef>
#include <cstring>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

namespace kelp::image {
namespace {

constexpr const char *kSource = "runtime/image/binder.cpp";

// What the binder has written at each byte of the code.  A byte belongs to at
// most one hole or word: a second writer would corrupt the first one's value.
enum Mark : uint8_t {
    kFree = 0,
    kHoleStart, // first byte of a call hole (chain link until written)
    kWalking,   // first byte of a hole of the chain being walked now
    kHoleBody,  // the hole's other bytes
    kWordByte,  // a byte of an 8-byte data, code or string word
};

// Reports of imports nothing binds, kept for the process's life: the stubs
// that make them hold their addresses.
const char *KeptMessage(const std::string &message) {
    static auto *messages = new std::deque<std::string>;
    return messages->emplace_back(message).c_str();
}

class Binder {
public:
    explicit Binder(BindArea &area) : mArea(area), mMarks(area.codeSize, kFree) {}

    // Every fault of a record is counted now and reported once per kind when
    // the walk is over: a damaged table may repeat one fault for record after
    // record, and that must not mean a dialog for each.
    void Report(int line, const char *condition, std::string message) {
        ++counts.failures;
        mTally.Add(line, condition, std::move(message));
    }

    // The mark of the first byte in [at, at + width) that is taken, or kFree.
    Mark Taken(size_t at, size_t width) const {
        for (size_t i = at; i < at + width; ++i)
            if (mMarks[i] != kFree)
                return Mark(mMarks[i]);
        return kFree;
    }
    void Take(size_t at, size_t width, Mark first, Mark rest) {
        mMarks[at] = first;
        std::memset(mMarks.data() + at + 1, rest, width - 1);
    }

    // A call target as the hole can reach it: the target itself, or a stub
    // behind the code that jumps there through a 64-bit address.
    uint8_t *Reachable(uint8_t *hole, void *target) {
        const int64_t disp =
            reinterpret_cast<intptr_t>(target) - reinterpret_cast<intptr_t>(hole + 4);
        if (disp >= INT32_MIN && disp <= INT32_MAX)
            return static_cast<uint8_t *>(target);
        auto it = mStubFor.find(target);
        if (it != mStubFor.end())
            return it->second;
        if (mArea.stubCapacity - mStubUsed < kStubSize)
            return nullptr;
        uint8_t *stub = mArea.stubs + mStubUsed;
        mStubUsed += kStubSize;
        // jmp qword [rip+0], then the address; int3 as filler.
        const uint8_t jump[6] = {0xFF, 0x25, 0, 0, 0, 0};
        std::memcpy(stub, jump, sizeof jump);
        WriteU64(stub + 6, reinterpret_cast<uint64_t>(target));
        std::memset(stub + 14, 0xCC, kStubSize - 14);
        mStubFor.emplace(target, stub);
        ++counts.stubs;
        return stub;
    }

    // Writes target into every hole of the chain that starts at head.  The
    // link is read before the hole is overwritten; a hole seen twice means the
    // chain loops, and a hole on bytes another record wrote means two records
    // claim them: either way the walk stops there.
    void WalkChain(uint32_t head, bool relative, void *target, std::string_view name) {
        WalkHoles(head, relative, target, name);
        // The chain is done: its holes now count as another chain's.
        for (uint32_t at : mWalked)
            mMarks[at] = kHoleStart;
        mWalked.clear();
    }

    void WalkHoles(uint32_t head, bool relative, void *target, std::string_view name) {
        const size_t width = relative ? 4 : 8;
        for (uint32_t at = head; at != 0;) {
            if (at > mArea.codeSize || mArea.codeSize - at < width) {
                Report(__LINE__, "hole inside code",
                       "The chain of '" + std::string(name) + "' reaches offset " +
                           std::to_string(at) + ", outside the code segment");
                return;
            }
            const Mark taken = Taken(at, width);
            if (mMarks[at] == kWalking) {
                Report(__LINE__, "chain ends",
                       "The chain of '" + std::string(name) + "' loops at offset " +
                           std::to_string(at));
                return;
            }
            if (taken != kFree) {
                Report(__LINE__, "hole unshared",
                       "The chain of '" + std::string(name) + "' reaches offset " +
                           std::to_string(at) + ", which " +
                           (taken == kWordByte ? "a reference" : "another chain's hole") +
                           " already wrote");
                return;
            }
            Take(at, width, kWalking, kHoleBody);
            mWalked.push_back(at);
            uint8_t *hole = mArea.code + at;
            const uint32_t next = ReadU32(hole);
            if (relative) {
                uint8_t *to = Reachable(hole, target);
                if (!to) {
                    Report(__LINE__, "stub room",
                           "No room for a jump stub to '" + std::string(name) + "'");
                    return;
                }
                WriteU32(hole, uint32_t(int32_t(to - (hole + 4))));
            } else {
                WriteU64(hole, reinterpret_cast<uint64_t>(target));
            }
            ++counts.holes;
            at = next;
        }
    }

    // The 8-byte word a data, code or string reference adjusts, now its own;
    // null, after a report, when it lies outside the code or overlaps what
    // another record wrote.
    uint8_t *Word(const LinkRecord &r) {
        if (r.value > mArea.codeSize || mArea.codeSize - r.value < 8) {
            Report(__LINE__, "offset inside code",
                   "The reference at link position " + std::to_string(r.position) +
                       " names offset " + std::to_string(r.value) + ", outside the code segment");
            return nullptr;
        }
        const Mark taken = Taken(r.value, 8);
        if (taken != kFree) {
            Report(__LINE__, "word unshared",
                   "The reference at link position " + std::to_string(r.position) +
                       " names offset " + std::to_string(r.value) +
                       (taken == kWordByte ? ", a word another reference already wrote"
                                           : ", which lands on a call hole"));
            return nullptr;
        }
        Take(r.value, 8, kWordByte, kWordByte);
        return mArea.code + r.value;
    }

    // A stub that passes the report to MissingExportCalled: the holes of a
    // name nothing binds reach it instead of keeping their chain links,
    // which compiled code would otherwise call as if they were addresses.
    uint8_t *MissingExportStub(const std::string &message) {
        if (mArea.stubCapacity - mStubUsed < kStubSize)
            return nullptr;
        const char *kept = KeptMessage(message);
        uint8_t *stub = mArea.stubs + mStubUsed;
        mStubUsed += kStubSize;
        // movabs rdi, name; jmp qword [rip+0]; the reporter's address.
        const uint8_t loadName[2] = {0x48, 0xBF};
        const uint8_t jump[6] = {0xFF, 0x25, 0, 0, 0, 0};
        std::memcpy(stub, loadName, sizeof loadName);
        WriteU64(stub + 2, reinterpret_cast<uint64_t>(kept));
        std::memcpy(stub + 10, jump, sizeof jump);
        WriteU64(stub + 16, reinterpret_cast<uint64_t>(&MissingExportCalled));
        ++counts.stubs;
        return stub;
    }

    void Import(const LinkRecord &r) {
        const RelocEntry *row = FindExport(r.name);
        if (!row || !row->code) {
            const std::string message = "Function '" + std::string(r.name) + "' was not exported";
            Report(__LINE__, "foundFunction", message);
            if (!r.value)
                return;
            if (uint8_t *stub = MissingExportStub(message))
                WalkChain(r.value, r.relative, stub, r.name);
            return;
        }
        if (r.value)
            WalkChain(r.value, r.relative, row->code, r.name);
    }

    // The loader's own texts, counted like every other fault of the table: a
    // table naming thousands of missing libraries gives one report.
    void SoftImport(const LinkRecord &r) {
        const SoftLibrary &lib = OpenSoftLibrary(std::string(r.library), true);
        void *functionEntry = lib.handle ? lib.Symbol(std::string(r.name), true) : nullptr;
        if (!functionEntry) {
            const std::string message = lib.handle
                                            ? "Could not resolve function '" + std::string(r.name) +
                                                  "' in " + std::string(r.library)
                                            : "Missing shared library " + std::string(r.library);
            Report(__LINE__, lib.handle ? "functionEntry" : "lib->mLibraryHandle", message);
            // Calls reach a stub that repeats the report, never the chain links.
            if (uint8_t *stub = r.value ? MissingExportStub(message) : nullptr)
                WalkChain(r.value, true, stub, r.name);
            return;
        }
        if (r.value)
            WalkChain(r.value, true, functionEntry, r.name);
    }

    void StringReference(const LinkRecord &r) {
        uint8_t *word = Word(r);
        if (!word)
            return;
        const uint64_t d = ReadU64(word);
        // The record, the length byte and the NUL at least must lie in data.
        // A rejected constant leaves a null word, never the raw offset that
        // compiled code would follow into the runtime as a string.
        if (d > mArea.dataSize || mArea.dataSize - d < KELP_LITERAL_TEXT_OFFSET + 2) {
            WriteU64(word, 0);
            Report(__LINE__, "literal inside data",
                   "The string at data offset " + std::to_string(d) +
                       " lies outside the data segment");
            return;
        }
        // Read and written by byte: a damaged image may place a literal off
        // its alignment.
        uint8_t *literal = mArea.data + d;
        uint8_t *text = literal + KELP_LITERAL_TEXT_OFFSET;
        const int32_t length = int32_t(ReadU32(literal + offsetof(stringStorage, length)));
        const uint64_t buffer = ReadU64(literal + offsetof(stringStorage, buffer));
        const uint64_t room = mArea.dataSize - d - KELP_LITERAL_TEXT_OFFSET;
        if (length < 0 || uint64_t(length) + 2 > room ||
            (buffer != 0 && buffer != reinterpret_cast<uint64_t>(text))) {
            WriteU64(word, 0);
            Report(__LINE__, "literal intact",
                   "The string at data offset " + std::to_string(d) + " is damaged");
            return;
        }
        WriteU64(word, reinterpret_cast<uint64_t>(literal));
        if (buffer == 0)
            WriteU64(literal + offsetof(stringStorage, buffer), reinterpret_cast<uint64_t>(text));
        ++counts.words;
    }

    void Apply(const uint8_t *table, size_t size) {
        LinkTableReader reader(table, size);
        LinkRecord r;
        std::string error;
        while (reader.Next(r, error)) {
            ++counts.records;
            switch (r.type) {
            case kLinkImport: Import(r); break;
            case kLinkDataReference:
            case kLinkCodeReference:
                if (uint8_t *word = Word(r)) {
                    uint8_t *base = r.type == kLinkDataReference ? mArea.data : mArea.code;
                    WriteU64(word, ReadU64(word) + reinterpret_cast<uint64_t>(base));
                    ++counts.words;
                }
                break;
            case kLinkSoftImport: SoftImport(r); break;
            case kLinkStringReference: StringReference(r); break;
            default: break;
            }
        }
        if (!error.empty())
            Report(__LINE__, "record complete", "The link table is damaged: " + error);
        mTally.Flush();
    }

    BindCounts counts;

private:
    BindArea &mArea;
    std::vector<uint8_t> mMarks;   // a Mark per code byte
    std::vector<uint32_t> mWalked; // hole offsets of the chain being walked
    ReportTally mTally{kSource};
    std::unordered_map<void *, uint8_t *> mStubFor;
    size_t mStubUsed = 0;
};

} // namespace

extern "C" int64_t MissingExportCalled(const char *report) {
    FatalReport(kFatalFailedAssertion, kSource, __LINE__, "foundFunction", report ? report : "");
    return 0;
}

size_t CountImports(const uint8_t *table, size_t size) {
    LinkTableReader reader(table, size);
    LinkRecord r;
    std::string error;
    size_t n = 0;
    while (reader.Next(r, error))
        n += r.type == kLinkImport || r.type == kLinkSoftImport;
    return n;
}

BindCounts ApplyLinkTable(const uint8_t *table, size_t size, BindArea &area) {
    // String constants live in the data segment with a reference nobody
    // releases; the string runtime must know them so it never frees one, even
    // when compiled code unlocks a constant once too often.
    if (area.data && area.dataSize)
        RegisterLiteralArea(area.data, area.dataSize);
    Binder binder(area);
    binder.Apply(table, size);
    return binder.counts;
}

} // namespace kelp::image
