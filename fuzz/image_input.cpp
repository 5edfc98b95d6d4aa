// The fuzz entry: does what the loader does with an image, up to but not
// including entering it, on memory that is released again after each input:
// the loader itself keeps every image until the process ends, which a million
// inputs can't afford.
#include "image_input.h"

#include "base/fatal_report.h"
#include "exports/export_table.h"
#include "image/binder.h"
#include "image/image_format.h"
#include "kelp/strings.h"
#include "strings/kstring.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

namespace img = kelp::image;

enum FileKind { kRegular, kMissing, kFolder, kFifo };

// A few real functions under names the corpus uses, so that chains get
// walked and written; the image's code is never run.
const RelocEntry kRows[] = {
    {"RuntimeLockString", reinterpret_cast<void *>(&RuntimeLockString), nullptr, nullptr},
    {"RuntimeUnlockString", reinterpret_cast<void *>(&RuntimeUnlockString), nullptr, nullptr},
    {"RuntimeAddString", reinterpret_cast<void *>(&RuntimeAddString), nullptr, nullptr},
    {"RuntimeStringCompare", reinterpret_cast<void *>(&RuntimeStringCompare), nullptr, nullptr},
};

size_t gReports = 0;
volatile size_t gSink = 0;
void CountReport(int, const char *, int, const char *, const char *) { ++gReports; }

// A private folder for the files of one input, made once per process.
const std::string &Folder() {
    static const std::string folder = [] {
        // Memory-backed where there is such a folder: each input writes and
        // removes up to six files.
        char shm[] = "/dev/shm/kelp-fuzz-XXXXXX", tmp[] = "/tmp/kelp-fuzz-XXXXXX";
        const char *made = mkdtemp(shm);
        if (made == nullptr)
            made = mkdtemp(tmp);
        if (made == nullptr) {
            std::perror("mkdtemp");
            std::abort();
        }
        return std::string(made);
    }();
    // Each input removes its files; the folder goes when the process ends.
    static const bool cleaned = std::atexit([] { rmdir(Folder().c_str()); }) == 0;
    (void)cleaned;
    return folder;
}

void Remove(const std::string &path) {
    if (unlink(path.c_str()) != 0)
        rmdir(path.c_str());
}

// Puts a file of the kind at path; bytes go into a regular one.
void Place(const std::string &path, FileKind kind, const uint8_t *bytes, size_t size) {
    Remove(path);
    if (kind == kFolder) {
        mkdir(path.c_str(), 0700);
    } else if (kind == kFifo) {
        mkfifo(path.c_str(), 0600);
    } else if (kind == kRegular) {
        const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (fd < 0)
            return;
        for (size_t done = 0; done < size;) {
            const ssize_t n = write(fd, bytes + done, size - done);
            if (n <= 0)
                break;
            done += size_t(n);
        }
        close(fd);
    }
}

// The binder and the parsers on a copy of the segments, as PrepareImage runs
// them, with the stubs' room behind the code.
void BindAndParse(img::Segments &s) {
    auto &code = s.bytes[img::kCode];
    auto &link = s.bytes[img::kLink];
    auto &data = s.bytes[img::kData];
    const size_t stubBytes = img::CountImports(link.data(), link.size()) * img::kStubSize;
    std::vector<uint8_t> area(code.size() + stubBytes);
    if (!code.empty())
        std::memcpy(area.data(), code.data(), code.size());
    img::BindArea bind;
    bind.code = area.empty() ? nullptr : area.data();
    bind.codeSize = code.size();
    bind.data = data.empty() ? nullptr : data.data();
    bind.dataSize = data.size();
    bind.stubs = bind.code ? bind.code + code.size() : nullptr;
    bind.stubCapacity = stubBytes;
    img::ApplyLinkTable(link.data(), link.size(), bind);
    if (bind.data)
        kelp::UnregisterLiteralArea(bind.data);

    std::string error;
    const auto &rsrc = s.bytes[img::kResources];
    img::ResourceReader resources(rsrc.data(), rsrc.size());
    img::ResourceRecord resource;
    size_t sum = 0;
    while (resources.Next(resource, error))
        sum += resource.length ? resource.data[resource.length - 1] : 0;
    const auto &opts = s.bytes[img::kOptions];
    img::OptionReader options(opts.data(), opts.size());
    img::OptionRecord option;
    while (options.Next(option, error))
        if (option.type == img::kOptionWindowIcon && option.width && option.height)
            sum += option.pixels[size_t(option.width) * option.height * 4 - 1];
    std::vector<img::SymbolRow> rows;
    const auto &symbols = s.bytes[img::kSymbols];
    img::ParseSymbols(symbols.data(), symbols.size(), rows, error);
    for (const img::SymbolRow &row : rows)
        sum += row.name.size();
    // Every byte a record points at is read, so a wrong length shows.
    gSink = gSink + sum;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const bool ready = [] {
        kelp::SetStaticExportRows(kRows, sizeof kRows / sizeof kRows[0]);
        kelp::SetFatalReportHook(&CountReport);
        return true;
    }();
    (void)ready;
    if (size == 0)
        return 0;
    const std::string &folder = Folder();
    img::Segments segments;
    std::string error;
    if ((data[0] & 1) == 0) {
        const std::string path = folder + "/app";
        Place(path, FileKind(((data[0] >> 1) & 3) == 0 ? kRegular : (data[0] >> 1) & 3), data + 1,
              size - 1);
        const bool read = img::ReadAppendedImage(path, segments, error) == img::ReadStatus::kOk;
        Remove(path);
        if (read)
            BindAndParse(segments);
        return 0;
    }
    size_t at = 7;
    for (int s = 0; s < img::kSegmentCount; ++s) {
        const FileKind kind = 1 + size_t(s) < size ? FileKind(data[1 + s] % 4) : kMissing;
        size_t length = 0;
        if (size - std::min(at, size) >= 4) {
            length = kelp::ReadU32(data + at);
            at += 4;
            length = std::min(length, size - at);
        }
        Place(folder + "/" + img::kLooseFileNames[s], kind, data + std::min(at, size), length);
        at += length;
    }
    const bool found = img::ReadLooseFiles(folder, segments);
    for (int s = 0; s < img::kSegmentCount; ++s)
        Remove(folder + "/" + img::kLooseFileNames[s]);
    if (found)
        BindAndParse(segments);
    return 0;
}
