// Speech and instrument notes.  Speaking needs a speech engine and a note a
// General MIDI synthesizer with its instrument bank; this platform promises
// neither, and a made-up voice or a plain beep in place of a chosen
// instrument would be a different sound from the one the program asked for.
// So Speak is silent and a NotePlayer exists but plays nothing.
#include "stubs/absent.h"

#include "kelp/stubs.h"

KELP_ABSENT(void, RuntimeSpeak, KelpString, uint8_t)
KELP_ABSENT(void, RuntimeNotePlayerConstructor, RuntimeObject *)
KELP_ABSENT(void, RuntimeNotePlayerDestructor, RuntimeObject *)
KELP_ABSENT(void, notePlayerInstrumentSetter, RuntimeObject *, int32_t, int32_t)
KELP_ABSENT(void, notePlayerPlayNote, RuntimeObject *, int32_t, int32_t)
