/* The runtime's export table exports, as compiled code calls them. */
#ifndef KELP_IMAGE_H
#define KELP_IMAGE_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * The export table: the names an image, the intrinsic classes and plug-ins may
 * bind.  Static rows come first, then rows added at run time.  Names compare
 * without regard to ASCII case; where several rows match, the first wins.
 */
int32_t ExportCount(void);
/* The row at index, or null outside 0 .. ExportCount() - 1. */
const RelocEntry *ExportAt(int32_t index);
/* The code bound to name, or null. */
void *LookupExport(const char *name);
/* Adds a row (the name is copied).  A null code is ignored; the same name with
 * the same code is silent; the same name with other code is a failed
 * assertion and changes nothing. */
void AddExport(const char *name, void *code);

/* Base addresses of the running image's code and data, null before one runs. */
void *CodeBase(void);
void *DataBase(void);
/* Names the image function that holds address from the image's symbol table:
 * not 0 when found, with *name the function's name and *offset the distance
 * from its start. */
int LookupCodeSymbol(const void *address, const char **name, uint32_t *offset);

#ifdef __cplusplus
}
#endif

#endif
