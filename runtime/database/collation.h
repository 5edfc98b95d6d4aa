#pragma once
// The collation table: each byte's rank in text keys and text sorting.
// Keys are built from these ranks byte for byte, so "abc" and "ABC" are two
// keys that sort next to each other, and files stay readable by every
// program that keeps the same table.
#include <cstdint>
#include <string>
#include <string_view>

namespace kelp::db {

extern const uint8_t kCollation[256];

// The text mapped through the table, byte by byte.
std::string Collate(std::string_view text);
// Compares by rank, the shorter first at equality of the common part.
int CompareCollated(std::string_view a, std::string_view b);

} // namespace kelp::db
