#pragma once
// The fixed shapes of a database file: the 64-byte header, the 8,192-byte
// pages, the record heads, and the big-endian words everything is stored in.
// Readers check every length and number against these bounds before use.
#include <cstdint>
#include <string>

namespace kelp::db {

constexpr uint32_t kMagic = 0xFEEDDBDB;
constexpr uint32_t kFormat = 1;
constexpr int64_t kHeaderSize = 64;
constexpr int64_t kPageSize = 8192;
constexpr uint32_t kPageHead = 18;                          // type, tree, txn, chain, used
constexpr uint32_t kMaxRecordBlock = kPageSize - kPageHead; // 8,174 bytes of records
constexpr uint32_t kMaxPages = 1u << 19;                    // page numbers fit 19 bits

// Header fields.
constexpr int kHeaderTransaction = 8;
constexpr int kHeaderOpenFlag = 12;
constexpr int kHeaderNextRowId = 16;
constexpr int kHeaderDirectoryRoot = 20;

// Page types.
constexpr uint32_t kDirectoryLeaf = 0xBEEF0002;
constexpr uint32_t kTableLeaf = 0xBEEF0003;
constexpr uint32_t kInterior = 0x0001BEEF;

// Page head fields.
constexpr int kPageType = 0;
constexpr int kPageTree = 4;
constexpr int kPageTransaction = 8;
constexpr int kPagePrevious = 12;
constexpr int kPageUsed = 16;

// Record heads: length, state, 24-bit transaction.
constexpr uint32_t kRecordHead = 6;
constexpr uint8_t kLive = 'A';
constexpr uint8_t kDead = 'D';
constexpr uint32_t kRowHead = 10;       // head + row id
constexpr uint32_t kDirectoryHead = 18; // head + row id, root, name length
constexpr uint32_t kInteriorHead = 12;  // head + count, child

inline uint16_t Get16(const uint8_t *p) { return uint16_t(p[0] << 8 | p[1]); }
inline uint32_t Get24(const uint8_t *p) { return uint32_t(p[0]) << 16 | p[1] << 8 | p[2]; }
inline uint32_t Get32(const uint8_t *p) {
    return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];
}
inline void Put16(uint8_t *p, uint32_t v) {
    p[0] = uint8_t(v >> 8);
    p[1] = uint8_t(v);
}
inline void Put24(uint8_t *p, uint32_t v) {
    p[0] = uint8_t(v >> 16);
    p[1] = uint8_t(v >> 8);
    p[2] = uint8_t(v);
}
inline void Put32(uint8_t *p, uint32_t v) {
    p[0] = uint8_t(v >> 24);
    p[1] = uint8_t(v >> 16);
    p[2] = uint8_t(v >> 8);
    p[3] = uint8_t(v);
}
inline void Append16(std::string &s, uint32_t v) {
    s += char(v >> 8);
    s += char(v);
}
inline void Append32(std::string &s, uint32_t v) {
    Append16(s, v >> 16);
    Append16(s, v);
}

} // namespace kelp::db
