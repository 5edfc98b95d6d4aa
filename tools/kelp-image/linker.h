#pragma once
// kelp-image link: x86_64 relocatable objects in, one application image out.
//
// The objects' code and read-only data become the code segment, their
// writable data the data segment.  Every address the objects leave open is
// turned into something the runtime's binder can fill in: a runtime export
// into an import hole, a function of a system library into a soft import, an
// address in the image into a code or data reference, a string constant into
// a string reference.  What cannot be expressed that way is an error naming
// the object, the section and the symbol, and no image is made.
#include "image/image_format.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kelp::tool {

struct SoftFunction {
    std::string function, library;
};

struct LinkInput {
    std::vector<std::string> objects;
    std::vector<SoftFunction> soft;     // --soft FUNCTION:LIBRARY
    std::vector<SoftFunction> softData; // --soft-data VARIABLE:LIBRARY
    std::string entry = "KelpMain";     // reached from code offset 0
    std::vector<std::string> exports;   // the names the runtime's binder offers
};

struct LinkStats {
    size_t objectBytes = 0;  // the objects' files
    size_t imports = 0;      // import records
    size_t softImports = 0;  // soft import records
    size_t references = 0;   // data, code and string reference records
    size_t startWords = 0;   // writable data words set before the entry runs
    size_t constructors = 0; // static constructors run before the entry
    size_t variables = 0;    // library variables copied in at the start
};

// Links the objects into the code, data, link table and symbol segments of
// out.  False with error, one line, when anything cannot be expressed.
bool LinkObjects(const LinkInput &input, image::Segments &out, LinkStats &stats,
                 std::string &error);

} // namespace kelp::tool
