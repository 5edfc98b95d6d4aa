#pragma once
// TextEncoding objects: one shared object per encoding word.
#include "kelp/records.h"

#include <cstdint>

namespace kelp {

struct ObjectDefinition;
ObjectDefinition *TextEncodingDefinition();
ObjectDefinition *TextConverterDefinition();
ObjectDefinition *EncodingsModuleDefinition();
// _Encodings: the same properties on the class of GetEncodingsObject.
ObjectDefinition *EncodingsClassDefinition();

// The word of base, variant and format: UTF-8 (base 256, format 2) is the
// single word 0x08000100, every other encoding is named by its base.
uint32_t EncodingWordOf(uint32_t base, uint32_t variant, uint32_t format);

// The TextEncoding of a word, made on first use and kept for the process
// (a new reference each time); null for the unknown word.
RuntimeObject *SharedTextEncoding(uint32_t word);

// The word a TextEncoding stands for; unknown for null.
uint32_t WordOfEncodingObject(RuntimeObject *encoding);

} // namespace kelp
