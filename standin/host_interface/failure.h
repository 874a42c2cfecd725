// How the host interface's functions fail: a message under the operation's name and a negative result.
#pragma once

#include <cstdint>

#include "error_lists/platform_messages.h"
#include "platform/error_lists.h"

namespace host_interface {

inline constexpr std::int32_t kFailed = -1;

/// A message without arguments.
inline std::int32_t fail(KvCErrorListPool& pool, const char* operation, std::uint32_t code,
                         std::uint32_t line = __builtin_LINE()) noexcept {
    pool.setError(code, line, operation, nullptr);
    return kFailed;
}

/// `what` was to be made.
inline std::int32_t outOfMemory(KvCErrorListPool& pool, const char* operation, const char* what,
                                std::uint32_t line = __builtin_LINE()) noexcept {
    pool.setError(platform_messages::kOutOfMemory, line, operation, "%s", what);
    return kFailed;
}

} // namespace host_interface
