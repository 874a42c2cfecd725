// Replies as every procedure of the application manager makes them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "error_lists/error_list_access.h"
#include "protocol/records.h"
#include "simulator/commands.h"

namespace simulated_target {

inline constexpr std::int32_t kRefused = -1;
inline constexpr std::ptrdiff_t kCountSize = 4; // bytes

inline applman::ErrorListBytes errorList(const Failure& failure) {
    return failure ? KvErrorListAccess::serialize({*failure}) : applman::ErrorListBytes{};
}

/// The entry, and behind it those of a list that was made here: fewer than 256, which the last byte of its first word counts.
inline applman::ErrorListBytes inFront(const KvErrorListEntry& entry, const applman::ErrorListBytes& list) {
    constexpr std::size_t kWord = 4;
    applman::ErrorListBytes whole = KvErrorListAccess::serialize({entry});
    if (list.size() < kWord) { return whole; }
    whole[kWord - 1] = static_cast<std::uint8_t>(whole[kWord - 1] + list[kWord - 1]);
    whole.insert(whole.end(), list.begin() + kWord, list.end());
    return whole;
}

inline applman::TApplManResult resultOf(const Failure& failure, std::int32_t whenFailed = kRefused) {
    return {.result = failure ? whenFailed : 0, .errorList = errorList(failure)};
}

} // namespace simulated_target
