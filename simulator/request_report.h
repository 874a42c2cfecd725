// What became of a request, for those who watch a target.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "rpc_server/rpc_server.h"

namespace simulated_target {

struct ReportedMessage {
    std::uint32_t code = 0;
    std::string text{};
};

struct RequestReport {
    std::uint64_t number = 0; // of the target's requests, from 1
    std::chrono::system_clock::time_point time{};
    std::string peer{}; // "a.b.c.d:port"
    std::uint32_t program = 0;
    std::uint32_t procedure = 0;
    std::optional<std::uint32_t> application{}; // that it is about; 0 = the application manager itself
    std::optional<std::uint32_t> parameter{};
    std::vector<std::string> faults{}; // that were applied, "delay=100"
    // What the target itself has answered, whatever a fault has made of it then.
    kvrpc::AcceptStatus status = kvrpc::AcceptStatus::success;
    std::optional<std::int32_t> result{}; // none when the answer has none
    std::vector<ReportedMessage> messages{};
    std::chrono::microseconds duration{}; // until the answer goes out
};

/// The messages of a serialised list.
std::vector<ReportedMessage> messagesOf(kvrpc::ByteSpan list);

/// All that is known when a request has arrived.
RequestReport reportOf(const kvrpc::RpcCall& call, std::uint64_t number);

/// Adds what the target answers.
void addAnswer(RequestReport& report, const kvrpc::RpcReply& reply);

} // namespace simulated_target
