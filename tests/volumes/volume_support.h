#pragma once
// Shared by the volume tests: volumes on real files, and the independent
// reader (read_volume.py) asked about them.
#include "files/unix_data_file.h"
#include "volumes/vfile.h"
#include "volumes/vhfs_volume.h"

#include <cstdio>
#include <memory>
#include <string>

namespace kelp::test {

inline RandomAccessMechanism *DiskFile(const std::string &path, bool create) {
    auto *file = new UnixDataFile();
    if (!(create ? file->Create(path) : file->Open(path, UnixDataFile::kReadWrite))) {
        delete file;
        return nullptr;
    }
    return file;
}

inline double FixedClock() { return 100.0; }

inline std::unique_ptr<volume::VHFSVolume> NewVolume(const std::string &path) {
    return volume::VHFSVolume::CreateVolume(DiskFile(path, true), true, nullptr, &FixedClock);
}

inline std::unique_ptr<volume::VHFSVolume> OpenVolume(const std::string &path) {
    return std::make_unique<volume::VHFSVolume>(DiskFile(path, false), true);
}

// Runs the reader on the volume and prints `expression` of its result `v`.
inline std::string Py(const std::string &volume, const std::string &expression,
                      const std::string &convert = "") {
    const std::string command = "python3 -c \"import sys; sys.path.insert(0, '" KELP_VOLUME_READER
                                "'); import read_volume as r, hashlib; v = r.read('" +
                                volume + "'" + convert + "); print(" + expression + ")\" 2>&1";
    std::string out;
    if (FILE *pipe = popen(command.c_str(), "r")) {
        char buffer[4096];
        for (size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
            out.append(buffer, n);
        pclose(pipe);
    }
    while (!out.empty() && out.back() == '\n')
        out.pop_back();
    return out;
}

inline bool WriteEntry(volume::VHFSVolume &vhfs, const volume::EntryRef &parent,
                       const std::string &name, const std::string &bytes) {
    volume::EntryRef ref = vhfs.CreateEntry(parent, name, volume::kUnknownType);
    std::unique_ptr<volume::VFile> file = ref.type ? vhfs.OpenFile(ref) : nullptr;
    return file && file->Write(bytes.data(), int64_t(bytes.size())) && file->Close();
}

inline std::string ReadEntry(volume::VHFSVolume &vhfs, const volume::EntryRef &ref) {
    std::unique_ptr<volume::VFile> file = vhfs.OpenFile(ref);
    if (!file)
        return "(no file)";
    std::string bytes(size_t(file->GetLength()), '\0');
    int64_t got = 0;
    if (!bytes.empty() &&
        (!file->Read(bytes.data(), int64_t(bytes.size()), &got) || got != int64_t(bytes.size())))
        return "(short read)";
    return bytes;
}

} // namespace kelp::test
