#pragma once
// The image reader: finds the application image behind the executable's own
// bytes (or the loose segment files in the current folder), maps and binds
// its code, records its resources and options, and enters it.
#include "image/binder.h"
#include "image/image_format.h"

#include <string>

namespace kelp::image {

using EntryPoint = void (*)();

enum class Placement {
    kNearRuntime, // where relative calls reach the runtime directly
    kFar          // far from the runtime, so that every call goes through a stub
};

struct PreparedImage {
    EntryPoint entry = nullptr; // null when there is no code
    uint8_t *code = nullptr;
    size_t codeSize = 0;
    uint8_t *data = nullptr;
    size_t dataSize = 0;
    BindCounts counts;
};

// Maps the code, binds it, makes it read-and-execute, records resources and
// options.  The segments are kept until the process ends.  Becomes the image
// that CodeBase, DataBase and LookupCodeSymbol describe.  False, with error,
// when the code can't be mapped.
bool PrepareImage(Segments &&segments, PreparedImage &out, std::string &error,
                  Placement placement = Placement::kNearRuntime);

// The file that holds the running executable: argv0 when it names a path,
// otherwise the operating system's own link to it.
std::string ExecutablePath(const char *argv0);

// Reads, binds and enters the image.  With builtinEntry, that entry runs in
// place of the image's own (segments behind the executable, when any, are
// still bound and recorded).  Returns the process status: 0 when an entry
// ran, 1 when there was no image or it was damaged (after a one-line message).
int LoadApplicationImage(const char *argv0, EntryPoint builtinEntry);

} // namespace kelp::image
