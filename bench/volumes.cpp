// Virtual volumes against the host's own folders and a SQLite archive
// (`sqlite3 -A`, one command per phase): creating and writing, reading,
// listing and deleting 10,000 files of 1 KB and 10 files of 100 MB, with
// the bytes each store spends per file beyond the content.  Prints a table;
// the volume's phases end with the volume on the disk, the folder's with
// sync(), so that neither leaves its writes in memory.
//   build/bin/bench_volumes [count size count size ...]
#include "files/unix_data_file.h"
#include "volumes/vfile.h"
#include "volumes/vhfs_volume.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using namespace kelp;
using namespace kelp::volume;

const std::string kDir = "/tmp/kelp-bench-volumes";

struct Phase {
    const char *name;
    double seconds;
};

struct Result {
    const char *store;
    std::vector<Phase> phases;
    double overheadPerFile;
};

double Since(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

template <typename F> double Timed(F &&work) {
    const Clock::time_point start = Clock::now();
    work();
    return Since(start);
}

bool SyncFile(RandomAccessMechanism &disk) { return static_cast<UnixDataFile &>(disk).Sync(); }

int64_t DiskBytes(const std::string &path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 ? int64_t(st.st_blocks) * 512 : 0;
}

std::string Name(int i) { return "file" + std::to_string(i); }

Result Volume(int count, size_t size, const std::string &content) {
    const std::string path = kDir + "/bench.vol";
    auto *disk = new UnixDataFile();
    disk->Create(path);
    auto vhfs = VHFSVolume::CreateVolume(disk, true, &SyncFile);
    EntryRef root = vhfs->GetRoot();
    std::vector<EntryRef> refs;
    std::string back(size, '\0');
    Result r{"volume", {}, 0};
    r.phases.push_back({"create+write", Timed([&] {
                            for (int i = 0; i < count; ++i) {
                                refs.push_back(vhfs->CreateEntry(root, Name(i), kUnknownType));
                                auto file = vhfs->OpenFile(refs.back());
                                file->Write(content.data(), int64_t(size));
                            }
                            vhfs->Flush();
                        })});
    r.overheadPerFile = double(DiskBytes(path) - int64_t(size) * count) / count;
    r.phases.push_back({"read", Timed([&] {
                            for (const EntryRef &ref : refs) {
                                int64_t got = 0;
                                vhfs->OpenFile(ref)->Read(back.data(), int64_t(size), &got);
                                if (size_t(got) != size || back != content)
                                    std::abort();
                            }
                        })});
    r.phases.push_back({"list", Timed([&] {
                            std::vector<EntryRef> listed;
                            vhfs->GetFolderContents(root, listed);
                            if (listed.size() != size_t(count))
                                std::abort();
                        })});
    r.phases.push_back({"delete", Timed([&] {
                            for (const EntryRef &ref : refs)
                                vhfs->Delete(ref);
                            vhfs->Flush();
                        })});
    vhfs.reset();
    unlink(path.c_str());
    return r;
}

Result Folder(int count, size_t size, const std::string &content) {
    const std::string dir = kDir + "/folder";
    mkdir(dir.c_str(), 0777);
    std::string back(size, '\0');
    Result r{"folder", {}, 0};
    r.phases.push_back({"create+write", Timed([&] {
                            for (int i = 0; i < count; ++i) {
                                FILE *f = std::fopen((dir + "/" + Name(i)).c_str(), "w");
                                std::fwrite(content.data(), 1, size, f);
                                std::fclose(f);
                            }
                            sync();
                        })});
    int64_t used = DiskBytes(dir);
    for (int i = 0; i < count; ++i)
        used += DiskBytes(dir + "/" + Name(i));
    r.overheadPerFile = double(used - int64_t(size) * count) / count;
    r.phases.push_back({"read", Timed([&] {
                            for (int i = 0; i < count; ++i) {
                                FILE *f = std::fopen((dir + "/" + Name(i)).c_str(), "r");
                                if (std::fread(back.data(), 1, size, f) != size || back != content)
                                    std::abort();
                                std::fclose(f);
                            }
                        })});
    r.phases.push_back({"list", Timed([&] {
                            int n = 0;
                            DIR *d = opendir(dir.c_str());
                            while (readdir(d))
                                ++n;
                            closedir(d);
                            if (n != count + 2)
                                std::abort();
                        })});
    return r; // the archive is made from this folder, then it goes
}

Result Archive(int count, size_t size) {
    const std::string db = kDir + "/bench.sqlar", dir = kDir + "/folder", out = kDir + "/out";
    auto run = [](const std::string &command) {
        if (std::system(command.c_str()) != 0)
            std::abort();
    };
    Result r{"sqlite3 -A", {}, 0};
    r.phases.push_back(
        {"create+write", Timed([&] { run("sqlite3 " + db + " -A -c -C " + dir + " ."); })});
    r.overheadPerFile = double(DiskBytes(db) - int64_t(size) * count) / count;
    run("rm -rf " + out + " && mkdir " + out);
    r.phases.push_back({"read", Timed([&] { run("sqlite3 " + db + " -A -x -C " + out); })});
    r.phases.push_back({"list", Timed([&] { run("sqlite3 " + db + " -A -t > /dev/null"); })});
    r.phases.push_back({"delete", Timed([&] { run("sqlite3 " + db + " -A -r -g '*'"); })});
    run("rm -rf " + out + " " + db);
    return r;
}

void Print(const Result &r, int count, size_t size) {
    std::printf("%-11s %6d x %9zu B", r.store, count, size);
    for (const Phase &p : r.phases)
        std::printf("  %s %9.0f op/s %8.1f MB/s", p.name, count / p.seconds,
                    p.name[0] == 'l' ? 0.0 : double(size) * count / p.seconds / 1e6);
    std::printf("  overhead %.0f B/file\n", r.overheadPerFile);
}

} // namespace

int main(int argc, char **argv) {
    std::vector<std::pair<int, size_t>> runs = {{10000, 1024}, {10, 100u << 20}};
    if (argc > 2) {
        runs.clear();
        for (int i = 1; i + 1 < argc; i += 2)
            runs.push_back({std::atoi(argv[i]), size_t(std::atoll(argv[i + 1]))});
    }
    std::system(("rm -rf " + kDir + " && mkdir -p " + kDir).c_str());
    for (auto [count, size] : runs) {
        std::string content(size, '\0');
        for (size_t i = 0; i < size; ++i)
            content[i] = char(i * 131 + i / 7);
        Print(Volume(count, size, content), count, size);
        Result folder = Folder(count, size, content);
        Result archive = Archive(count, size);
        folder.phases.push_back({"delete", Timed([&] {
                                     for (int i = 0; i < count; ++i)
                                         unlink((kDir + "/folder/" + Name(i)).c_str());
                                     sync();
                                 })});
        Print(folder, count, size);
        Print(archive, count, size);
    }
    std::system(("rm -rf " + kDir).c_str());
    return 0;
}
