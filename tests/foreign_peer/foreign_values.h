/* What the foreign peer sends and expects: one typed value per tag. */
#ifndef FOREIGN_VALUES_H
#define FOREIGN_VALUES_H

#include "applman.h"

enum { kForeignTagCount = 8 };

extern applman_value foreignValues[kForeignTagCount]; /* the index is the tag */

/* True when both records have the same encoding. */
bool_t sameRecord(xdrproc_t routine, const void* left, const void* right);

#endif
