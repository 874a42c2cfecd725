#include "support/recorded_clock.h"

#include <mutex>

#include "platform/rtos.h"

namespace {

std::mutex mutex;
std::vector<std::uint32_t> recordedNaps;
std::uint64_t microseconds = 0;

} // namespace

void recorded_clock::restart(std::uint64_t ticks) {
    const std::lock_guard lock{mutex};
    recordedNaps.clear();
    microseconds = ticks * 1000;
}

std::vector<std::uint32_t> recorded_clock::naps() {
    const std::lock_guard lock{mutex};
    return recordedNaps;
}

void KvNRtosAbstraction::usleep(std::uint32_t duration) noexcept {
    const std::lock_guard lock{mutex};
    recordedNaps.push_back(duration);
    microseconds += duration;
}

std::uint64_t KvRtosAbstractionTime_getTicks64() noexcept {
    const std::lock_guard lock{mutex};
    return microseconds / 1000;
}

std::uint64_t KvRtosAbstractionTime_getTicksPerSec() noexcept { return 1000; }
