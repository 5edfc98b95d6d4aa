// The export table: static rows built into the program (the roof hands them
// over at bring-up), then the rows that class registration and plug-ins add
// while the program runs.  Lookups go
// through one case-folded index so that binding an image costs one hash
// probe per name, not a pass over every row.
#include "exports/export_table.h"

#include "base/ascii.h"
#include "base/fatal_report.h"

#include <cstring>
#include <deque>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace kelp {
namespace {

struct FoldedHash {
    size_t operator()(std::string_view s) const noexcept { return AsciiFoldedHash(s); }
};
struct FoldedEqual {
    bool operator()(std::string_view a, std::string_view b) const noexcept {
        return NamesMatch(a, b);
    }
};

struct Table {
    const RelocEntry *staticRows = nullptr;
    size_t staticCount = 0;
    std::deque<RelocEntry> dynamicRows;   // stable addresses
    std::deque<std::string> dynamicNames; // names copied from callers
    std::vector<const RelocEntry *> dynamicIndex;
    std::unordered_map<std::string_view, const RelocEntry *, FoldedHash, FoldedEqual> map;

    void Index(const RelocEntry *row) {
        if (row->name)
            map.emplace(std::string_view(row->name), row); // keeps the first row
    }
    // The static rows come first, so that a name they hold keeps its code.
    void Rebuild() {
        map.clear();
        map.reserve(4096);
        for (size_t i = 0; i < staticCount; ++i)
            Index(&staticRows[i]);
        for (const RelocEntry *row : dynamicIndex)
            Index(row);
    }
};

Table &TheTable() {
    static Table table;
    return table;
}

} // namespace

bool NamesMatch(std::string_view a, std::string_view b) { return AsciiEqualNoCase(a, b); }

void SetStaticExportRows(const RelocEntry *rows, size_t count) {
    Table &t = TheTable();
    t.staticRows = rows;
    t.staticCount = rows ? count : 0;
    t.Rebuild();
}

size_t StaticExportRowCount() { return TheTable().staticCount; }

const RelocEntry *FindExport(std::string_view name) {
    Table &t = TheTable();
    auto it = t.map.find(name);
    return it == t.map.end() ? nullptr : it->second;
}

} // namespace kelp

extern "C" int32_t ExportCount(void) {
    const kelp::Table &t = kelp::TheTable();
    return int32_t(t.staticCount + t.dynamicIndex.size());
}

extern "C" const RelocEntry *ExportAt(int32_t index) {
    if (index < 0)
        return nullptr;
    const kelp::Table &t = kelp::TheTable();
    const size_t i = size_t(index), statics = t.staticCount;
    if (i < statics)
        return &t.staticRows[i];
    auto &dyn = kelp::TheTable().dynamicIndex;
    return i - statics < dyn.size() ? dyn[i - statics] : nullptr;
}

extern "C" void *LookupExport(const char *name) {
    if (!name)
        return nullptr;
    const RelocEntry *row = kelp::FindExport(name);
    return row ? row->code : nullptr;
}

extern "C" void AddExport(const char *name, void *code) {
    if (!code)
        return;
    kelp::Table &t = kelp::TheTable();
    if (name) {
        if (const RelocEntry *old = kelp::FindExport(name)) {
            if (old->code != code)
                FatalReport(
                    kFatalFailedAssertion, "runtime/exports/export_table.cpp", __LINE__,
                    "functionPtr == oldEntry->code",
                    (std::string("Export '") + name + "' is already bound to other code").c_str());
            return;
        }
        t.dynamicNames.emplace_back(name);
        name = t.dynamicNames.back().c_str();
    }
    t.dynamicRows.push_back(RelocEntry{name, code, nullptr, nullptr});
    const RelocEntry *row = &t.dynamicRows.back();
    t.dynamicIndex.push_back(row);
    t.Index(row);
}
