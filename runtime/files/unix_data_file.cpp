#include "files/unix_data_file.h"

#include "base/fatal_report.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace kelp {

UnixDataFile::~UnixDataFile() { Close(); }

bool UnixDataFile::Fail() {
    mLastError = errno ? errno : EIO;
    return false;
}

bool UnixDataFile::Open(const std::string &path, int permission) {
    if (permission != kRead && permission != kReadWrite) {
        FatalReport(kFatalFailedAssertion, __FILE__, __LINE__,
                    "Invalid permissions passed in to UnixDataFile::Open", "");
        return false;
    }
    Close();
    mFile = std::fopen(path.c_str(), permission == kRead ? "r" : "r+");
    if (!mFile)
        return Fail();
    // Large reads: a text stream asks for 1,024 bytes at a time, and each
    // refill of the C stream's own buffer is a system call.
    std::setvbuf(mFile, nullptr, _IOFBF, 1 << 16);
    return true;
}

bool UnixDataFile::Create(const std::string &path) {
    Close();
    mFile = std::fopen(path.c_str(), "w+");
    return mFile ? true : Fail();
}

bool UnixDataFile::OpenTemporary(const std::string &name) {
    Close();
    mFile = name.empty() ? std::tmpfile() : std::fopen(("/tmp/" + name).c_str(), "w+");
    return mFile ? true : Fail();
}

bool UnixDataFile::Read(void *buffer, int64_t count, int64_t *outRead) {
    if (outRead)
        *outRead = 0;
    if (count <= 0)
        return true;
    if (!buffer) {
        FatalReport(kFatalFailedAssertion, __FILE__, __LINE__, "data", "");
        return false;
    }
    if (!mFile)
        return false;
    errno = 0;
    size_t got = std::fread(buffer, 1, static_cast<size_t>(count), mFile);
    if (outRead)
        *outRead = static_cast<int64_t>(got);
    if (std::ferror(mFile) && errno != 0) {
        std::clearerr(mFile);
        return Fail();
    }
    std::clearerr(mFile);
    return got > 0;
}

bool UnixDataFile::Write(const void *buffer, int64_t count) {
    if (count <= 0)
        return true;
    if (!mFile)
        return false;
    errno = 0;
    size_t put = std::fwrite(buffer, 1, static_cast<size_t>(count), mFile);
    if (put != static_cast<size_t>(count)) {
        std::clearerr(mFile);
        return Fail();
    }
    return true;
}

bool UnixDataFile::Close() {
    if (!mFile)
        return false;
    bool ok = Flush();
    if (std::fclose(mFile) != 0)
        ok = Fail();
    mFile = nullptr;
    return ok;
}

bool UnixDataFile::IsEOF() { return GetPosition() >= GetLength(); }

void UnixDataFile::SetPosition(int64_t offset) {
    if (mFile && fseeko(mFile, static_cast<off_t>(offset < 0 ? 0 : offset), SEEK_SET) != 0)
        Fail();
}

int64_t UnixDataFile::GetPosition() { return mFile ? static_cast<int64_t>(ftello(mFile)) : 0; }

int64_t UnixDataFile::GetLength() {
    if (!mFile)
        return 0;
    // No seeking: a seek throws away the C stream's read buffer, and EOF
    // asks for the length often.  Bytes still in the write buffer end at the
    // current position, so the true length is the larger of the two.
    struct stat st;
    if (fstat(fileno(mFile), &st) != 0) {
        Fail();
        return 0;
    }
    off_t here = ftello(mFile);
    return static_cast<int64_t>(here > st.st_size ? here : st.st_size);
}

bool UnixDataFile::SetLength(int64_t length) {
    if (!mFile)
        return false;
    if (std::fflush(mFile) != 0 ||
        ftruncate(fileno(mFile), static_cast<off_t>(length < 0 ? 0 : length)) != 0)
        return Fail();
    return true;
}

bool UnixDataFile::Flush() {
    if (mFile && std::fflush(mFile) != 0)
        return Fail();
    return true;
}

bool UnixDataFile::Sync() {
    if (!mFile)
        return false;
    if (!Flush())
        return false;
    return fsync(fileno(mFile)) == 0 ? true : Fail();
}

} // namespace kelp
