// What every server of the benchmarks answers when it is asked for a word of an application, so that each answer can be
// checked and servers need no state.
#pragma once

#include <cstdint>

namespace bench {

enum class Outcome : std::uint8_t { value, refused, timedOut, failed };

/// Every second application is refused, one in 4,000 is never answered.
constexpr Outcome outcomeOf(std::uint32_t applId) noexcept {
    if (applId % 2 == 1) { return Outcome::refused; }
    return applId % 4000 == 2 ? Outcome::timedOut : Outcome::value;
}

constexpr std::uint32_t valueOf(std::uint32_t applId) noexcept { return applId * 2654435761U ^ 0x5BD1E995U; }

/// Numbers one after the other of applications that are answered with their value.
constexpr std::uint32_t answeredApplication(std::uint64_t number) noexcept {
    return static_cast<std::uint32_t>(4 * (number % 0x3FFFFFFF + 1));
}

} // namespace bench
