// Replies as every procedure of the application manager makes them.
#pragma once

#include <cstdint>
#include <span>

#include "error_lists/error_list_access.h"
#include "protocol/records.h"
#include "simulator/commands.h"

namespace simulated_target {

inline constexpr std::int32_t kRefused = -1;
inline constexpr std::ptrdiff_t kCountSize = 4; // bytes

inline applman::ErrorListBytes errorList(const Failure& failure) {
    return failure ? KvErrorListAccess::serialize({*failure}) : applman::ErrorListBytes{};
}

/// The entry and what a serialised list has. A list begins with the number of its entries.
inline applman::ErrorListBytes inFront(const KvErrorListEntry& entry, std::span<const std::uint8_t> list) {
    std::uint32_t count = 0;
    Xdr old = Xdr::decoder(list);
    xdr_u_int(old, count); // of an empty text none
    ++count;
    applman::ErrorListBytes bytes;
    Xdr whole = Xdr::encoder(bytes);
    xdr_u_int(whole, count);
    const applman::ErrorListBytes first = KvErrorListAccess::serialize({entry});
    bytes.insert(bytes.end(), first.begin() + kCountSize, first.end());
    bytes.insert(bytes.end(), list.end() - static_cast<std::ptrdiff_t>(old.left()), list.end());
    return bytes;
}

inline applman::TApplManResult resultOf(const Failure& failure, std::int32_t whenFailed = kRefused) {
    return {.result = failure ? whenFailed : 0, .errorList = errorList(failure)};
}

} // namespace simulated_target
