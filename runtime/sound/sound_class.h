#pragma once
// The Sound class of the authoring language: one field, the implementation.
#include "kelp/records.h"

namespace kelp {

struct ObjectDefinition;
class SoundImp;

struct SoundRecord {
    RuntimeObject object;
    SoundImp *imp; // owned; null only before construction
};

ObjectDefinition *SoundDefinition();

// Gives a Sound object its file: the path and the offset of the sound's
// first byte in it.
void SetSound(RuntimeObject *sound, const char *path, uint32_t offset);

} // namespace kelp
