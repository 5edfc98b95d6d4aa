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

#ifdef __cplusplus
}
#endif

#endif
