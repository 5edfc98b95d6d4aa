// The commands of the IDE.  A command that is not in the table is ignored;
// one whose data can't be read or carried out is answered with ERR, so a
// fault of the IDE (bad hex, a missing field, unmapped memory, a line
// outside the table) never faults the program.
#include "debugger/inspect.h"
#include "debugger/link_state.h"
#include "debugger/safe_memory.h"

#include "base/ascii.h"
#include "strings/kstring.h"

#include "kelp/strings.h"

#include <algorithm>
#include <cstring>

namespace kelp::debugger {
namespace {

// The largest breakpoint table BRLA accepts: far beyond any program, small
// enough that a bad length can't take the memory.
constexpr uint64_t kMaxLines = 1u << 24;

struct Request {
    std::string_view command, data;
    std::vector<std::string_view> fields;
};

using Handler = bool (*)(const Request &); // false: answer ERR
struct CommandRow {
    const char *name;
    Handler run;
};

bool Field(const Request &r, size_t index, int bytes, uint64_t &value) {
    return index < r.fields.size() && ParseHexNumber(r.fields[index], bytes, value);
}

bool Resume(int32_t mode) {
    Link().stepMode = mode;
    Link().resume = true;
    return true;
}

bool Run(const Request &) {
    Link().breakRequested = false;
    return Resume(kRun);
}
bool Quit(const Request &) { QuitLink(); }
bool Step(const Request &) { return Resume(kStep); }
bool StepOver(const Request &) {
    Link().stepFrame = Link().stopFrame;
    return Resume(kStepOver);
}
bool StepOut(const Request &) {
    Link().stepFrame = Link().stopFrame;
    return Resume(kStepOut);
}
bool Break(const Request &) {
    Link().breakRequested = true;
    return Resume(kStep);
}

bool SetBreakpoint(const Request &r, uint8_t value) {
    uint64_t line = 0;
    if (!Field(r, 0, 4, line) || line >= Link().breakpoints.size())
        return false;
    Link().breakpoints[line] = value;
    return true;
}
bool Br(const Request &r) { return SetBreakpoint(r, 1); }
bool Brc(const Request &r) { return SetBreakpoint(r, 0); }
bool Brla(const Request &r) {
    uint64_t length = 0;
    if (!Field(r, 0, 4, length) || length > kMaxLines)
        return false;
    Link().breakpoints.assign(length, 0);
    return true;
}

template <int Bytes> bool Dump(const Request &r) {
    static const char *const kReply[] = {"VAL8", "VAL16", "", "VAL32", "", "", "", "VAL64"};
    uint64_t address = 0, value = 0;
    if (!Field(r, 0, kAddressBytes, address) || !ReadMemory(address, &value, Bytes))
        return false;
    Reply(kReply[Bytes - 1], std::string(r.data) + ' ' + HexNumber(value, Bytes));
    return true;
}

template <int Bytes> bool Store(const Request &r) {
    uint64_t address = 0, value = 0;
    return Field(r, 0, kAddressBytes, address) && Field(r, 1, Bytes, value) &&
           WriteMemory(address, &value, Bytes);
}

// A reference stored at the address, read through the kernel copy.
bool ReferenceAt(const Request &r, uintptr_t &reference) {
    uint64_t address = 0;
    return Field(r, 0, kAddressBytes, address) && ReadValue(address, reference);
}

bool Ds(const Request &r) {
    uintptr_t record = 0;
    std::string wire;
    if (!ReferenceAt(r, record) || !StringTextAt(record, wire))
        return false;
    Reply("VALS", std::string(r.data) + ' ' + wire);
    return true;
}

bool Do(const Request &r) {
    uint64_t address = 0;
    if (Field(r, 0, kAddressBytes, address) && address == 0)
        return true; // nothing to say about address 0
    uintptr_t object = 0;
    std::string wire;
    if (!ReferenceAt(r, object) || !ObjectText(object, wire))
        return false;
    Reply("VALO", std::string(r.data) + ' ' + wire);
    return true;
}

bool Dv(const Request &r) {
    uintptr_t variant = 0;
    std::string wire;
    if (!ReferenceAt(r, variant) || !VariantText(variant, wire))
        return false;
    Reply("VALV", std::string(r.data) + ' ' + wire);
    return true;
}

bool Doc(const Request &r) {
    uint64_t object = 0;
    std::string name;
    if (!Field(r, 0, kAddressBytes, object) || !ClassNameAt(object, name))
        return false;
    Reply("VALOC", std::string(r.data) + ' ' + name);
    return true;
}

bool Dabb(const Request &r) {
    uint64_t array = 0;
    std::string wire;
    if (!Field(r, 0, kAddressBytes, array) || !ArrayBoundsText(array, wire))
        return false;
    Reply("VALABB", std::string(r.data) + ' ' + wire);
    return true;
}

// Replaces the string reference at the address, keeping the counts right:
// the new record carries the one reference the slot holds, the old one
// loses it.
bool Ss(const Request &r) {
    uint64_t address = 0;
    uint32_t encoding = 0;
    std::string bytes;
    uintptr_t old = 0;
    std::string oldText;
    if (!Field(r, 0, kAddressBytes, address) || r.fields.size() < 2 ||
        !ParseHexString(r.fields[1], encoding, bytes) || !ReadValue(address, old) ||
        !StringTextAt(old, oldText))
        return false;
    stringStorage *fresh =
        string::FromBytes(bytes.data(), static_cast<long>(bytes.size()), encoding).Release();
    if (!WriteMemory(address, &fresh, sizeof fresh)) {
        RuntimeUnlockString(fresh);
        return false;
    }
    RuntimeUnlockString(reinterpret_cast<stringStorage *>(old));
    return true;
}

bool Pid(const Request &) {
    Reply("PID", ""); // nothing to report on this platform
    return true;
}
bool Toc(const Request &) {
    Reply("TOC", HexNumber(Link().imageBase, kAddressBytes));
    return true;
}
bool Sc(const Request &) {
    SendStackWalk(Link().stopFrame, Link().stopReturn);
    return true;
}

bool Watch(std::vector<uintptr_t> &list, const Request &r, bool add) {
    uint64_t item = 0;
    if (!Field(r, 0, kAddressBytes, item))
        return false;
    auto it = std::find(list.begin(), list.end(), item);
    if (add && it == list.end())
        list.push_back(item);
    if (!add && it != list.end())
        list.erase(it);
    return true;
}
bool Owls(const Request &r) { return Watch(Link().objectWatch, r, true); }
bool Owlr(const Request &r) { return Watch(Link().objectWatch, r, false); }
bool Awls(const Request &r) { return Watch(Link().arrayWatch, r, true); }
bool Awlr(const Request &r) { return Watch(Link().arrayWatch, r, false); }

// DPVB ... DPVS: object, class, property name; the reply is VALPV and the
// same letter.
bool Dpv(const Request &r) {
    uint64_t object = 0, klass = 0;
    std::string wire;
    const char kind = static_cast<char>(AsciiUpper(static_cast<unsigned char>(r.command.back())));
    if (!Field(r, 0, kAddressBytes, object) || !Field(r, 1, kAddressBytes, klass) ||
        r.fields.size() < 3 || !PropertyText(object, klass, std::string(r.fields[2]), kind, wire))
        return false;
    Reply(std::string("VALPV") + kind, std::string(r.data) + ' ' + wire);
    return true;
}

bool Trap(const Request &r) {
    uint64_t flag = 0;
    if (!Field(r, 0, 1, flag))
        return false;
    Link().trap = flag != 0;
    return true;
}

bool Nothing(const Request &) { return true; }

const CommandRow kCommands[] = {
    {"RUN", &Run},
    {"QUIT", &Quit},
    {"BR", &Br},
    {"BRC", &Brc},
    {"BRLA", &Brla},
    {"STEP", &Step},
    {"STEPOVER", &StepOver},
    {"STEPOUT", &StepOut},
    {"BREAK", &Break},
    {"DB", &Dump<1>},
    {"DH", &Dump<2>},
    {"DW", &Dump<4>},
    {"DL", &Dump<8>},
    {"DS", &Ds},
    {"DO", &Do},
    {"DV", &Dv},
    {"DOC", &Doc},
    {"DABB", &Dabb},
    {"SB", &Store<1>},
    {"SH", &Store<2>},
    {"SW", &Store<4>},
    {"SL", &Store<8>},
    {"SS", &Ss},
    {"PID", &Pid},
    {"TOC", &Toc},
    {"SC", &Sc},
    {"OWLS", &Owls},
    {"OWLR", &Owlr},
    {"AWLS", &Awls},
    {"AWLR", &Awlr},
    {"DPVB", &Dpv},
    {"DPVI", &Dpv},
    {"DPVF", &Dpv},
    {"DPVD", &Dpv},
    {"DPVO", &Dpv},
    {"DPVV", &Dpv},
    {"DPVS", &Dpv},
    {"TRAP", &Trap},
    {"SwitchToDebugger", &Nothing},
    {"GetHWND", &Nothing},
};

} // namespace

void Reply(std::string_view command, std::string_view data) {
    if (Link().connection)
        Link().connection->Send(command, data);
}

void ReplyError(std::string_view command, std::string_view data) {
    std::string text(command);
    if (!data.empty()) {
        text += ' ';
        text += data;
    }
    Reply("ERR", text);
}

void RunCommand(const std::string &command, const std::string &data) {
    for (const CommandRow &row : kCommands) {
        if (!AsciiEqualNoCase(command, row.name))
            continue;
        Request request{command, data, SplitFields(data)};
        if (!row.run(request))
            ReplyError(command, data);
        return;
    }
}

} // namespace kelp::debugger
