#pragma once
// The file mechanism under every stream, volume and database: one C stream
// on a path of the host file system.  Paths are the UTF-8 bytes the user
// gave, passed to the system unchanged.
//
// Failure channel: operations answer false and leave errno in `LastError()`;
// a permission other than read (1) or read-write (3) is a fatal assertion.
#include "streams/random_access_mechanism.h"

#include <cstdio>
#include <string>

namespace kelp {

// Reserved for what every data file shares, whatever system it runs on.
class DataFile : public RandomAccessMechanism {};

class UnixDataFile : public DataFile {
public:
    enum Permission { kRead = 1, kReadWrite = 3 };

    UnixDataFile() = default;
    ~UnixDataFile() override;

    bool Open(const std::string &path, int permission);
    // Makes the file empty, or creates it.
    bool Create(const std::string &path);
    // An empty name is an anonymous file that vanishes when closed; any other
    // name is created under /tmp.
    bool OpenTemporary(const std::string &name);

    bool Read(void *buffer, int64_t count, int64_t *outRead) override;
    bool Write(const void *buffer, int64_t count) override;
    bool Close() override;
    bool IsEOF() override;
    void SetPosition(int64_t offset) override;
    int64_t GetLength() override;
    bool SetLength(int64_t length) override;
    int64_t GetPosition() override;
    bool Flush() override;
    // Flush, then wait until the bytes are on the disk: what a commit needs.
    bool Sync();

    bool IsOpen() const { return mFile != nullptr; }

private:
    bool Fail();
    FILE *mFile = nullptr; // null while closed
};

} // namespace kelp
