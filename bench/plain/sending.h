// Scenarios of files that go over a plain socket to bench_files_server.
#pragma once

#include "harness/scenario.h"

namespace plain {

void measureFile(const bench::Arguments& arguments);
void measureTree(const bench::Arguments& arguments);

} // namespace plain
