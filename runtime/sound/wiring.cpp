#include "sound/wiring.h"

#include "objects/definitions.h"
#include "sound/sound_class.h"

namespace kelp {

void WireSound() { AddIntrinsicClassAccessor(&SoundDefinition); }

} // namespace kelp
