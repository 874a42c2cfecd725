// A simulated target: application manager and file transfer behind one RPC port, with a store folder of its own.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "rpc_server/rpc_server.h"
#include "simulator/fault_plan.h"
#include "simulator/programs/program_runner.h"
#include "simulator/request_report.h"

namespace simulated_target {

struct Options {
    std::string host = "127.0.0.1";
    std::uint16_t port = 0;        // 0 = any
    std::filesystem::path store{}; // made if need be; empty = none, so that transfers and loads fail
    std::uint32_t cnSerialNumber = 1;
    std::uint32_t initialisationCalls = 1; // parameter 31; 0 = complete load
    std::uint32_t commandTimeout = 10;     // parameter 40, seconds
    std::chrono::milliseconds commandDelay{20};
    std::set<std::uint32_t> lackedProcedures{};               // answered as procedures that are not offered
    std::set<std::uint32_t> lackedParameters{};               // refused with 0x14a00804
    std::set<std::uint32_t> lackedFileTypes{};                // refused with 0x14a01077
    std::map<std::uint32_t, std::string> flashApplications{}; // names by ID
    std::uint32_t coreCount = 4;               // processor cores, numbered from 1, unless it runs programs
    bool recordRequests = true;                // the record grows until it is forgotten
    std::vector<FaultRule> faults{};           // what goes wrong on purpose
    std::shared_ptr<ProgramRunner> programs{}; // runs what is loaded; null = it is only stored
    /// Called when a request has been answered, by connections' threads, several at once; must not throw.
    std::function<void(const RequestReport&)> onRequest{};
};

/// A call that arrived for the application-manager program.
struct Request {
    std::uint32_t procedure{};
    std::vector<std::uint8_t> arguments{};
};

/// What the target answers in place of its own reply.
struct ScriptedReply {
    kvrpc::RpcReply reply{};
    std::chrono::milliseconds delay{0}; // before it answers
};

class SimulatedTarget {
public:
    /// Throws std::system_error when the store cannot be used.
    explicit SimulatedTarget(Options options);
    ~SimulatedTarget(); // stops
    SimulatedTarget(const SimulatedTarget&) = delete;
    SimulatedTarget& operator=(const SimulatedTarget&) = delete;

    /// Listens. Throws std::system_error when it cannot. Result: "a.b.c.d:port".
    std::string start();
    void stop() noexcept;

    /// Closes every connection, keeps listening; what the target holds stays.
    void dropConnections() noexcept;

    std::uint64_t acceptedConnections() const noexcept;

    /// Closes every connection, forgets everything but the files in its store, and listens again when it was away for
    /// so long. Nothing when it does not listen. Not to be called by its own connections.
    void reboot(std::chrono::milliseconds away = std::chrono::milliseconds{0});

    /// Lets a process that runs or is paused end by itself. False when there is none.
    bool crash(std::uint32_t applId);

    /// All that the target holds, as a JSON object in one line; docs/target.md has the fields.
    std::string state() const;

    /// Faults beside those of the options; they count calls from now on.
    void addFault(FaultRule rule);
    void clearFaults(); // those of the options as well
    std::uint64_t faultyCalls() const;
    std::vector<RuleCount> ruleCounts() const; // in the order in which the rules were given

    /// The application-manager requests that arrived, in the order of arrival.
    std::vector<Request> requests() const;
    void forgetRequests();

    /// The next calls of a procedure that have no reply yet get these, in order; then the target answers by itself
    /// again. The request is recorded and otherwise ignored.
    void script(std::uint32_t procedure, ScriptedReply reply);

    /// Every later call of a procedure gets this reply, once those of `script` are used up.
    void scriptAlways(std::uint32_t procedure, ScriptedReply reply);
    void forgetScripts();

    /// The local time that a host has set through file-transfer procedure 6; empty before.
    std::string hostTime() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace simulated_target
