// A clock for tests that takes the place of the RTOS layer's: it stands still but for naps, which it records.
#pragma once

#include <cstdint>
#include <vector>

namespace recorded_clock {

/// Forgets the naps and sets the tick counter. It counts 1,000 ticks a second.
void restart(std::uint64_t ticks = 0);

/// The naps taken since the restart, in microseconds.
std::vector<std::uint32_t> naps();

} // namespace recorded_clock
