// Scenarios of encoding and decoding with the routines that rpcgen makes of docs/applman.x: seconds.
#pragma once

#include "harness/scenario.h"

namespace tirpc {

void measureThreeWords(const bench::Arguments& arguments);
void measureWords(const bench::Arguments& arguments);
void measureTexts(const bench::Arguments& arguments);
void measureBytes(const bench::Arguments& arguments);

} // namespace tirpc
