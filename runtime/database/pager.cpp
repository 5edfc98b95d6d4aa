#include "database/pager.h"

#include "files/unix_data_file.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace kelp::db {

namespace {

constexpr uint32_t kJournalMagic = 0x4B44424A;
constexpr uint32_t kNoPage = 0xFFFFFFFF;

int64_t PageOffset(uint32_t number) { return kHeaderSize + int64_t(number) * kPageSize; }

// The smallest record a page of this type may hold.
uint32_t MinimumRecord(uint32_t type) {
    switch (type) {
    case kDirectoryLeaf: return kDirectoryHead;
    case kTableLeaf: return kRowHead;
    default: return kInteriorHead;
    }
}

// Null when the page's records tile its used bytes exactly; else what is wrong.
const char *CheckPage(const uint8_t *bytes) {
    uint32_t type = Get32(bytes + kPageType);
    if (type != kDirectoryLeaf && type != kTableLeaf && type != kInterior)
        return "a page has an unknown type";
    uint32_t used = Get16(bytes + kPageUsed);
    if (used > kMaxRecordBlock)
        return "a page claims more bytes than it holds";
    for (uint32_t at = 0; at < used;) {
        uint32_t length = used - at < 2 ? 0 : Get16(bytes + kPageHead + at);
        if (length < MinimumRecord(type) || length > used - at)
            return "a record length is out of range";
        if (type == kDirectoryLeaf && Get32(bytes + kPageHead + at + 14) > length - kDirectoryHead)
            return "a table name runs past its record";
        at += length;
    }
    return nullptr;
}

uint32_t Checksum(const uint8_t *p, size_t n, uint32_t h = 2166136261u) {
    for (size_t i = 0; i < n; ++i)
        h = (h ^ p[i]) * 16777619u;
    return h;
}

bool SyncFolderOf(const std::string &path) {
    size_t slash = path.rfind('/');
    std::string folder = slash == std::string::npos ? "." : path.substr(0, slash ? slash : 1);
    int fd = open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    if (fd < 0)
        return false;
    bool ok = fsync(fd) == 0;
    close(fd);
    return ok;
}

bool WriteAll(int fd, const void *data, size_t n) {
    const char *p = static_cast<const char *>(data);
    while (n) {
        ssize_t w = write(fd, p, n);
        if (w < 0 && errno == EINTR)
            continue;
        if (w <= 0)
            return false;
        p += w;
        n -= size_t(w);
    }
    return true;
}

} // namespace

Pager::Pager() = default;

Pager::~Pager() {
    Error ignored;
    Close(ignored);
}

void Pager::Reset() {
    mCache.clear();
    mChanged.clear();
    mInTransaction = false;
    mChainHead = kNoPage;
    mFile.reset();
    ++mGeneration;
}

bool Pager::Create(const std::string &path, Error &error) {
    Reset();
    auto file = std::make_unique<UnixDataFile>();
    if (!file->Create(path))
        return error.Set(kFileError, "Unable to create the database file " + path + ": " +
                                         std::strerror(file->LastError()));
    mFile = std::move(file);
    mPath = path;
    mReadOnly = false;
    mPageCount = mDiskPages = 0;
    mTransaction = 1;
    mNextRowId = 1;
    mDirectoryRoot = 0;
    if (!mFile->SetLength(kHeaderSize) || !WriteHeader(false, error) || !SyncFile() ||
        !SyncFolderOf(path))
        return error.Failed() ? false : error.Set(kFileError, "Unable to write " + path);
    return true;
}

bool Pager::Open(const std::string &path, Error &error) {
    Reset();
    auto file = std::make_unique<UnixDataFile>();
    mReadOnly = false;
    if (!file->Open(path, UnixDataFile::kReadWrite)) {
        mReadOnly = true;
        if (!file->Open(path, UnixDataFile::kRead))
            return error.Set(kFileError,
                             "Unable to open " + path + ": " + std::strerror(file->LastError()));
    }
    mFile = std::move(file);
    mPath = path;
    if (!ReadHeader(error)) {
        mFile.reset();
        return false;
    }
    return true;
}

bool Pager::OpenReadOnly(std::unique_ptr<RandomAccessMechanism> bytes, Error &error) {
    Reset();
    mFile = std::move(bytes);
    mPath.clear();
    mReadOnly = true;
    if (!ReadHeader(error)) {
        mFile.reset();
        return false;
    }
    return true;
}

bool Pager::ReadHeader(Error &error) {
    uint8_t h[kHeaderSize];
    int64_t got = 0;
    mFile->SetPosition(0);
    if (!mFile->Read(h, kHeaderSize, &got) || got != kHeaderSize)
        return error.Damaged("the header is too short");
    if (Get32(h) != kMagic || Get32(h + 4) != kFormat)
        return error.Set(kFileError, "This is not a database file");
    int64_t pages = (mFile->GetLength() - kHeaderSize) / kPageSize;
    if (pages < 1 || pages > kMaxPages)
        return error.Damaged("the page count is out of range");
    mPageCount = mDiskPages = uint32_t(pages);
    if (Get32(h + kHeaderOpenFlag) != 0) {
        if (mReadOnly)
            return error.Damaged("it was left inside a transaction and cannot be written");
        if (!Recover(error))
            return false;
        return ReadHeader(error);
    }
    mTransaction = Get32(h + kHeaderTransaction) + 1;
    mNextRowId = Get32(h + kHeaderNextRowId);
    mDirectoryRoot = Get32(h + kHeaderDirectoryRoot);
    if (mDirectoryRoot >= mPageCount)
        return error.Damaged("the directory root is out of range");
    return true;
}

bool Pager::WriteHeader(bool open, Error &error) {
    uint8_t h[kHeaderSize]{};
    Put32(h, kMagic);
    Put32(h + 4, kFormat);
    Put32(h + kHeaderTransaction, mTransaction);
    Put32(h + kHeaderOpenFlag, open ? 1 : 0);
    Put32(h + kHeaderNextRowId, mNextRowId);
    Put32(h + kHeaderDirectoryRoot, mDirectoryRoot);
    mFile->SetPosition(0);
    if (!mFile->Write(h, kHeaderSize) || !mFile->Flush())
        return error.Set(kFileError, "Unable to write the database header");
    return true;
}

bool Pager::ReadRaw(uint32_t number, uint8_t *bytes) {
    int64_t got = 0;
    mFile->SetPosition(PageOffset(number));
    return mFile->Read(bytes, kPageSize, &got) && got == kPageSize;
}

bool Pager::WritePage(const Page &page) {
    mFile->SetPosition(PageOffset(page.number));
    return mFile->Write(page.bytes, kPageSize);
}

bool Pager::SyncFile() {
    if (!mSync)
        return mFile->Flush();
    if (auto *file = dynamic_cast<UnixDataFile *>(mFile.get()))
        return file->Sync();
    return mFile->Flush();
}

Page *Pager::Get(uint32_t number, Error &error) {
    auto found = mCache.find(number);
    if (found != mCache.end())
        return found->second.get();
    if (number >= mPageCount) {
        error.Damaged("a page number is out of range");
        return nullptr;
    }
    auto page = std::make_unique<Page>();
    page->number = number;
    if (!ReadRaw(number, page->bytes)) {
        error.Set(kFileError, "Unable to read a page of the database file");
        return nullptr;
    }
    if (const char *wrong = CheckPage(page->bytes)) {
        error.Damaged(wrong);
        return nullptr;
    }
    // Dead rows of finished transactions go now; only cached pages keep them.
    if (page->Type() == kTableLeaf) {
        uint8_t *records = page->Records();
        uint32_t used = page->Used(), at = 0;
        while (at < used) {
            uint32_t length = Get16(records + at);
            if (records[at + 2] == kDead && Get24(records + at + 3) != (mTransaction & 0xFFFFFF)) {
                std::memmove(records + at, records + at + length, used - at - length);
                used -= length;
                std::memset(records + used, 0, length);
            } else {
                at += length;
            }
        }
        page->SetUsed(used);
    }
    Page *raw = page.get();
    mCache.emplace(number, std::move(page));
    return raw;
}

Page *Pager::Allocate(uint32_t type, uint32_t tree, Error &error) {
    if (mReadOnly) {
        error.Set(kFileError, "The database is read-only");
        return nullptr;
    }
    if (mPageCount >= kMaxPages) {
        error.Set(kFileError, "The database file is full");
        return nullptr;
    }
    if (!Begin(error))
        return nullptr;
    auto page = std::make_unique<Page>();
    page->number = mPageCount++;
    Put32(page->bytes + kPageType, type);
    Put32(page->bytes + kPageTree, tree == kNewTree ? page->number : tree);
    Page *raw = page.get();
    mCache[raw->number] = std::move(page);
    return Change(raw, error) ? raw : nullptr;
}

bool Pager::Begin(Error &error) {
    if (mInTransaction)
        return true;
    if (mReadOnly)
        return error.Set(kFileError, "The database is read-only");
    mSavedRowId = mNextRowId;
    mSavedRoot = mDirectoryRoot;
    mSavedPageCount = mPageCount;
    mInTransaction = true;
    return WriteHeader(true, error);
}

bool Pager::Change(Page *page, Error &error) {
    if (!Begin(error))
        return false;
    if (Get32(page->bytes + kPageTransaction) != mTransaction || !page->dirty) {
        if (!page->dirty)
            mChanged.push_back(page->number);
        Put32(page->bytes + kPageTransaction, mTransaction);
        Put32(page->bytes + kPagePrevious, mChainHead);
        mChainHead = page->number;
    }
    page->dirty = true;
    return true;
}

bool Pager::TakeRowId(uint32_t &id, Error &error) {
    if (!Begin(error))
        return false;
    id = mNextRowId++;
    return true;
}

bool Pager::SetDirectoryRoot(uint32_t page, Error &error) {
    if (!Begin(error))
        return false;
    mDirectoryRoot = page;
    return true;
}

// The journal: magic, transaction, page count before it, page images count,
// the header before it, then each overwritten page's number and old bytes,
// then a checksum of everything before.  It is kept between commits (its
// transaction number tells a stale one) and removed on close.
bool Pager::WriteJournal(Error &error) {
    std::string journal = mPath + "-journal";
    std::vector<uint8_t> data(16 + kHeaderSize);
    Put32(data.data(), kJournalMagic);
    Put32(data.data() + 4, mTransaction);
    Put32(data.data() + 8, mSavedPageCount);
    uint8_t *header = data.data() + 16;
    Put32(header, kMagic);
    Put32(header + 4, kFormat);
    Put32(header + kHeaderTransaction, mTransaction - 1);
    Put32(header + kHeaderNextRowId, mSavedRowId);
    Put32(header + kHeaderDirectoryRoot, mSavedRoot);
    uint32_t count = 0;
    for (uint32_t number : mChanged) {
        if (number >= mDiskPages)
            continue;
        size_t at = data.size();
        data.resize(at + 4 + kPageSize);
        Put32(data.data() + at, number);
        if (!ReadRaw(number, data.data() + at + 4))
            return error.Set(kFileError, "Unable to read a page of the database file");
        ++count;
    }
    Put32(data.data() + 12, count);
    uint8_t sum[4];
    Put32(sum, Checksum(data.data(), data.size()));
    bool existed = access(journal.c_str(), F_OK) == 0;
    int fd = open(journal.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    bool ok = fd >= 0 && WriteAll(fd, data.data(), data.size()) && WriteAll(fd, sum, 4) &&
              (!mSync || fsync(fd) == 0);
    if (fd >= 0)
        close(fd);
    if (ok && mSync && !existed)
        ok = SyncFolderOf(journal);
    return ok ? true : error.Set(kFileError, "Unable to write the journal " + journal);
}

bool Pager::Commit(Error &error) {
    if (!mInTransaction)
        return true;
    if (!mPath.empty() && !WriteJournal(error))
        return false;
    bool ok = WriteHeader(true, error);
    for (uint32_t number : mChanged)
        ok = ok && WritePage(*mCache[number]);
    ok = ok && SyncFile() && WriteHeader(false, error) && SyncFile();
    if (!ok)
        return error.Failed() ? false : error.Set(kFileError, "Unable to write the database file");
    for (uint32_t number : mChanged)
        mCache[number]->dirty = false;
    mChanged.clear();
    mDiskPages = mPageCount;
    mInTransaction = false;
    mChainHead = kNoPage;
    ++mTransaction;
    return true;
}

bool Pager::Rollback(Error &error) {
    if (!mInTransaction)
        return true;
    for (uint32_t number : mChanged)
        mCache.erase(number);
    mChanged.clear();
    mNextRowId = mSavedRowId;
    mDirectoryRoot = mSavedRoot;
    mPageCount = mSavedPageCount;
    mInTransaction = false;
    mChainHead = kNoPage;
    ++mGeneration;
    bool ok = WriteHeader(false, error);
    ++mTransaction;
    return ok;
}

bool Pager::RestoreFromJournal(uint32_t transaction) {
    std::string journal = mPath + "-journal";
    int fd = open(journal.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    std::vector<uint8_t> data;
    uint8_t buffer[1 << 16];
    for (ssize_t n; (n = read(fd, buffer, sizeof buffer)) > 0;)
        data.insert(data.end(), buffer, buffer + n);
    close(fd);
    size_t fixed = 16 + kHeaderSize;
    if (data.size() < fixed + 4 || Get32(data.data()) != kJournalMagic ||
        Get32(data.data() + 4) != transaction)
        return false;
    uint32_t count = Get32(data.data() + 12);
    if (count > kMaxPages || data.size() != fixed + size_t(count) * (4 + kPageSize) + 4 ||
        Get32(data.data() + data.size() - 4) != Checksum(data.data(), data.size() - 4))
        return false; // torn or stale: the file itself was not written yet
    uint32_t pages = Get32(data.data() + 8);
    bool ok = true;
    for (uint32_t i = 0; i < count && ok; ++i) {
        const uint8_t *entry = data.data() + fixed + size_t(i) * (4 + kPageSize);
        mFile->SetPosition(PageOffset(Get32(entry)));
        ok = mFile->Write(entry + 4, kPageSize);
    }
    mFile->SetPosition(0);
    ok = ok && mFile->Write(data.data() + 16, kHeaderSize) && mFile->SetLength(PageOffset(pages)) &&
         SyncFile();
    return ok;
}

// Undoes what pages written before a commit carry: records whose marks name
// the transaction swap states, as Rollback in memory would have it.
bool Pager::FlipMarks(uint32_t transaction) {
    uint8_t bytes[kPageSize];
    int64_t pages = (mFile->GetLength() - kHeaderSize) / kPageSize;
    for (uint32_t n = 0; n < pages && n < kMaxPages; ++n) {
        if (!ReadRaw(n, bytes))
            return false;
        if (CheckPage(bytes) || Get32(bytes + kPageType) == kInterior ||
            Get32(bytes + kPageTransaction) != transaction)
            continue;
        uint8_t *records = bytes + kPageHead;
        for (uint32_t at = 0, used = Get16(bytes + kPageUsed); at < used;
             at += Get16(records + at)) {
            uint8_t *r = records + at;
            if (Get24(r + 3) != (transaction & 0xFFFFFF))
                continue;
            r[2] = r[2] == kLive ? kDead : kLive;
            Put24(r + 3, 0);
        }
        mFile->SetPosition(PageOffset(n));
        if (!mFile->Write(bytes, kPageSize))
            return false;
    }
    return true;
}

bool Pager::Recover(Error &error) {
    uint8_t h[kHeaderSize];
    int64_t got = 0;
    mFile->SetPosition(0);
    if (!mFile->Read(h, kHeaderSize, &got) || got != kHeaderSize)
        return error.Damaged("the header is too short");
    uint32_t transaction = Get32(h + kHeaderTransaction);
    RestoreFromJournal(transaction);
    if (!FlipMarks(transaction))
        return error.Set(kFileError, "Unable to repair the database file");
    mFile->SetPosition(0);
    if (!mFile->Read(h, kHeaderSize, &got) || got != kHeaderSize)
        return error.Damaged("the header is too short");
    Put32(h + kHeaderOpenFlag, 0);
    mFile->SetPosition(0);
    if (!mFile->Write(h, kHeaderSize) || !SyncFile())
        return error.Set(kFileError, "Unable to repair the database file");
    return true;
}

bool Pager::Close(Error &error) {
    if (!mFile)
        return true;
    bool ok = mReadOnly || Commit(error);
    if (!ok)
        Rollback(error);
    if (!mPath.empty() && !mReadOnly)
        unlink((mPath + "-journal").c_str());
    mFile->Close();
    Reset();
    return ok;
}

} // namespace kelp::db
