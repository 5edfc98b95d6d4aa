/* Writing an image's own code in C or C++: its entry and its string
 * constants.  Code built this way is linked into an image by `kelp-image
 * link`; docs/image-format.md gives the compiler flags it needs. */
#ifndef KELP_IMAGE_CODE_H
#define KELP_IMAGE_CODE_H

#include "kelp/records.h"

/* The function an image starts in, `void KelpMain(void)`, unless `kelp-image
 * link --entry` names another.  It runs after the image's static data and
 * constructors are set up, and the process's run-down follows its return. */
#define KELP_ENTRY_NAME "KelpMain"

/* A string constant: a stringStorage record that lives as long as the
 * process, laid out the way an image carries its constants, so it costs no
 * allocation and can be handed to any runtime function (text in UTF-8).
 * Its count starts at 1 and that reference is never given back.  The record
 * points at its own text, so the same code works linked into a program too;
 * in an image the binder makes that pointer.
 *
 * KELP_DEFINE_STRING(name, "text") defines one as a static object, whose
 * `&name.record` may stand in static initializers; KELP_STRING("text") is an
 * expression for one. */
#define KELP_DEFINE_STRING(name, text)                                                             \
    static struct {                                                                                \
        stringStorage record;                                                                      \
        uint8_t lengthByte;                                                                        \
        char bytes[sizeof(text)];                                                                  \
    } name __attribute__((section(".kelp.strings"), aligned(KELP_LITERAL_ALIGN))) = {              \
        {1, &name.lengthByte, (uint32_t)sizeof(text) + 1, (int32_t)sizeof(text) - 1,               \
         kEncodingUTF8},                                                                           \
        (uint8_t)(sizeof(text) - 1 > 255 ? 255 : sizeof(text) - 1),                                \
        text}

#define KELP_STRING(text)                                                                          \
    (__extension__({                                                                               \
        KELP_DEFINE_STRING(kelpConstant, text);                                                    \
        &kelpConstant.record;                                                                      \
    }))

#endif
