// Counts what this process allocates with `new`, in the shared libraries as well.
#pragma once

#include <cstdint>

namespace project {

std::uint64_t allocations();

} // namespace project
