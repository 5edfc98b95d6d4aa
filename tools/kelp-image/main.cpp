// kelp-image: packs application images and shows what is in them.
//
//   kelp-image pack -o OUT [-r RUNTIME] SOURCE... [--resource TYPE:ID:FILE]...
//                   [--plugin ID:LIBRARY]...
//       SOURCE is a folder of loose segment files, or the segment files
//       themselves in order: code, data, link table[, symbols, resources,
//       options].  Writes a copy of RUNTIME (by default the kelp program
//       beside this tool) with the image appended.  A plug-in goes in as a
//       "KPPl" resource that carries the library's file name.
//   kelp-image info FILE|FOLDER
//       Lists the segments, link records (imports by name), resources and
//       options of an executable with an image, or of a folder of loose files.
#include "image/image_format.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

using namespace kelp::image;
using kelp::AppendU32;
using kelp::ReadU32;

namespace {

int Usage() {
    std::fprintf(stderr,
                 "usage: kelp-image pack -o OUT [-r RUNTIME] (FOLDER | CODE DATA LINK [SYMBOLS "
                 "RSRC OPTIONS]) [--resource TYPE:ID:FILE]... [--plugin ID:LIBRARY]...\n"
                 "       kelp-image info FILE|FOLDER\n");
    return 2;
}

bool IsFolder(const std::string &path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool ReadWhole(const std::string &path, std::vector<uint8_t> &out) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return false;
    out.assign(std::istreambuf_iterator<char>(in), {});
    return !in.bad();
}

std::string ToolFolder() {
    char buffer[4096];
    const ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    if (n <= 0)
        return ".";
    std::string path(buffer, size_t(n));
    return path.substr(0, path.rfind('/'));
}

void AppendResource(std::vector<uint8_t> &segment, uint32_t type, uint16_t id,
                    const std::vector<uint8_t> &data) {
    AppendU32(segment, type);
    segment.push_back(uint8_t(id));
    segment.push_back(uint8_t(id >> 8));
    AppendU32(segment, 0);
    AppendU32(segment, uint32_t(data.size()));
    segment.insert(segment.end(), data.begin(), data.end());
}

// "WAVE:3:file.wav" -> a resource record appended to the segment.
bool AddResourceArgument(const std::string &arg, std::vector<uint8_t> &segment) {
    const auto first = arg.find(':');
    const auto second = arg.find(':', first == std::string::npos ? 0 : first + 1);
    if (first != 4 || second == std::string::npos) {
        std::fprintf(
            stderr, "kelp-image: a resource is TYPE:ID:FILE with a four-character type, not '%s'\n",
            arg.c_str());
        return false;
    }
    char *end = nullptr;
    const std::string idText = arg.substr(first + 1, second - first - 1);
    const unsigned long id = std::strtoul(idText.c_str(), &end, 10);
    if (idText.empty() || *end || id > 65535) {
        std::fprintf(stderr, "kelp-image: resource id '%s' is not a number from 0 to 65535\n",
                     idText.c_str());
        return false;
    }
    const std::string file = arg.substr(second + 1);
    std::vector<uint8_t> data;
    if (!ReadWhole(file, data)) {
        std::fprintf(stderr, "kelp-image: cannot read %s\n", file.c_str());
        return false;
    }
    AppendResource(segment, FourCC(arg.c_str()), uint16_t(id), data);
    return true;
}

// "65535:build/lib/libX.so" -> a "KPPl" record: the file's name (its length
// in one byte first), then the library's bytes.
bool AddPluginArgument(const std::string &arg, std::vector<uint8_t> &segment) {
    const auto colon = arg.find(':');
    const std::string file = colon == std::string::npos ? std::string() : arg.substr(colon + 1);
    const std::string name = file.substr(file.rfind('/') + 1);
    if (name.empty() || name.size() > 255) {
        std::fprintf(stderr,
                     "kelp-image: a plug-in is ID:FILE with a file name of 1 to 255 "
                     "bytes, not '%s'\n",
                     arg.c_str());
        return false;
    }
    std::vector<uint8_t> library;
    if (!ReadWhole(file, library)) {
        std::fprintf(stderr, "kelp-image: cannot read %s\n", file.c_str());
        return false;
    }
    char *end = nullptr;
    const std::string idText = arg.substr(0, colon);
    const unsigned long id = std::strtoul(idText.c_str(), &end, 10);
    if (idText.empty() || *end || id > 65535) {
        std::fprintf(stderr, "kelp-image: plug-in id '%s' is not a number from 0 to 65535\n",
                     idText.c_str());
        return false;
    }
    std::vector<uint8_t> body{uint8_t(name.size())};
    body.insert(body.end(), name.begin(), name.end());
    body.insert(body.end(), library.begin(), library.end());
    AppendResource(segment, FourCC("KPPl"), uint16_t(id), body);
    return true;
}

int Pack(int argc, char **argv) {
    std::string out, runtime = ToolFolder() + "/kelp";
    std::vector<std::string> sources, resources, plugins;
    for (int i = 0; i < argc; ++i) {
        const std::string a = argv[i];
        if ((a == "-o" || a == "-r" || a == "--resource" || a == "--plugin") && i + 1 < argc) {
            const std::string value = argv[++i];
            if (a == "-o")
                out = value;
            else if (a == "-r")
                runtime = value;
            else if (a == "--plugin")
                plugins.push_back(value);
            else
                resources.push_back(value);
        } else if (!a.empty() && a[0] == '-') {
            return Usage();
        } else {
            sources.push_back(a);
        }
    }
    if (out.empty() || sources.empty())
        return Usage();
    Segments segments;
    if (sources.size() == 1 && IsFolder(sources[0])) {
        if (!ReadLooseFiles(sources[0], segments)) {
            std::fprintf(stderr, "kelp-image: %s has no code.dat\n", sources[0].c_str());
            return 1;
        }
    } else {
        if (sources.size() < 3 || sources.size() > 6)
            return Usage();
        for (size_t i = 0; i < sources.size(); ++i) {
            if (!ReadWhole(sources[i], segments.bytes[i])) {
                std::fprintf(stderr, "kelp-image: cannot read %s\n", sources[i].c_str());
                return 1;
            }
        }
    }
    for (const auto &r : resources)
        if (!AddResourceArgument(r, segments.bytes[kResources]))
            return 1;
    for (const auto &p : plugins)
        if (!AddPluginArgument(p, segments.bytes[kResources]))
            return 1;
    std::vector<uint8_t> bytes;
    if (!ReadWhole(runtime, bytes) || bytes.empty()) {
        std::fprintf(stderr, "kelp-image: cannot read the runtime %s\n", runtime.c_str());
        return 1;
    }
    // A runtime that already carries an image is packed without it, so that
    // packing twice gives the same file.  The trailer's length says where the
    // old image begins; the segments read from it may cover less (absent
    // segments, bytes behind the last one).
    Segments old;
    std::string error;
    if (ReadAppendedImage(runtime, old, error) == ReadStatus::kOk) {
        const size_t imageBytes = kTrailerSize + size_t(old.imageLength);
        if (imageBytes <= bytes.size())
            bytes.resize(bytes.size() - imageBytes);
    }
    const auto tail = EncodeAppendedImage(segments);
    bytes.insert(bytes.end(), tail.begin(), tail.end());
    std::ofstream file(out, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char *>(bytes.data()), std::streamsize(bytes.size()));
    file.close();
    if (!file || chmod(out.c_str(), 0755) != 0) {
        std::fprintf(stderr, "kelp-image: cannot write %s\n", out.c_str());
        return 1;
    }
    return 0;
}

// Holes of a chain, stopping at the code's end or at a hole seen before.
size_t CountHoles(const std::vector<uint8_t> &code, uint32_t head, size_t width, bool &damaged) {
    std::set<uint32_t> seen;
    for (uint32_t at = head; at != 0;) {
        if (at > code.size() || code.size() - at < width || !seen.insert(at).second) {
            damaged = true;
            break;
        }
        at = ReadU32(code.data() + at);
    }
    return seen.size();
}

int Info(const std::string &path) {
    Segments s;
    std::string error;
    if (IsFolder(path)) {
        if (!ReadLooseFiles(path, s))
            std::printf("no code.dat in %s\n", path.c_str());
        std::printf("loose files in %s\n", path.c_str());
    } else {
        switch (ReadAppendedImage(path, s, error)) {
        case ReadStatus::kOk: std::printf("image appended to %s\n", path.c_str()); break;
        case ReadStatus::kNoTrailer:
            std::fprintf(stderr, "kelp-image: %s carries no application image\n", path.c_str());
            return 1;
        default:
            std::fprintf(stderr, "kelp-image: %s: %s\n", path.c_str(), error.c_str());
            return 1;
        }
    }
    int status = 0;
    std::printf("segments:\n");
    for (int i = 0; i < kSegmentCount; ++i)
        std::printf("  %-10s %zu bytes%s\n", SegmentName(i), s.bytes[i].size(),
                    s.present[i] ? "" : " (absent)");

    std::printf("link records:\n");
    const auto &link = s.bytes[kLink];
    LinkTableReader reader(link.data(), link.size());
    LinkRecord r;
    size_t counts[6] = {}, unknown = 0;
    while (reader.Next(r, error)) {
        if (r.type > kLinkStringReference) {
            ++unknown;
            continue;
        }
        ++counts[r.type];
        bool damaged = false;
        if (r.type == kLinkImport) {
            const size_t holes = CountHoles(s.bytes[kCode], r.value, r.relative ? 4 : 8, damaged);
            std::printf("  import %.*s (%s, %zu hole%s)%s\n", int(r.name.size()), r.name.data(),
                        r.relative ? "relative" : "absolute", holes, holes == 1 ? "" : "s",
                        damaged ? " [chain damaged]" : "");
        } else if (r.type == kLinkSoftImport) {
            const size_t holes = CountHoles(s.bytes[kCode], r.value, 4, damaged);
            std::printf("  soft import %.*s from %.*s (%zu hole%s)%s\n", int(r.name.size()),
                        r.name.data(), int(r.library.size()), r.library.data(), holes,
                        holes == 1 ? "" : "s", damaged ? " [chain damaged]" : "");
        }
        if (damaged)
            status = 1;
    }
    std::printf("  %zu data references, %zu code references, %zu string references, %zu padding, "
                "%zu unknown\n",
                counts[kLinkDataReference], counts[kLinkCodeReference],
                counts[kLinkStringReference], counts[kLinkPadding], unknown);
    if (!error.empty()) {
        std::printf("  damaged: %s\n", error.c_str());
        status = 1;
        error.clear();
    }

    std::printf("resources:\n");
    const auto &rsrc = s.bytes[kResources];
    ResourceReader resources(rsrc.data(), rsrc.size());
    ResourceRecord rr;
    while (resources.Next(rr, error))
        std::printf("  %s %5u %u bytes\n", FourCCText(rr.type).c_str(), rr.id, rr.length);
    if (!error.empty()) {
        std::printf("  damaged: %s\n", error.c_str());
        status = 1;
        error.clear();
    }

    std::printf("options:\n");
    const auto &opts = s.bytes[kOptions];
    OptionReader options(opts.data(), opts.size());
    OptionRecord o;
    while (options.Next(o, error)) {
        if (o.type == kOptionWindowIcon) {
            std::printf("  icon %ux%u\n", o.width, o.height);
        } else if (o.type == kOptionVersion) {
            const auto &v = o.version;
            std::printf("  version %d %d %d %d stage %d region %d \"%.*s\" \"%.*s\" \"%.*s\"\n",
                        v.words[0], v.words[1], v.words[2], v.words[3], v.words[4], v.words[5],
                        int(v.shortVersion.size()), v.shortVersion.data(),
                        int(v.longVersion.size()), v.longVersion.data(), int(v.packageInfo.size()),
                        v.packageInfo.data());
        } else {
            std::printf("  unknown option type %d at %zu\n", o.type, o.position);
            status = 1;
        }
    }
    if (!error.empty()) {
        std::printf("  damaged: %s\n", error.c_str());
        status = 1;
    }
    std::vector<SymbolRow> symbols;
    if (!ParseSymbols(s.bytes[kSymbols].data(), s.bytes[kSymbols].size(), symbols, error)) {
        std::printf("symbols: damaged: %s\n", error.c_str());
        status = 1;
    } else if (!symbols.empty()) {
        std::printf("symbols:\n");
        for (const auto &row : symbols)
            std::printf("  %08x %.*s\n", row.codeOffset, int(row.name.size()), row.name.data());
    }
    return status;
}

} // namespace

int main(int argc, char **argv) {
    if (argc < 2)
        return Usage();
    const std::string command = argv[1];
    if (command == "pack")
        return Pack(argc - 2, argv + 2);
    if (command == "info" && argc == 3)
        return Info(argv[2]);
    return Usage();
}
