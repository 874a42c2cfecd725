// Scenarios of encoding and decoding with the project's own routines: seconds.
#pragma once

#include "harness/scenario.h"

namespace project {

void measureThreeWords(const bench::Arguments& arguments);
void measureWords(const bench::Arguments& arguments);
void measureTexts(const bench::Arguments& arguments);
void measureBytes(const bench::Arguments& arguments);

} // namespace project
