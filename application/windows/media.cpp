#include "windows/media.h"

#include <map>

namespace sumbrook::ui {

RuntimeObject *Play(Sound sound) {
    static std::map<Sound, RuntimeObject *> kept; // sndWrong, sndClick, sndRight
    auto [it, fresh] = kept.emplace(sound, nullptr);
    if (fresh)
        it->second = RuntimeGetSoundFromResourceManager(int32_t(sound));
    soundPlay(it->second);
    return it->second;
}

RuntimeObject *Bitmap(int32_t id) {
    static std::map<int32_t, RuntimeObject *> kept;
    auto [it, fresh] = kept.emplace(id, nullptr);
    if (fresh)
        it->second = RuntimeGetBitmapFromResourceManager(id);
    return it->second;
}

} // namespace sumbrook::ui
