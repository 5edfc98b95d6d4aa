/* The runtime's random source, as compiled code calls it. */
#ifndef KELP_RANDOM_H
#define KELP_RANDOM_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A double from 0 up to but not including 1.  The first call seeds the
 * generator from the clock. */
double rnd(void);

/* Seeds the generator as the first call of rnd would, with `seed` in place of
 * the clock: the state becomes seed & 0x7FFFFFFF (1 if that is 0), and seven
 * results are thrown away.  Lets a tester repeat a sequence. */
void RuntimeRandomSeed(uint32_t seed);

/* The Random class: a generator of its own per object.  A new object is
 * seeded from the system's entropy; setting Seed restarts a sequence, and
 * Randomize seeds afresh.  A nil object raises NilObjectException. */
void RandomConstructor(RuntimeObject *self);
void RandomDestructor(RuntimeObject *self);
void RandomSeedSetter(RuntimeObject *self, int32_t unused, int32_t seed);
void RandomizeSeed(RuntimeObject *self);
/* From 0 up to but not including 1. */
double RandomNumber(RuntimeObject *self);
/* From low to high, both included, whichever order they come in. */
int32_t RandomNumberInRangeMinMax(RuntimeObject *self, int32_t low, int32_t high);
/* From 0 to limit - 1; 0 when limit is not positive. */
int32_t RandomNumberLessThan(RuntimeObject *self, int32_t limit);

#ifdef __cplusplus
}
#endif

#endif
