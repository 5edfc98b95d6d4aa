// kelp-image info: everything an image holds, in words.
#include "info.h"

#include "image/image_format.h"
#include "image_walk.h"
#include "tool_files.h"

#include <cstdio>
#include <set>
#include <string>
#include <vector>

using namespace kelp::image;
using kelp::ReadU32;

namespace kelp::tool {

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
        } else if (r.type == kLinkDataReference || r.type == kLinkCodeReference) {
            std::printf("  %s reference at code %08x\n",
                        r.type == kLinkDataReference ? "data" : "code", r.value);
        } else if (r.type == kLinkStringReference) {
            std::string text;
            uint64_t at = 0;
            if (ConstantText(s, r.value, text, at)) {
                std::printf("  string reference at code %08x to data %08llx \"%s\"\n", r.value,
                            static_cast<unsigned long long>(at), text.c_str());
            } else {
                std::printf("  string reference at code %08x [no constant there]\n", r.value);
                status = 1;
            }
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

} // namespace kelp::tool
