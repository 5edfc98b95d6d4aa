#pragma once
// The process's one store of resource rows: sounds, pictures, cursors, text,
// databases and plug-ins carried by the image, numbered within a type.  The
// image reader fills it before the image's entry runs; the rows point into
// the image's segments and nothing is copied or decoded until asked for.
#include <cstddef>
#include <cstdint>

namespace kelp {

struct ResourceRow {
    uint32_t type = 0; // four-character code, first character most significant
    uint32_t id = 0;   // 0 .. 65535
    const uint8_t *data = nullptr;
    uint32_t length = 0;
    uint32_t fileOffset = 0; // of the data in the executable; 0 when not from it
};

inline constexpr uint32_t kResourceWave = 0x57415645;     // "WAVE"
inline constexpr uint32_t kResourceBitmap = 0x424D5020;   // "BMP "
inline constexpr uint32_t kResourceText = 0x54455854;     // "TEXT"
inline constexpr uint32_t kResourceCursor = 0x43555253;   // "CURS"
inline constexpr uint32_t kResourceDatabase = 0x44424153; // "DBAS"
inline constexpr uint32_t kResourcePlugin = 0x4B50506C;   // "KPPl"
inline constexpr uint32_t kResourceVersion = 0x56455253;  // "VERS"

// Appends a row; rows already there are never replaced.
void AddResource(uint32_t type, uint32_t id, const uint8_t *data, uint32_t length,
                 uint32_t fileOffset);
size_t ResourceCount();
// A copy of the row; an index past the end is a failed assertion and gives a
// row of zeros.
ResourceRow ResourceAt(size_t index);
// The first row added with this type and id, or a row of zeros.
ResourceRow FindResource(uint32_t type, uint32_t id);

// An embedded database: its name and bytes, from a "DBAS" row.  False when
// the row is absent or its lengths don't fit in it.
struct DatabaseResource {
    const uint8_t *name = nullptr;
    uint32_t nameLength = 0;
    const uint8_t *data = nullptr;
    uint32_t length = 0;
};
bool FindDatabaseResource(uint32_t id, DatabaseResource &out);

// A "CURS" row turned into what the toolkit wants: 32 image and 32 mask
// bytes with each byte's bits reversed (leftmost pixel lowest), and the hot
// spot.  False when the row is absent or shorter than 68 bytes.
struct CursorBits {
    uint8_t image[32];
    uint8_t mask[32];
    int hotRow = 0, hotColumn = 0;
};
bool FindCursorBits(uint32_t id, CursorBits &out);

// The version block of the "VERS" row, read once it exists.
struct VersionInfo {
    int32_t major = -1, minor = -1, bug = -1, nonRelease = -1, region = -1, stage = -1;
    const uint8_t *shortText = nullptr, *longText = nullptr, *packageText = nullptr;
    uint32_t shortLength = 0, longLength = 0, packageLength = 0;
};
// Null until a "VERS" row has been added; then the record, built on the first
// call and kept.
const VersionInfo *ApplicationVersion();

// Forgets all rows and the version record (tests that fill the store).
void ClearResourcesForTest();

} // namespace kelp
