// The per-class entry points of the captioned controls' caption and font.
// The library's own property rows share one setter per kind with a
// selector; an image binds one name per class and property instead, so
// each name here fixes the selector and forwards to the shared path, and
// what the widget shows stays decided in one place.
#include "controls/captioned.h"

#include "objects/text.h"

#include "kelp/control_accessors.h"
#include "kelp/controls.h"

namespace kelp {
namespace {

KelpString CaptionOf(RuntimeObject *self) {
    KelpString caption = self ? Captioned(self)->caption : nullptr;
    objtext::Retain(caption);
    return caption;
}

KelpString FontNameOf(const ControlFont &font) {
    objtext::Retain(font.textFont);
    return font.textFont;
}

uint8_t StyleOf(const ControlFont &font, int32_t selector) {
    return selector == 0 ? font.bold : selector == 1 ? font.italic : font.underline;
}

} // namespace
} // namespace kelp

using namespace kelp;

// One class's entry points; its Title setter is the class's own caption
// setter under a second name (see exports.inc).
#define KELP_CAPTIONED_ENTRY_POINTS(prefix)                                                        \
    extern "C" KelpString prefix##TitleGetter(RuntimeObject *self, int32_t) {                      \
        return CaptionOf(self);                                                                    \
    }                                                                                              \
    extern "C" KelpString prefix##TextFontGetter(RuntimeObject *self, int32_t) {                   \
        return self ? FontNameOf(Captioned(self)->font) : nullptr;                                 \
    }                                                                                              \
    extern "C" void prefix##TextFontSetter(RuntimeObject *self, int32_t, KelpString value) {       \
        captionFontSetter(self, 0, value);                                                         \
    }                                                                                              \
    extern "C" int32_t prefix##TextSizeGetter(RuntimeObject *self, int32_t) {                      \
        return self ? Captioned(self)->font.textSize : 0;                                          \
    }                                                                                              \
    extern "C" void prefix##TextSizeSetter(RuntimeObject *self, int32_t, int32_t value) {          \
        captionSizeSetter(self, 0, value);                                                         \
    }                                                                                              \
    extern "C" uint8_t prefix##BoldGetter(RuntimeObject *self, int32_t) {                          \
        return self ? StyleOf(Captioned(self)->font, 0) : 0;                                       \
    }                                                                                              \
    extern "C" void prefix##BoldSetter(RuntimeObject *self, int32_t, uint8_t value) {              \
        captionStyleSetter(self, 0, value);                                                        \
    }                                                                                              \
    extern "C" uint8_t prefix##ItalicGetter(RuntimeObject *self, int32_t) {                        \
        return self ? StyleOf(Captioned(self)->font, 1) : 0;                                       \
    }                                                                                              \
    extern "C" void prefix##ItalicSetter(RuntimeObject *self, int32_t, uint8_t value) {            \
        captionStyleSetter(self, 1, value);                                                        \
    }                                                                                              \
    extern "C" uint8_t prefix##UnderlineGetter(RuntimeObject *self, int32_t) {                     \
        return self ? StyleOf(Captioned(self)->font, 2) : 0;                                       \
    }                                                                                              \
    extern "C" void prefix##UnderlineSetter(RuntimeObject *self, int32_t, uint8_t value) {         \
        captionStyleSetter(self, 2, value);                                                        \
    }

KELP_CAPTIONED_ENTRY_POINTS(pushButton)
KELP_CAPTIONED_ENTRY_POINTS(radio)
KELP_CAPTIONED_ENTRY_POINTS(checkBox)
KELP_CAPTIONED_ENTRY_POINTS(group)

extern "C" uint8_t pushButtonDefaultGetter(RuntimeObject *self, int32_t) {
    return self ? Captioned(self)->isDefault : 0;
}

extern "C" uint8_t pushButtonCancelGetter(RuntimeObject *self, int32_t) {
    return self ? Captioned(self)->isCancel : 0;
}
