// kelp-image check: binds an image on paper.  Imports are matched against
// the runtime's export table as the binder matches them (without regard to
// case), soft imports are looked up in the system's libraries as the binder
// loads them, and the chains, references and string constants are walked
// with the binder's bounds.  Nothing of the image runs.
#include "check.h"

#include "export_list.h"
#include "image_walk.h"
#include "pack.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <cctype>
#include <cstdio>
#include <set>
#include <string>

namespace kelp::tool {
namespace {

std::string Folded(std::string_view name) {
    std::string s(name);
    for (char &c : s)
        c = char(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

// The library as the binder opens it: by name, then with ".so" behind a name
// that has none.
void *OpenLibrary(const std::string &name) {
    void *handle = dlopen(name.c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (!handle && name.find(".so") == std::string::npos)
        handle = dlopen((name + ".so").c_str(), RTLD_LAZY | RTLD_LOCAL);
    return handle;
}

} // namespace

int Check(int argc, char **argv) {
    std::string path, runtime;
    for (int i = 0; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--runtime" && i + 1 < argc)
            runtime = argv[++i];
        else if (!a.empty() && a[0] != '-' && path.empty())
            path = a;
        else
            return Usage();
    }
    if (path.empty())
        return Usage();
    image::Segments s;
    std::string error;
    if (!ReadAnyImage(path, s, error)) {
        std::fprintf(stderr, "kelp-image: %s\n", error.c_str());
        return 1;
    }
    // A program that carries its image carries its runtime too.
    struct stat st;
    if (runtime.empty())
        runtime = s.imageLength && stat(path.c_str(), &st) == 0 &&
                          uint64_t(st.st_size) > s.imageLength + image::kTrailerSize
                      ? path
                      : DefaultRuntime();
    std::vector<std::string> exports;
    if (!RuntimeExports(runtime, exports, error)) {
        std::fprintf(stderr, "kelp-image: %s\n", error.c_str());
        return 1;
    }
    std::set<std::string> offered;
    for (const auto &e : exports)
        offered.insert(Folded(e));

    size_t bound = 0, missing = 0, damaged = 0;
    const auto &code = s.bytes[image::kCode];
    image::LinkTableReader reader(s.bytes[image::kLink].data(), s.bytes[image::kLink].size());
    image::LinkRecord r;
    while (reader.Next(r, error)) {
        const std::string name(r.name);
        bool chainDamaged = false;
        switch (r.type) {
        case image::kLinkImport: {
            const size_t holes = CountHoles(code, r.value, r.relative ? 4 : 8, chainDamaged);
            if (!offered.count(Folded(name))) {
                std::printf("missing export %s (%zu call%s)\n", name.c_str(), holes,
                            holes == 1 ? "" : "s");
                ++missing;
            } else {
                ++bound;
            }
            break;
        }
        case image::kLinkSoftImport: {
            const size_t holes = CountHoles(code, r.value, 4, chainDamaged);
            const std::string library(r.library);
            void *handle = OpenLibrary(library);
            if (!handle) {
                std::printf("missing library %s (for %s, %zu call%s)\n", library.c_str(),
                            name.c_str(), holes, holes == 1 ? "" : "s");
                ++missing;
            } else if (!dlsym(handle, name.c_str())) {
                std::printf("missing function %s in %s (%zu call%s)\n", name.c_str(),
                            library.c_str(), holes, holes == 1 ? "" : "s");
                ++missing;
            } else {
                ++bound;
            }
            break;
        }
        case image::kLinkDataReference:
        case image::kLinkCodeReference:
            if (r.value > code.size() || code.size() - r.value < 8) {
                std::printf("damaged: a reference names code offset %u, outside the code\n",
                            r.value);
                ++damaged;
            }
            break;
        case image::kLinkStringReference: {
            std::string text;
            uint64_t at = 0;
            if (!ConstantText(s, r.value, text, at)) {
                std::printf("damaged: the string reference at code offset %u names no constant\n",
                            r.value);
                ++damaged;
            }
            break;
        }
        default: break;
        }
        if (chainDamaged) {
            std::printf("damaged: the chain of %s leaves the code or loops\n", name.c_str());
            ++damaged;
        }
    }
    if (!error.empty()) {
        std::printf("damaged: %s\n", error.c_str());
        ++damaged;
    }
    std::printf("%zu name%s bind, %zu missing, %zu damaged\n", bound, bound == 1 ? "" : "s",
                missing, damaged);
    return missing || damaged ? 1 : 0;
}

} // namespace kelp::tool
