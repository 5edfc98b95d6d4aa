// The soft loader: dlopen and dlsym behind one pair of report texts.
#include "base/soft_library.h"

#include "base/ascii.h"
#include "base/fatal_report.h"

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <vector>

namespace kelp {
namespace {

constexpr const char *kFile = "runtime/base/soft_library.cpp";

SoftLibrary *gLibraries = nullptr; // newest first; never freed

void *TryOpen(const std::string &path) { return dlopen(path.c_str(), RTLD_LAZY); }

// A library installed only as a symbolic link that the loader's search won't
// take (for instance a development link in the current folder): follow the
// links by hand.  A ring of links ends after a fixed number of steps.
void *FollowLinks(std::string path) {
    for (int step = 0; step < 40; ++step) {
        struct stat st;
        if (lstat(path.c_str(), &st) != 0) {
            path += ".so";
            if (lstat(path.c_str(), &st) != 0)
                return nullptr;
        }
        if (!S_ISLNK(st.st_mode))
            return nullptr;
        char target[1024] = {};
        if (readlink(path.c_str(), target, sizeof target - 1) < 0)
            return nullptr;
        std::string next = target;
        // A relative link counts from the folder that holds it.
        const auto slash = path.rfind('/');
        if (!next.empty() && next[0] != '/' && slash != std::string::npos)
            next = path.substr(0, slash + 1) + next;
        if (void *handle = TryOpen(next))
            return handle;
        path = next;
    }
    return nullptr;
}

} // namespace

void *SoftLibrary::Symbol(const std::string &function, bool quiet) const {
    if (!handle)
        return nullptr; // reported when it failed to load
    void *code = dlsym(handle, function.c_str());
    if (!code && !quiet)
        FatalReport(kFatalFailedAssertion, kFile, __LINE__, "functionEntry",
                    ("Could not resolve function '" + function + "' in " + name).c_str());
    return code;
}

SoftLibrary &OpenSoftLibrary(const std::string &name, bool quiet) {
    for (SoftLibrary *lib = gLibraries; lib; lib = lib->next)
        if (AsciiEqualNoCase(lib->name, name))
            return *lib;
    auto *lib = new SoftLibrary;
    lib->name = name;
    lib->handle = TryOpen(name);
    if (!lib->handle && name.find(".so") == std::string::npos)
        lib->handle = TryOpen(name + ".so");
    if (!lib->handle)
        lib->handle = FollowLinks(name);
    if (!lib->handle && !quiet)
        FatalReport(kFatalFailedAssertion, kFile, __LINE__, "lib->mLibraryHandle",
                    ("Missing shared library " + name).c_str());
    lib->next = gLibraries;
    gLibraries = lib;
    return *lib;
}

void *OpenOptionalLibrary(const char *path) { return path ? dlopen(path, RTLD_LAZY) : nullptr; }

void *OptionalSymbol(void *handle, const char *function) {
    return handle && function ? dlsym(handle, function) : nullptr;
}

void *OpenPluginLibrary(const std::string &path, std::string &error) {
    dlerror();
    void *handle = dlopen(path.c_str(), RTLD_LAZY);
    if (!handle) {
        const char *text = dlerror();
        error = text ? text : "the library could not be loaded";
    }
    return handle;
}

void *PluginLibrarySymbol(void *handle, const char *function, std::string &error) {
    dlerror();
    void *code = handle && function ? dlsym(handle, function) : nullptr;
    if (!code) {
        const char *text = dlerror();
        error = text ? text : std::string("undefined symbol: ") + (function ? function : "");
    }
    return code;
}

void ClosePluginLibrary(void *handle) {
    if (handle)
        dlclose(handle);
}

namespace {

// The libraries of a linker script's GROUP ( ... ), in order; empty when the
// text has no such group.
std::vector<std::string> GroupMembers(const std::string &text) {
    const size_t group = text.find("GROUP");
    const size_t open = group == std::string::npos ? group : text.find('(', group);
    const size_t close = open == std::string::npos ? open : text.find(')', open);
    std::vector<std::string> members;
    if (close == std::string::npos)
        return members;
    std::string piece;
    for (size_t i = open + 1; i <= close; ++i) {
        const char c = text[i];
        if (c == ' ' || c == '\t' || c == '\n' || c == ')') {
            if (!piece.empty())
                members.push_back(piece);
            piece.clear();
        } else {
            piece += c;
        }
    }
    return members;
}

} // namespace

void *OpenLibraryByItsForms(const std::string &library) {
    if (library.empty())
        return nullptr;
    for (const std::string &form :
         {library, "/usr/local/lib/" + library, "/usr/lib/" + library, library + ".so",
          "/usr/local/lib/" + library + ".so", "/usr/lib/" + library + ".so"})
        if (void *handle = TryOpen(form))
            return handle;
    // Debian keeps its development scripts in the multiarch folders as well.
    for (const char *folder : {"/usr/local/lib/", "/usr/lib/", "/lib/",
                               "/usr/lib/x86_64-linux-gnu/", "/lib/x86_64-linux-gnu/"}) {
        std::ifstream script(folder + library + ".so");
        if (!script)
            continue;
        std::stringstream text;
        text << script.rdbuf();
        for (const std::string &member : GroupMembers(text.str()))
            if (void *handle = TryOpen(member))
                return handle;
        return nullptr; // the first script found decides
    }
    return nullptr;
}

void *FindLoadedSymbol(const char *library, const char *function) {
    if (void *code = dlsym(RTLD_DEFAULT, function))
        return code;
    void *handle = library ? dlopen(library, RTLD_LAZY | RTLD_NOLOAD) : nullptr;
    void *code = handle ? dlsym(handle, function) : nullptr;
    if (handle)
        dlclose(handle);
    return code;
}

} // namespace kelp
