// kelp-image pack: an image from segment files, appended to the runtime.
#include "pack.h"

#include "image/image_format.h"
#include "tool_files.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

using namespace kelp::image;
using kelp::AppendU32;

namespace kelp::tool {

bool WriteAppendedTo(const std::string &runtime, const Segments &segments, const std::string &out) {
    std::vector<uint8_t> bytes;
    if (!ReadWholeFile(runtime, bytes) || bytes.empty()) {
        std::fprintf(stderr, "kelp-image: cannot read the runtime %s\n", runtime.c_str());
        return false;
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
    if (!WriteWholeFile(out, bytes, true)) {
        std::fprintf(stderr, "kelp-image: cannot write %s\n", out.c_str());
        return false;
    }
    return true;
}

namespace {

void AppendResource(std::vector<uint8_t> &segment, uint32_t type, uint16_t id,
                    const std::vector<uint8_t> &data) {
    AppendU32(segment, type);
    segment.push_back(uint8_t(id));
    segment.push_back(uint8_t(id >> 8));
    AppendU32(segment, 0);
    AppendU32(segment, uint32_t(data.size()));
    segment.insert(segment.end(), data.begin(), data.end());
}

} // namespace

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
    if (!ReadWholeFile(file, data)) {
        std::fprintf(stderr, "kelp-image: cannot read %s\n", file.c_str());
        return false;
    }
    AppendResource(segment, FourCC(arg.c_str()), uint16_t(id), data);
    return true;
}

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
    if (!ReadWholeFile(file, library)) {
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
            if (!ReadWholeFile(sources[i], segments.bytes[i])) {
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
    if (!WriteAppendedTo(runtime, segments, out))
        return 1;
    return 0;
}

} // namespace kelp::tool
