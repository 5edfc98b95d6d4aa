#include "resources/resource_store.h"

#include "base/bytes.h"
#include "base/fatal_report.h"

#include <memory>
#include <vector>

namespace kelp {
namespace {

struct Store {
    std::vector<ResourceRow> rows;
    std::unique_ptr<VersionInfo> version;
};

Store &TheStore() {
    static Store store;
    return store;
}

uint8_t Reverse(uint8_t b) {
    b = uint8_t((b & 0xF0) >> 4 | (b & 0x0F) << 4);
    b = uint8_t((b & 0xCC) >> 2 | (b & 0x33) << 2);
    return uint8_t((b & 0xAA) >> 1 | (b & 0x55) << 1);
}

} // namespace

void AddResource(uint32_t type, uint32_t id, const uint8_t *data, uint32_t length,
                 uint32_t fileOffset) {
    TheStore().rows.push_back(ResourceRow{type, id & 0xFFFF, data, length, fileOffset});
}

size_t ResourceCount() { return TheStore().rows.size(); }

ResourceRow ResourceAt(size_t index) {
    const auto &rows = TheStore().rows;
    if (index >= rows.size()) {
        FatalReport(kFatalFailedAssertion, "runtime/resources/resource_store.cpp", __LINE__,
                    "index < GetCount()", "");
        return {};
    }
    return rows[index];
}

ResourceRow FindResource(uint32_t type, uint32_t id) {
    for (const ResourceRow &row : TheStore().rows)
        if (row.type == type && row.id == id)
            return row;
    return {};
}

bool FindDatabaseResource(uint32_t id, DatabaseResource &out) {
    const ResourceRow row = FindResource(kResourceDatabase, id);
    if (!row.data || row.length < 4)
        return false;
    const uint32_t nameLength = ReadU32(row.data);
    if (nameLength > row.length - 4 || row.length - 4 - nameLength < 4)
        return false;
    const uint32_t dataLength = ReadU32(row.data + 4 + nameLength);
    if (dataLength > row.length - 8 - nameLength)
        return false;
    out.name = row.data + 4;
    out.nameLength = nameLength;
    out.data = row.data + 8 + nameLength;
    out.length = dataLength;
    return true;
}

bool FindCursorBits(uint32_t id, CursorBits &out) {
    const ResourceRow row = FindResource(kResourceCursor, id);
    if (!row.data || row.length < 68)
        return false;
    for (int i = 0; i < 32; ++i) {
        out.image[i] = Reverse(row.data[i]);
        out.mask[i] = Reverse(row.data[32 + i]);
    }
    // The hot spot is stored most significant byte first: row, then column.
    out.hotRow = int16_t(row.data[64] << 8 | row.data[65]);
    out.hotColumn = int16_t(row.data[66] << 8 | row.data[67]);
    return true;
}

const VersionInfo *ApplicationVersion() {
    Store &store = TheStore();
    if (store.version)
        return store.version.get();
    const ResourceRow row = FindResource(kResourceVersion, 0);
    if (!row.data)
        return nullptr; // looked for again next time
    // The row was measured when it was added, but it is read defensively all
    // the same: a short block gives empty texts, never a read past its end.
    auto info = std::make_unique<VersionInfo>();
    auto word = [&](int i) {
        return row.length >= uint32_t(4 * i + 4) ? int32_t(ReadU32(row.data + 4 * i)) : -1;
    };
    info->major = word(0);
    info->minor = word(1);
    info->bug = word(2);
    info->nonRelease = word(3);
    info->stage = word(4);
    info->region = word(5);
    uint32_t at = 24;
    const uint8_t **texts[3] = {&info->shortText, &info->longText, &info->packageText};
    uint32_t *lengths[3] = {&info->shortLength, &info->longLength, &info->packageLength};
    for (int i = 0; i < 3; ++i) {
        if (at >= row.length)
            break;
        const uint32_t n = row.data[at];
        if (n > row.length - at - 1)
            break;
        *texts[i] = row.data + at + 1;
        *lengths[i] = n;
        at += 1 + n;
    }
    store.version = std::move(info);
    return store.version.get();
}

void ClearResourcesForTest() {
    TheStore().rows.clear();
    TheStore().version.reset();
}

} // namespace kelp
