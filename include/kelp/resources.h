/* The runtime's resource store exports, as compiled code calls them. */
#ifndef KELP_RESOURCES_H
#define KELP_RESOURCES_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Application version properties, from the image's version block.  Integer
 * selectors: 0 MajorVersion, 1 MinorVersion, 2 BugVersion, 3 StageCode,
 * 4 NonReleaseVersion, 5 RegionCode; -1 without a version block or for
 * another selector.  The words are returned as stored. */
int32_t AppIntegerVersionStuffGetter(RuntimeObject *app, int32_t selector);
/* String selectors: 0 ShortVersion, 1 LongVersion, 2 PackageInfo (UTF-8).
 * A new reference, or null (the empty string). */
stringStorage *AppStringVersionStuffGetter(RuntimeObject *app, int32_t selector);
/* The text of resource ("TEXT", id) as a new string in the system's default
 * encoding; null when there is none. */
stringStorage *RuntimeGetTextFileFromResourceManager(int32_t id);

#ifdef __cplusplus
}
#endif

#endif
