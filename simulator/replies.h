// Replies as every procedure of the application manager makes them.
#pragma once

#include "error_lists/error_list_access.h"
#include "protocol/records.h"
#include "simulator/commands.h"

namespace simulated_target {

inline constexpr std::int32_t kRefused = -1;

inline applman::ErrorListBytes errorList(const Failure& failure) {
    return failure ? KvErrorListAccess::serialize({*failure}) : applman::ErrorListBytes{};
}

inline applman::TApplManResult resultOf(const Failure& failure, std::int32_t whenFailed = kRefused) {
    return {.result = failure ? whenFailed : 0, .errorList = errorList(failure)};
}

} // namespace simulated_target
