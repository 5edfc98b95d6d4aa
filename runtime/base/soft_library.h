#pragma once
// Shared libraries that an image's soft imports name: loaded once at first
// need, kept open until the process ends.
#include <string>

namespace kelp::image {

struct SharedLibrary {
    SharedLibrary *next = nullptr;
    std::string name;
    void *handle = nullptr; // null when it couldn't be loaded
    void *Symbol(const std::string &function) const;
};

// The node for a library name (compared without regard to case), loading it
// on first use.  A library that can't be found is reported once, with
// "Missing shared library <name>", and keeps a node without a handle.
SharedLibrary &OpenSharedLibrary(const std::string &name);

} // namespace kelp::image
