// The sorter: rows gather in memory until their values pass the budget;
// each full budget is sorted and written to a run file of its own; at the
// end the runs (and the last rows) are merged through a heap.  Sorting is
// n log n in memory and the merge is log(runs) per row.
#include "database/sql_result.h"

#include "database/sql_value.h"
#include "files/unix_data_file.h"

#include <algorithm>
#include <cstring>
#include <queue>

namespace kelp::db {

namespace {

size_t RowSize(const Values &row) {
    size_t size = 0;
    for (const FieldValue &v : row)
        size += 16 + v.bytes.size();
    return size;
}

// A run holds, per row and column, a 16-bit type, a 32-bit length and the
// bytes, written straight into the run's buffer.
void AppendValue(std::string &out, const FieldValue &v) {
    Append16(out, v.type);
    if (v.type == kFloat || v.type == kDouble) {
        Append32(out, 8);
        out.append(reinterpret_cast<const char *>(&v.real), 8);
    } else if (v.type == kDate || v.type == kTime) {
        Append32(out, 6);
        for (uint16_t p : v.parts)
            Append16(out, p);
    } else if (v.type == kText || v.type == kBinary || IsBlobType(v.type)) {
        Append32(out, uint32_t(v.bytes.size()));
        out += v.bytes;
    } else {
        Append32(out, 8);
        Append32(out, uint32_t(uint64_t(v.integer) >> 32));
        Append32(out, uint32_t(v.integer));
    }
}

// Reads a run back through a buffer: a value is a few bytes, and a read
// call for each would cost more than the sort itself.
class RunReader {
public:
    explicit RunReader(UnixDataFile *file) : mFile(file) { mFile->SetPosition(0); }
    bool AtEnd() { return !Fill(1); }
    // The next `n` bytes, or null when the run ends first.
    const uint8_t *Take(size_t n) {
        if (!Fill(n))
            return nullptr;
        const auto *p = reinterpret_cast<const uint8_t *>(mBuffer.data() + mAt);
        mAt += n;
        return p;
    }

private:
    static constexpr size_t kChunk = 32768;
    bool Fill(size_t n) {
        if (mBuffer.size() - mAt >= n)
            return true;
        mBuffer.erase(0, mAt);
        mAt = 0;
        size_t have = mBuffer.size(), want = std::max(n - have, kChunk);
        mBuffer.resize(have + want);
        int64_t got = 0;
        if (!mFile->Read(mBuffer.data() + have, int64_t(want), &got) || got < 0)
            got = 0;
        mBuffer.resize(have + size_t(got));
        return mBuffer.size() >= n;
    }
    UnixDataFile *mFile;
    std::string mBuffer;
    size_t mAt = 0;
};

bool ReadValue(RunReader &run, FieldValue &v) {
    const uint8_t *head = run.Take(6);
    if (!head)
        return false;
    v = FieldValue{};
    v.type = uint8_t(Get16(head));
    uint32_t length = Get32(head + 2);
    const uint8_t *p = run.Take(length);
    if (!p)
        return false;
    if (v.type == kFloat || v.type == kDouble) {
        if (length != 8)
            return false;
        std::memcpy(&v.real, p, 8);
    } else if (v.type == kDate || v.type == kTime) {
        if (length != 6)
            return false;
        for (int i = 0; i < 3; ++i)
            v.parts[i] = Get16(p + 2 * i);
    } else if (v.type == kText || v.type == kBinary || IsBlobType(v.type)) {
        v.bytes.assign(reinterpret_cast<const char *>(p), length);
    } else if (v.type != kNull) {
        if (length != 8)
            return false;
        v.integer = int64_t(uint64_t(Get32(p)) << 32 | Get32(p + 4));
    }
    return true;
}

class MergeResult : public ResultSet {
public:
    MergeResult(std::vector<SortKey> keys, std::vector<std::unique_ptr<UnixDataFile>> runs,
                size_t width)
        : mKeys(std::move(keys)), mRuns(std::move(runs)), mWidth(width), mHeap(Later{this}) {}

    bool Fetch(Values &row, Error &error) override {
        if (!mStarted) {
            mStarted = true;
            mHeads.resize(mRuns.size());
            for (size_t i = 0; i < mRuns.size(); ++i) {
                mReaders.emplace_back(mRuns[i].get());
                if (!Load(i, error))
                    return false;
            }
        }
        if (mHeap.empty())
            return false;
        size_t run = mHeap.top();
        mHeap.pop();
        row = std::move(mHeads[run]);
        return Load(run, error);
    }

private:
    struct Later {
        MergeResult *self;
        bool operator()(size_t a, size_t b) const {
            int c = RowSorter::CompareRows(self->mKeys, self->mHeads[a], self->mHeads[b]);
            return c > 0 || (c == 0 && a > b); // earlier runs first among equals
        }
    };

    bool Load(size_t run, Error &error) {
        RunReader &reader = mReaders[run];
        if (reader.AtEnd())
            return true;
        Values row(mWidth);
        for (FieldValue &v : row)
            if (!ReadValue(reader, v))
                return error.Set(kFileError, "Unable to read back sorted rows");
        mHeads[run] = std::move(row);
        mHeap.push(run);
        return true;
    }

    std::vector<SortKey> mKeys;
    std::vector<std::unique_ptr<UnixDataFile>> mRuns;
    std::vector<RunReader> mReaders; // one per run, made at the first fetch
    size_t mWidth;
    std::vector<Values> mHeads;
    std::priority_queue<size_t, std::vector<size_t>, Later> mHeap;
    bool mStarted = false;
};

} // namespace

RowSorter::~RowSorter() = default;

int RowSorter::CompareRows(const std::vector<SortKey> &keys, const Values &a, const Values &b) {
    for (const SortKey &k : keys) {
        int c = CompareForSort(a[size_t(k.item)], b[size_t(k.item)]);
        if (c)
            return k.descending ? -c : c;
    }
    for (size_t i = 0; i < a.size() && i < b.size(); ++i)
        if (int c = CompareForSort(a[i], b[i]))
            return c;
    return 0;
}

bool RowSorter::Add(Values row, Error &error) {
    mWidth = row.size();
    mUsed += RowSize(row);
    mRows.push_back(std::move(row));
    return mUsed < kBudget || Spill(error);
}

bool RowSorter::Spill(Error &error) {
    std::stable_sort(mRows.begin(), mRows.end(), [this](const Values &a, const Values &b) {
        return CompareRows(mKeys, a, b) < 0;
    });
    auto file = std::make_unique<UnixDataFile>();
    std::string bytes;
    for (const Values &row : mRows)
        for (const FieldValue &v : row)
            AppendValue(bytes, v);
    if (!file->OpenTemporary("") || !file->Write(bytes.data(), int64_t(bytes.size())))
        return error.Set(kFileError, "Unable to write sorted rows to a temporary file");
    mRuns.push_back(std::move(file));
    mRows.clear();
    mUsed = 0;
    return true;
}

std::unique_ptr<ResultSet> RowSorter::Finish(Error &error) {
    if (mRuns.empty()) {
        std::stable_sort(mRows.begin(), mRows.end(), [this](const Values &a, const Values &b) {
            return CompareRows(mKeys, a, b) < 0;
        });
        return std::make_unique<RowsResult>(std::move(mRows));
    }
    if (!mRows.empty() && !Spill(error))
        return nullptr;
    return std::make_unique<MergeResult>(mKeys, std::move(mRuns), mWidth);
}

} // namespace kelp::db
