// The drill's sounds and pictures, fetched from the image's resources the
// first time each is needed and kept for the life of the process.
#pragma once

#include "kelp/kelp.h"

#include <cstdint>

namespace sumbrook::ui {

enum class Sound : int32_t { Wrong = 0, Click = 2, Right = 3 }; // "WAVE" resource ids

// Starts the sound and returns it (borrowed; null without the resource).
RuntimeObject *Play(Sound sound);

// Bitmap resource `id` (borrowed), or null.
RuntimeObject *Bitmap(int32_t id);

} // namespace sumbrook::ui
