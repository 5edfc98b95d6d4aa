#include "stream_classes/string_mechanism.h"

namespace kelp {

bool StringStorageMechanism::Close() {
    mText = string();
    mBase = nullptr;
    mLength = 0;
    mPosition = 0;
    return true;
}

} // namespace kelp
