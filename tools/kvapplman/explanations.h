// What each message and each status means. The data are written by scripts/errors; the source to edit is
// docs/errors.md.in.
#pragma once

#include <cstdint>
#include <span>

namespace tool {

struct Explanation {
    const char* name;      ///< of the constant; TARGET_… for a target's message that has none
    const char* kind;      ///< "message" or "status"
    std::uint32_t code;    ///< of a status the two's complement
    const char* text;      ///< of a message its text with places %1, %2, …; of a status a few words
    const char* arguments; ///< what the places stand for, with commas between; empty when there are none
    const char* meaning;
    const char* causes;
    const char* action;
    const char* functions; ///< that can give it
};

/// All of them, each name once and each code once, grouped as on the page docs/errors.md.
std::span<const Explanation> explanations() noexcept;

} // namespace tool
