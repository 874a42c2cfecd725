#include "rpc_client/rpc_failure.h"

#include "error_lists/platform_messages.h"

namespace kvrpc {

using namespace platform_messages;

namespace {

/// Added to the status with which a target denies a call altogether, so that the message tells it from an accept status.
constexpr std::uint32_t kDenied = 100;

} // namespace

void report(KvCErrorListPool& pool, const char* operation, const std::string& address, std::uint32_t procedure,
            const Failure& failure, std::uint32_t line) noexcept {
    const char* const target = address.c_str();
    const auto ofTarget = [&](std::uint32_t code) { pool.setError(code, line, operation, "%s", target); };
    const auto ofCall = [&](std::uint32_t code) { pool.setError(code, line, operation, "%s%u", target, procedure); };
    const auto refused = [&](std::uint32_t status) {
        pool.setError(kRpcCallRefused, line, operation, "%s%u%u", target, procedure, status);
    };
    switch (failure.kind) {
    case Failure::Kind::none:
        return;
    case Failure::Kind::connectionRefused:
        return ofTarget(kRpcConnectionRefused);
    case Failure::Kind::unreachable:
        return ofTarget(kRpcHostUnreachable);
    case Failure::Kind::connectTimedOut:
        return ofTarget(kRpcConnectTimedOut);
    case Failure::Kind::connectFailed:
        return pool.setError(kRpcConnectFailed, line, operation, "%s%d", target, failure.detail);
    case Failure::Kind::callTimedOut:
        return ofCall(kRpcCallTimedOut);
    case Failure::Kind::lost:
        return ofCall(kRpcConnectionLost);
    case Failure::Kind::malformed:
        return ofCall(kRpcReplyMalformed);
    case Failure::Kind::callRefused:
        return refused(static_cast<std::uint32_t>(failure.detail));
    case Failure::Kind::callDenied:
        return refused(kDenied + static_cast<std::uint32_t>(failure.detail));
    case Failure::Kind::notEncoded:
        return ofCall(kRpcRequestNotEncoded);
    case Failure::Kind::unusable:
        return ofTarget(kRpcClientUnusable);
    }
}

} // namespace kvrpc
