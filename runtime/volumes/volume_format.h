#pragma once
// The fixed numbers of the volume file.  A volume is an 8-byte file header
// ("VFSv" and the version) and then blocks, back to back:
//
//   0  "BlkS"   4  idnum   8  sequence   12  block length (double)
//   20 next block's position (double, 0 for none)   28  data ...   end-4 "BlkE"
//
// File 1 holds the next idnum to give out, the byte size of the saved block
// map, and the map.  Positions are doubles on disk, so blocks can lie
// anywhere below 2^53; the saved map keeps only 32 bits of a position, which
// is why the map is checked against the blocks themselves on every open.
#include <cstddef>
#include <cstdint>

namespace kelp::volume {

inline constexpr uint32_t kVolumeMagic = 0x56465376;  // "VFSv"
inline constexpr uint32_t kBlockMagic = 0x426C6B53;   // "BlkS"
inline constexpr uint32_t kBlockTrailer = 0x426C6B45; // "BlkE"
inline constexpr uint32_t kMapMagic = 0x424D6170;     // "BMap"

inline constexpr uint32_t kCurrentVersion = 3; // what new volumes get
inline constexpr uint32_t kFirstRefusedVersion = 4;

inline constexpr int64_t kFileHeaderSize = 8;
inline constexpr int64_t kBlockHeaderSize = 28;
inline constexpr int64_t kBlockOverhead = 32; // header and trailer
inline constexpr int64_t kFirstBlockPosition = kFileHeaderSize;

inline constexpr uint32_t kMetadataFile = 1;
inline constexpr uint32_t kFirstUserFile = 2;
inline constexpr int64_t kMetadataBlockLength = 40; // a new volume's file 1
inline constexpr int64_t kMapSizeOffset = 4;        // in file 1
inline constexpr int64_t kMapOffset = 8;            // in file 1

inline constexpr int64_t kNewBlockLength = 1024;
inline constexpr int64_t kMinReusableBlock = 256;
inline constexpr int64_t kMaxReusableBlock = 16384;

inline constexpr size_t kMapHeaderSize = 8;
inline constexpr size_t kMapEntrySize = 12;

// Open files a volume keeps at once: handles are signed 16-bit.
inline constexpr size_t kMaxOpenFiles = 32767;

} // namespace kelp::volume
