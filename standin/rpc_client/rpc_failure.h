// Why a remote call failed, and how the caller's pool is told.
#pragma once

#include <cstdint>
#include <string>

#include "platform/error_lists.h"

namespace kvrpc {

struct Failure {
    enum class Kind : std::uint8_t {
        none,
        connectionRefused,
        unreachable,
        connectTimedOut,
        connectFailed, // detail: the system's error
        callTimedOut,
        lost,
        malformed,
        callRefused, // detail: accept status
        callDenied,  // detail: reject status
        notEncoded,
        unusable, // no address, or no memory
    };
    Kind kind = Kind::none;
    std::int32_t detail = 0;

    explicit operator bool() const noexcept { return kind != Kind::none; }
};

/// Adds the message of a failure.
void report(KvCErrorListPool& pool, const char* operation, const std::string& address, std::uint32_t procedure,
            const Failure& failure, std::uint32_t line = static_cast<std::uint32_t>(__builtin_LINE())) noexcept;

} // namespace kvrpc
