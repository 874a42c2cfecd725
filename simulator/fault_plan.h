// Which calls of a target go wrong, and how.
#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/faults.h"

namespace simulated_target {

/// Faults for the calls `first` to `last` of a procedure, of these every `every`-th. Calls are counted per rule, from 1.
struct FaultRule {
    std::optional<std::uint32_t> program{}; // none = any
    std::optional<std::uint32_t> procedure{};
    std::uint32_t first = 1;
    std::uint32_t last = std::numeric_limits<std::uint32_t>::max();
    std::uint32_t every = 1;
    std::vector<Fault> faults{};
    std::string text{}; // as it was read; empty for a rule that was not
};

/// How often a rule has fired.
struct RuleCount {
    std::string rule{};      // its text
    std::uint64_t calls = 0; // that it names
    std::uint64_t fired = 0; // of these
};

/// What is wrong with the text of a rule, to be shown to its user.
struct BadFault : std::invalid_argument {
    using std::invalid_argument::invalid_argument;
};

/// Reads "CALL[@WHICH]:FAULT[=VALUE][,FAULT[=VALUE]]...", as docs/faults.md describes it. Throws BadFault.
FaultRule parseFault(std::string_view text);

/// The faults of a file, one a line; empty lines and those that begin with # are passed over. Throws BadFault.
std::vector<FaultRule> readFaultFile(const std::string& path);

/// May be asked by several threads at once.
class FaultPlan {
public:
    explicit FaultPlan(std::vector<FaultRule> rules);

    void add(FaultRule rule);
    void clear();
    bool empty();

    /// Counts a call. Result: its faults, in the order in which they apply.
    std::vector<Fault> due(const kvrpc::RpcCall& call);
    /// How many calls had faults so far.
    std::uint64_t faultyCalls();
    std::vector<RuleCount> counts();

    /// Holds an answer back until the connection's next one.
    void hold(std::uint64_t connection, kvrpc::Bytes answer);
    /// What is held, and is held no more. Empty when there is nothing.
    kvrpc::Bytes release(std::uint64_t connection);

private:
    struct Counted {
        FaultRule rule;
        std::uint64_t calls = 0;
        std::uint64_t fired = 0;
    };

    std::mutex mutex_{}; // guards what follows
    std::vector<Counted> rules_{};
    std::uint64_t faultyCalls_ = 0;
    std::map<std::uint64_t, kvrpc::Bytes> held_{}; // by connection
};

} // namespace simulated_target
