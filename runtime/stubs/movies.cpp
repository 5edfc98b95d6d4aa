// Movies and the movie player: no movie framework here.  No movie opens, so
// the player has nothing to show, and sizes read 0.
#include "stubs/absent.h"

#include "kelp/stubs.h"

KELP_ABSENT(RuntimeObject *, openURLMovie, KelpString)
KELP_ABSENT(RuntimeObject *, RuntimeGetMovieFromResource, RuntimeObject *, int32_t)
KELP_ABSENT(void, RuntimeMovieDestructor, RuntimeObject *)
KELP_ABSENT(int32_t, movieWidthGetter, RuntimeObject *, int32_t)
KELP_ABSENT(int32_t, movieHeightGetter, RuntimeObject *, int32_t)
KELP_ABSENT(int32_t, movieBaseWidthGetter, RuntimeObject *, int32_t)
KELP_ABSENT(int32_t, movieBaseHeightGetter, RuntimeObject *, int32_t)
KELP_ABSENT(void *, movieHandleGetter, RuntimeObject *, int32_t)
KELP_ABSENT(void, RuntimeMediaDestructor, RuntimeObject *)
KELP_ABSENT(void, RuntimeMediaPlay, RuntimeObject *)
KELP_ABSENT(void, RuntimeMediaStop, RuntimeObject *)
KELP_ABSENT(void *, MediaCreatePane, RuntimeObject *, void *)
KELP_ABSENT(void, mediaMovieSetter, RuntimeObject *, int32_t, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, mediaMovieControllerGetter, RuntimeObject *, int32_t)
KELP_ABSENT(void, MediaControllerSetter, RuntimeObject *, int32_t, int32_t)
KELP_ABSENT(int32_t, mediaControllerWidthGetter, RuntimeObject *, int32_t)
KELP_ABSENT(int32_t, mediaControllerHeightGetter, RuntimeObject *, int32_t)
KELP_ABSENT(void, mediaControllerLoopingSetter, RuntimeObject *, int32_t, uint8_t)
KELP_ABSENT(void, mediaControllerPalindromeSetter, RuntimeObject *, int32_t, uint8_t)
KELP_ABSENT(RuntimeObject *, mediaGetBoundPart, RuntimeObject *, KelpString)
KELP_ABSENT(void, mediaActionDestructor, RuntimeObject *)
KELP_ABSENT(void, mediaActionPerformAction, RuntimeObject *, RuntimeObject *)
