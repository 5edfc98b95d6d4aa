#pragma once
// The binder: walks an image's link table once and writes addresses into its
// code segment, so that the code reaches the runtime by name and its own
// code and data by offset.
#include <cstddef>
#include <cstdint>

namespace kelp::image {

struct BindArea {
    uint8_t *code = nullptr; // writable while binding
    size_t codeSize = 0;
    uint8_t *data = nullptr;
    size_t dataSize = 0;
    // Room behind the code for jump stubs, used when a call's target lies out
    // of reach of a 32-bit displacement.  Each stub takes kStubSize bytes.
    uint8_t *stubs = nullptr;
    size_t stubCapacity = 0; // bytes
};

inline constexpr size_t kStubSize = 24;

struct BindCounts {
    size_t records = 0;  // link records read
    size_t holes = 0;    // call holes written
    size_t words = 0;    // data, code and string words written
    size_t stubs = 0;    // jump stubs made
    size_t failures = 0; // reports made
};

// Number of import and soft-import records: an upper bound on the stubs a
// bind can need, since each import binds one target.
size_t CountImports(const uint8_t *table, size_t size);

// Where the holes of an import that nothing binds lead (no export of that
// name, no such library or function): makes the binding's report again at
// the call and returns 0, so the program goes on.
extern "C" int64_t MissingExportCalled(const char *report);

// Applies the link table.  Every fault is a fatal report (which returns) and
// binding goes on with the next record where the table still makes sense.
BindCounts ApplyLinkTable(const uint8_t *table, size_t size, BindArea &area);

} // namespace kelp::image
