// What can go wrong with a call on purpose: one row per kind of fault.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "rpc_server/rpc_server.h"

namespace simulated_target {

/// An answer that is about to be sent.
struct Answer {
    std::uint32_t program;
    std::uint32_t procedure;
    kvrpc::Delivery& delivery;
    std::chrono::milliseconds delay{0};                // before it is sent
    bool overtaken = false;                            // it is sent behind the connection's next answer
    std::optional<std::chrono::milliseconds> reboot{}; // afterwards; the time that the target is away
};

struct FaultKind {
    enum class Value : std::uint8_t { none, optional, required };

    const char* name;
    Value takes;
    std::uint32_t defaultValue; // of an optional value
    /// Answers the call in place of carrying it out. Null when it is carried out.
    kvrpc::RpcReply (*answer)(const kvrpc::RpcCall& call, std::uint32_t value);
    /// Spoils the answer. Null when it goes out as it is.
    void (*spoil)(Answer& answer, std::uint32_t value);
};

/// A fault that was asked for.
struct Fault {
    const FaultKind* kind; // a row of the one table, in which the rows stand in the order in which they apply
    std::uint32_t value;
};

/// "delay=100", "hang".
std::string faultText(const Fault& fault);

/// Null when there is no such kind.
const FaultKind* findFaultKind(std::string_view name) noexcept;

} // namespace simulated_target
