#pragma once
// Code found while the program runs instead of linked: the shared libraries
// that an image's soft imports name, and calls that an older toolkit may
// lack.  Every dlopen and dlsym of the runtime is here, so that a missing
// library or function is told one way: "Missing shared library <name>"
// once per library, "Could not resolve function '<function>' in <library>"
// per function, both as assertion reports.
#include <string>

namespace kelp {

struct SoftLibrary {
    SoftLibrary *next = nullptr;
    std::string name;
    void *handle = nullptr; // null when it couldn't be loaded

    // The function's address, or null after the report (none when quiet:
    // the caller reports).  A library that couldn't be loaded answers null
    // without a second report.
    void *Symbol(const std::string &function, bool quiet = false) const;
};

// The node for a library name (compared without regard to ASCII case),
// loading it on first use; it stays open until the process ends.  A library
// that can't be found is reported once and keeps a node without a handle;
// quiet leaves the report to the caller, who may count many such faults into
// one report.
SoftLibrary &OpenSoftLibrary(const std::string &name, bool quiet = false);

// A function of code the process has loaded already (the program and the
// libraries it links), else of `library` when that is loaded; never loads
// anything.  Null without a report: for calls the caller can do without.
void *FindLoadedSymbol(const char *library, const char *function);

// An optional library, for a feature that is simply absent without it (sound
// without a decoder or a device): the handle of `path`, or null; nothing is
// reported either way.  It stays open until the process ends.
void *OpenOptionalLibrary(const char *path);
// A library as compiled code names it for a binding at run time: the name as
// given, then under /usr/local/lib and /usr/lib, then each of those with
// ".so"; failing all, a linker script of that name (the ".so" files that
// development packages install) is read and the libraries of its GROUP are
// tried in turn.  Null when none opens; nothing is reported.
void *OpenLibraryByItsForms(const std::string &library);

// A function of an optional library, or null, without a report.
void *OptionalSymbol(void *handle, const char *function);

// A plug-in library at `path`, or null with the loader's own text in
// `error`; the caller reports.  Closed by ClosePluginLibrary.
void *OpenPluginLibrary(const std::string &path, std::string &error);
// The library's function, or null with the loader's text in `error`.
void *PluginLibrarySymbol(void *handle, const char *function, std::string &error);
void ClosePluginLibrary(void *handle);

} // namespace kelp
