// BLOBs as rows of sys$blob.  Data of up to 4,000 bytes is one content
// piece; longer data is cut into 4,000-byte pieces whose ids and sizes go
// into index pieces of 500 pairs, each full index becoming the first pair of
// the next, so that the last index written names the whole BLOB.  Reading
// and deleting follow an index with an explicit stack and a bound on the
// pieces visited: a damaged chain cannot recurse without end or loop.
#include "database/storage.h"

namespace kelp::db {

namespace {

constexpr uint32_t kContent = 0;
constexpr uint32_t kIndex = 1;
constexpr size_t kPieceSize = 4000;
constexpr size_t kIndexPairs = 500;
constexpr uint8_t kPieceField = 1;

} // namespace

bool Storage::WritePiece(uint32_t kind, std::string_view data, uint32_t &id) {
    Row row;
    FieldValue piece;
    piece.type = kBinary;
    Append32(piece.bytes, kind);
    piece.bytes += data;
    row.Set(kPieceField, std::move(piece));
    if (!mPager.TakeRowId(row.id, mError))
        return false;
    id = row.id;
    return mSysBlob->Insert(EncodeRow(row, mPager.Transaction() & 0xFFFFFF), mError);
}

bool Storage::WriteBlob(std::string_view data, uint32_t &id) {
    mError.Clear();
    if (!mSysBlob)
        return mError.Set(kBlobWriteFailed, "Error writing BLOB");
    if (data.size() <= kPieceSize)
        return WritePiece(kContent, data, id);
    std::string index;
    size_t pairs = 0, covered = 0;
    for (size_t at = 0; at < data.size(); at += kPieceSize) {
        std::string_view part = data.substr(at, kPieceSize);
        uint32_t piece;
        if (!WritePiece(kContent, part, piece))
            return false;
        Append32(index, piece);
        Append32(index, uint32_t(part.size()));
        covered += part.size();
        if (++pairs == kIndexPairs) {
            uint32_t full;
            if (!WritePiece(kIndex, index, full))
                return false;
            index.clear();
            Append32(index, full);
            Append32(index, uint32_t(covered));
            pairs = 1;
        }
    }
    return WritePiece(kIndex, index, id);
}

bool Storage::FindPiece(uint32_t id, TreeCursor &cursor, Row &row) {
    if (!cursor.Seek(RowIdKey(id), mError) || Get32(cursor.Record() + kRecordHead) != id)
        return mError.Failed() ? false : mError.Damaged("a BLOB piece is missing");
    if (!DecodeRow(cursor.Record(), cursor.Length(), row, mError))
        return false;
    const FieldValue *piece = row.Find(kPieceField);
    if (!piece || piece->type != kBinary || piece->bytes.size() < 4)
        return mError.Damaged("a BLOB piece is malformed");
    uint32_t kind = Get32(reinterpret_cast<const uint8_t *>(piece->bytes.data()));
    if (kind != kContent && (kind != kIndex || piece->bytes.size() % 8 != 4))
        return mError.Damaged("a BLOB piece is malformed");
    return true;
}

bool Storage::ReadBlob(uint32_t id, std::string &data) {
    mError.Clear();
    data.clear();
    if (!mSysBlob)
        return mError.Damaged("there is no BLOB table");
    TreeCursor cursor(*mSysBlob);
    // Pieces still to read, the next on top.  Each row is one piece, and a
    // page holds fewer than 700 rows, so a chain visiting more is a loop.
    std::vector<uint32_t> pending{id};
    uint64_t budget = uint64_t(mPager.PageCount()) * 700;
    Row row;
    while (!pending.empty()) {
        if (budget-- == 0)
            return mError.Damaged("a BLOB index loops");
        uint32_t next = pending.back();
        pending.pop_back();
        if (!FindPiece(next, cursor, row))
            return false;
        const std::string &piece = row.Find(kPieceField)->bytes;
        const auto *p = reinterpret_cast<const uint8_t *>(piece.data());
        if (Get32(p) == kContent) {
            data.append(piece, 4);
            continue;
        }
        for (size_t at = piece.size(); at > 4; at -= 8)
            pending.push_back(Get32(p + at - 8));
    }
    return true;
}

bool Storage::DeleteBlob(uint32_t id) {
    mError.Clear();
    if (!mSysBlob)
        return mError.Damaged("there is no BLOB table");
    TreeCursor cursor(*mSysBlob);
    std::vector<uint32_t> pending{id};
    uint64_t budget = uint64_t(mPager.PageCount()) * 700;
    Row row;
    while (!pending.empty()) {
        if (budget-- == 0)
            return mError.Damaged("a BLOB index loops");
        uint32_t next = pending.back();
        pending.pop_back();
        if (!FindPiece(next, cursor, row) || !cursor.Delete(mError))
            return false;
        const std::string &piece = row.Find(kPieceField)->bytes;
        const auto *p = reinterpret_cast<const uint8_t *>(piece.data());
        for (size_t at = 4; Get32(p) == kIndex && at < piece.size(); at += 8)
            pending.push_back(Get32(p + at));
    }
    return true;
}

} // namespace kelp::db
