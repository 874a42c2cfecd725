// Scenarios of files that go to targets.
#pragma once

#include "harness/scenario.h"

namespace project {

void measureFile(const bench::Arguments& arguments);
void measureTree(const bench::Arguments& arguments);
void measureGroup(const bench::Arguments& arguments);

} // namespace project
