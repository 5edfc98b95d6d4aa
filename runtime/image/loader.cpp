#include "image/loader.h"

#include "base/fatal_report.h"
#include "image/report_tally.h"
#include "kelp/image.h"
#include "process/display.h"
#include "resources/resource_store.h"

#include <gtk/gtk.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <deque>
#include <vector>

namespace kelp::image {
namespace {

struct LoadedImage {
    Segments segments;
    PreparedImage prepared;
    std::vector<SymbolRow> symbols;
    bool symbolsParsed = false;
};

// Every image loaded in this process; the newest is the current one.  Code,
// resource rows and string constants point into them, so they are never
// freed: not even at exit, where strings held by other static objects (a
// conversion cache, say) are still released after this list would be gone.
std::deque<LoadedImage> &Images() {
    static auto *images = new std::deque<LoadedImage>;
    return *images;
}

LoadedImage *Current() { return Images().empty() ? nullptr : &Images().back(); }

size_t PageRound(size_t n) {
    const size_t page = size_t(sysconf(_SC_PAGESIZE));
    return (n + page - 1) / page * page;
}

// Maps writable memory for the code and its stubs.  Near the runtime's own
// code, relative calls from the image reach runtime functions directly, so
// addresses around it are asked for first.
uint8_t *MapCode(size_t bytes, Placement placement) {
    const uintptr_t self = reinterpret_cast<uintptr_t>(&MapCode) & ~uintptr_t(0xFFFF);
    const uintptr_t step = uintptr_t(64) << 20;
    std::vector<uintptr_t> hints;
    if (placement == Placement::kNearRuntime) {
        for (uintptr_t k = 1; k <= 24; ++k) {
            hints.push_back(self + k * step);
            if (self > k * step + (uintptr_t(1) << 24))
                hints.push_back(self - k * step);
        }
    } else {
        // Half way between the program and the libraries: far from both.
        hints.push_back(uintptr_t(0x3f0000000000));
        hints.push_back(uintptr_t(0x200000000000));
    }
    for (uintptr_t hint : hints) {
#ifdef MAP_FIXED_NOREPLACE
        void *p = mmap(reinterpret_cast<void *>(hint), bytes, PROT_READ | PROT_WRITE,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE, -1, 0);
#else
        void *p = mmap(reinterpret_cast<void *>(hint), bytes, PROT_READ | PROT_WRITE,
                       MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
#endif
        if (p == MAP_FAILED)
            continue;
        if (reinterpret_cast<uintptr_t>(p) == hint)
            return static_cast<uint8_t *>(p);
        munmap(p, bytes);
    }
    void *p = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return p == MAP_FAILED ? nullptr : static_cast<uint8_t *>(p);
}

constexpr const char *kSource = "runtime/image/loader.cpp";

void ReportOption(const std::string &message) {
    FatalReport(kFatalFailedAssertion, kSource, __LINE__, "0", message.c_str());
}

void RecordResources(const Segments &s) {
    if (!s.present[kResources])
        return;
    const auto &seg = s.bytes[kResources];
    ResourceReader reader(seg.data(), seg.size());
    ResourceRecord r;
    std::string error;
    while (reader.Next(r, error))
        AddResource(r.type, r.id, r.data, r.length,
                    s.resourceFileOffset ? uint32_t(s.resourceFileOffset + r.dataOffset) : 0);
    if (!error.empty())
        ReportOption("The resource segment is damaged: " + error);
}

void RecordOptions(const Segments &s) {
    if (!s.present[kOptions])
        return;
    const auto &seg = s.bytes[kOptions];
    OptionReader reader(seg.data(), seg.size());
    OptionRecord r;
    std::string error;
    GList *icons = nullptr;
    const bool display = DisplayAvailable();
    // A segment of junk is an unknown record at every byte: one report.
    ReportTally unknown(kSource);
    while (reader.Next(r, error)) {
        if (r.type == kOptionWindowIcon) {
            if (!display || r.width == 0 || r.height == 0)
                continue;
            GdkPixbuf *icon =
                gdk_pixbuf_new(GDK_COLORSPACE_RGB, TRUE, 8, int(r.width), int(r.height));
            if (!icon)
                continue;
            // The toolkit may pad its rows; the record has none.
            const int stride = gdk_pixbuf_get_rowstride(icon);
            guchar *pixels = gdk_pixbuf_get_pixels(icon);
            for (uint32_t y = 0; y < r.height; ++y)
                std::memcpy(pixels + size_t(y) * size_t(stride), r.pixels + size_t(y) * r.width * 4,
                            size_t(r.width) * 4);
            icons = g_list_prepend(icons, icon);
        } else if (r.type == kOptionVersion) {
            AddResource(kResourceVersion, 0, r.block, r.blockLength, 0);
        } else {
            unknown.Add(__LINE__, "0",
                        "Unknown option record of type " + std::to_string(r.type) + " at offset " +
                            std::to_string(r.position));
        }
    }
    unknown.Flush();
    if (!error.empty())
        ReportOption("The options segment is damaged: " + error);
    if (icons) {
        gtk_window_set_default_icon_list(icons);
        g_list_free_full(icons, g_object_unref);
    }
}

} // namespace

bool PrepareImage(Segments &&segments, PreparedImage &out, std::string &error,
                  Placement placement) {
    Images().emplace_back();
    LoadedImage &image = Images().back();
    image.segments = std::move(segments);
    Segments &s = image.segments;
    PreparedImage &p = image.prepared;

    const auto &code = s.bytes[kCode];
    const auto &link = s.bytes[kLink];
    if (code.size() > (size_t(1) << 30)) {
        error = "the code segment is too large to run";
        return false;
    }
    p.dataSize = s.bytes[kData].size();
    p.data = p.dataSize ? s.bytes[kData].data() : nullptr;
    p.codeSize = code.size();
    if (!code.empty()) {
        const size_t stubBytes = CountImports(link.data(), link.size()) * kStubSize;
        const size_t mapBytes = PageRound(code.size() + stubBytes);
        p.code = MapCode(mapBytes, placement);
        if (!p.code) {
            error = "no memory for the code segment";
            return false;
        }
        std::memcpy(p.code, code.data(), code.size());
        BindArea area;
        area.code = p.code;
        area.codeSize = code.size();
        area.data = p.data;
        area.dataSize = p.dataSize;
        area.stubs = p.code + code.size();
        area.stubCapacity = stubBytes;
        p.counts = ApplyLinkTable(link.data(), link.size(), area);
        // Written and fixed up; from now on run-only, never writable too.
        if (mprotect(p.code, mapBytes, PROT_READ | PROT_EXEC) != 0) {
            error = "the code segment could not be made executable";
            return false;
        }
        p.entry = reinterpret_cast<EntryPoint>(p.code);
    } else if (!link.empty()) {
        BindArea area;
        area.data = p.data;
        area.dataSize = p.dataSize;
        p.counts = ApplyLinkTable(link.data(), link.size(), area);
    }
    RecordResources(s);
    RecordOptions(s);
    out = p;
    return true;
}

std::string ExecutablePath(const char *argv0) {
    if (argv0 && std::strchr(argv0, '/'))
        return argv0;
    char buffer[4096];
    const ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    if (n > 0)
        return std::string(buffer, size_t(n));
    return "/proc/self/exe";
}

int LoadApplicationImage(const char *argv0, EntryPoint builtinEntry) {
    std::string path = ExecutablePath(argv0);
    Segments segments;
    std::string error;
    ReadStatus status = ReadAppendedImage(path, segments, error);
    if (status == ReadStatus::kUnreadable) {
        // argv[0] as the caller set it need not name this program's file;
        // the operating system's link always does.
        path = ExecutablePath(nullptr);
        error.clear();
        status = ReadAppendedImage(path, segments, error);
    }
    bool found = status == ReadStatus::kOk;
    if (status == ReadStatus::kDamaged || status == ReadStatus::kUnreadable) {
        std::fprintf(stderr, "kelp: %s: damaged application image: %s\n", path.c_str(),
                     error.c_str());
        if (!builtinEntry)
            return 1;
    } else if (status == ReadStatus::kNoTrailer && !builtinEntry) {
        found = ReadLooseFiles("", segments);
    }
    if (!found && !builtinEntry) {
        std::fprintf(stderr,
                     "kelp: no application image: %s carries none and there is no code.dat in "
                     "the current folder\n",
                     path.c_str());
        return 1;
    }
    PreparedImage prepared;
    if (found && !PrepareImage(std::move(segments), prepared, error)) {
        std::fprintf(stderr, "kelp: %s: %s\n", path.c_str(), error.c_str());
        if (!builtinEntry)
            return 1;
    }
    EntryPoint entry = builtinEntry ? builtinEntry : prepared.entry;
    if (!entry) {
        std::fprintf(stderr, "kelp: %s: the application image has no code\n", path.c_str());
        return 1;
    }
    entry();
    return 0;
}

} // namespace kelp::image

extern "C" void *CodeBase(void) {
    auto *image = kelp::image::Current();
    return image ? image->prepared.code : nullptr;
}

extern "C" void *DataBase(void) {
    auto *image = kelp::image::Current();
    return image ? image->prepared.data : nullptr;
}

extern "C" int LookupCodeSymbol(const void *address, const char **name, uint32_t *offset) {
    using namespace kelp::image;
    LoadedImage *image = Current();
    if (!image || !image->prepared.code)
        return 0;
    const auto *a = static_cast<const uint8_t *>(address);
    if (a < image->prepared.code || a >= image->prepared.code + image->prepared.codeSize)
        return 0;
    if (!image->symbolsParsed) {
        image->symbolsParsed = true;
        const auto &seg = image->segments.bytes[kSymbols];
        std::string error;
        if (!ParseSymbols(seg.data(), seg.size(), image->symbols, error))
            std::fprintf(stderr, "kelp: the symbol table is damaged: %s\n", error.c_str());
    }
    const uint32_t at = uint32_t(a - image->prepared.code);
    const SymbolRow *best = nullptr;
    for (const SymbolRow &row : image->symbols)
        if (row.codeOffset <= at)
            best = &row; // the last row at or below wins
    if (!best)
        return 0;
    // The names live in the symbol segment, which is kept, and end in a NUL.
    if (name)
        *name = best->name.data();
    if (offset)
        *offset = at - best->codeOffset;
    return 1;
}
