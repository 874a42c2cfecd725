/* What the foreign peer sends and expects: one typed value per tag, and one error list. */
#ifndef FOREIGN_VALUES_H
#define FOREIGN_VALUES_H

#include "applman.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { kForeignTagCount = 8 };

extern applman_value foreignValues[kForeignTagCount]; /* the index is the tag */

/* A serialised error list of one entry with an argument of each kind; as opaque bytes of a reply. */
enum { kForeignErrorListRoom = 256 };
u_int foreignErrorList(char room[kForeignErrorListRoom]);

/* True when both records have the same encoding. */
bool_t sameRecord(xdrproc_t routine, const void* left, const void* right);

#ifdef __cplusplus
}
#endif

#endif
