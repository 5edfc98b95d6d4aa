/* The runtime's number exports, as compiled code calls them. */
#ifndef KELP_NUMBERS_H
#define KELP_NUMBERS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Truncates towards zero; NaN gives 0 and values beyond the range give the
 * nearest end of the range. */
int32_t RuntimeFloatToInt(double value);
uint32_t RuntimeFloatToUInt(double value);
double RuntimeIntToFloat(int32_t value);
double RuntimeUIntToFloat(uint32_t value);

#ifdef __cplusplus
}
#endif

#endif
