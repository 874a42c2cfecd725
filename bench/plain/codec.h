// Scenarios of encoding and decoding with plain loops: seconds.
#pragma once

#include "harness/scenario.h"

namespace plain {

void measureThreeWords(const bench::Arguments& arguments);
void measureWords(const bench::Arguments& arguments);
void measureTexts(const bench::Arguments& arguments);
void measureBytes(const bench::Arguments& arguments);

} // namespace plain
