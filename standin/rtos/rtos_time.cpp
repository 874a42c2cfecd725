// Sleep and the tick counter, apart from the rest so that tests can put a clock of their own in their place.
#include <chrono>

#include "platform/rtos.h"

#if defined(_WIN32)
#include <memory>

#include <windows.h>

namespace {

struct CloseHandleOfTimer {
    void operator()(void* timer) const noexcept { CloseHandle(timer); }
};
using Timer = std::unique_ptr<void, CloseHandleOfTimer>;

/// A timer of high resolution, which older systems lack: a plain sleep of 1 ms may last a scheduler tick of 16 ms.
Timer makeTimer() noexcept {
    constexpr DWORD kHighResolution = 0x2;
    if (void* const timer = CreateWaitableTimerExW(nullptr, nullptr, kHighResolution, TIMER_ALL_ACCESS)) {
        return Timer{timer};
    }
    return Timer{CreateWaitableTimerExW(nullptr, nullptr, 0, TIMER_ALL_ACCESS)};
}

} // namespace

void KvNRtosAbstraction::usleep(std::uint32_t microseconds) noexcept {
    const Timer timer = makeTimer();
    LARGE_INTEGER due{};
    due.QuadPart = -10 * static_cast<LONGLONG>(microseconds); // relative, in 100 ns
    if (timer && SetWaitableTimer(timer.get(), &due, 0, nullptr, nullptr, FALSE)) {
        WaitForSingleObject(timer.get(), INFINITE);
    } else {
        Sleep(microseconds / 1000 + 1);
    }
}
#else
#include <thread>

void KvNRtosAbstraction::usleep(std::uint32_t microseconds) noexcept {
    std::this_thread::sleep_for(std::chrono::microseconds{microseconds});
}
#endif

std::uint64_t KvRtosAbstractionTime_getTicks64() noexcept {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(sinceStart).count());
}

std::uint64_t KvRtosAbstractionTime_getTicksPerSec() noexcept { return 1'000'000; }
