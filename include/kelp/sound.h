/* Sound: playback of sound files and of the image's "WAVE" resources, as
 * compiled code calls it.  Nothing here reports an error: where there is no
 * decoder, no device or no readable file, the sound is simply silent and
 * IsPlaying is false. */
#ifndef KELP_SOUND_H
#define KELP_SOUND_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Initialiser and finaliser of Sound: a new silent implementation; deleting
 * it lets a sound that is playing play to its end. */
void RuntimeSoundConstructor(RuntimeObject *sound);
void RuntimeSoundDestructor(RuntimeObject *sound);
/* Play from the beginning (again, when playing); PlayLooping starts over at
 * the end; Stop cuts the sound off.  Harmless on a sound without a file. */
void soundPlay(RuntimeObject *sound);
void soundPlayLooping(RuntimeObject *sound);
void soundStop(RuntimeObject *sound);
/* 1 while the sound is being given to the device or still heard, else 0. */
uint8_t soundIsPlaying(RuntimeObject *sound);
/* Volume 0 to 100 and Pan -100 (left) to 100 (right), clamped; they are
 * the machine's master level, shared by every sound. */
int32_t SoundVolumeGetter(RuntimeObject *sound, int32_t parameter);
void SoundVolumeSetter(RuntimeObject *sound, int32_t parameter, int32_t volume);
int32_t SoundPanGetter(RuntimeObject *sound, int32_t parameter);
void SoundPanSetter(RuntimeObject *sound, int32_t parameter, int32_t pan);
/* A new Sound on the same file with the same level; a new reference. */
RuntimeObject *SoundClone(RuntimeObject *sound);
/* A new Sound for resource ("WAVE", id), or null when the image has none.
 * Each call writes the sound to a new temporary file, removed when the
 * program ends; the caller owns the reference. */
RuntimeObject *RuntimeGetSoundFromResourceManager(int32_t id);

#ifdef __cplusplus
}
#endif

#endif
