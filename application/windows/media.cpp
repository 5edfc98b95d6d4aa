#include "windows/media.h"

#include <algorithm>
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

void DrawBitmap(RuntimeObject *graphics, int32_t id, int32_t left, int32_t top, int32_t width,
                int32_t height) {
    RuntimeObject *picture = Bitmap(id);
    if (!picture || !graphics)
        return;
    // The part of the picture that falls inside the canvas; a canvas shows
    // its backdrop unscaled from its own top left corner.
    const int32_t w = std::min(width, pictureWidthGetter(picture, 0));
    const int32_t h = std::min(height, pictureHeightGetter(picture, 0));
    RuntimeGraphicsDrawPicture(graphics, picture, left, top, w, h, 0, 0, w, h);
}

} // namespace sumbrook::ui
