// kelp-image link: the command around the linker.  Nothing is written unless
// the whole link succeeds, so a failed link never leaves an image that looks
// good.
//
//   --out FILE              the image alone (its segments and trailer): what
//                           `cat kelp FILE > program` makes a program of
//   --append-to KELP        with --out: FILE is a copy of KELP, without any
//                           image it carried, with this image appended
//   --loose FOLDER          the six segment files in FOLDER
//   --entry NAME            the function the image starts in (KelpMain)
//   --soft FUNCTION:LIBRARY a system library's function the code calls
//   --soft-data VARIABLE:LIBRARY
//                           a system library's variable the code reads (such
//                           as stdout): the image gets a copy of its value,
//                           taken when the image starts
//   --runtime KELP          whose export table imports bind against (by
//                           default the --append-to program, else the kelp
//                           beside this tool)
//   --resource, --plugin    as for pack
//   --options FILE          an options segment (icons, version block)
#include "link_command.h"

#include "export_list.h"
#include "linker.h"
#include "pack.h"
#include "tool_files.h"

#include <sys/stat.h>

#include <cstdio>
#include <string>
#include <vector>

namespace kelp::tool {
namespace {

int Failed(const std::string &line) {
    std::fprintf(stderr, "kelp-image: %s\n", line.c_str());
    return 1;
}

bool WriteLooseFolder(const std::string &folder, const image::Segments &s) {
    mkdir(folder.c_str(), 0755);
    for (int i = 0; i < image::kSegmentCount; ++i)
        if (!WriteWholeFile(folder + "/" + image::kLooseFileNames[i], s.bytes[i], false))
            return false;
    return true;
}

} // namespace

int LinkCommand(int argc, char **argv) {
    LinkInput input;
    std::string out, appendTo, loose, runtime, options;
    std::vector<std::string> resources, plugins;
    for (int i = 0; i < argc; ++i) {
        const std::string a = argv[i];
        const bool valued = a == "--out" || a == "--append-to" || a == "--loose" ||
                            a == "--entry" || a == "--soft" || a == "--soft-data" ||
                            a == "--runtime" || a == "--resource" || a == "--plugin" ||
                            a == "--options";
        if (valued && i + 1 < argc) {
            const std::string v = argv[++i];
            if (a == "--out")
                out = v;
            else if (a == "--append-to")
                appendTo = v;
            else if (a == "--loose")
                loose = v;
            else if (a == "--entry")
                input.entry = v;
            else if (a == "--runtime")
                runtime = v;
            else if (a == "--resource")
                resources.push_back(v);
            else if (a == "--plugin")
                plugins.push_back(v);
            else if (a == "--options")
                options = v;
            else {
                const auto colon = v.find(':');
                if (colon == 0 || colon == std::string::npos || colon + 1 == v.size())
                    return Failed("a soft import is NAME:LIBRARY, not '" + v + "'");
                (a == "--soft" ? input.soft : input.softData)
                    .push_back({v.substr(0, colon), v.substr(colon + 1)});
            }
        } else if (!a.empty() && a[0] == '-') {
            return Usage();
        } else {
            input.objects.push_back(a);
        }
    }
    if (input.objects.empty() || (out.empty() == loose.empty()) ||
        (!appendTo.empty() && out.empty()))
        return Usage();
    if (runtime.empty())
        runtime = appendTo.empty() ? DefaultRuntime() : appendTo;

    std::string error;
    if (!RuntimeExports(runtime, input.exports, error))
        return Failed(error);
    image::Segments segments;
    LinkStats stats;
    if (!LinkObjects(input, segments, stats, error))
        return Failed(error);
    for (const auto &r : resources)
        if (!AddResourceArgument(r, segments.bytes[image::kResources]))
            return 1;
    for (const auto &p : plugins)
        if (!AddPluginArgument(p, segments.bytes[image::kResources]))
            return 1;
    if (!options.empty() && !ReadWholeFile(options, segments.bytes[image::kOptions]))
        return Failed("cannot read the options segment " + options);

    if (!loose.empty())
        return WriteLooseFolder(loose, segments) ? 0 : Failed("cannot write into " + loose);
    if (!appendTo.empty())
        return WriteAppendedTo(appendTo, segments, out) ? 0 : 1;
    return WriteWholeFile(out, image::EncodeAppendedImage(segments), false)
               ? 0
               : Failed("cannot write " + out);
}

} // namespace kelp::tool
