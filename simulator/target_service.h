// What stands behind a target's port: both programs, the faults that were asked for, the replies that tests prescribe, and
// the record of requests.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

#include "simulator/application_manager.h"
#include "simulator/fault_plan.h"
#include "simulator/file_service.h"
#include "simulator/simulated_target.h"

namespace simulated_target {

class TargetService : public kvrpc::RpcService {
public:
    using RebootRequest = std::function<void(std::chrono::milliseconds away)>;

    /// Throws std::system_error when the store cannot be used. `rebootWanted` is called by connections' threads.
    explicit TargetService(const Options& options, RebootRequest rebootWanted = {});

    kvrpc::RpcReply handle(const kvrpc::RpcCall& call) override;
    void connectionClosed(std::uint64_t connection) noexcept override;

    /// Ends the delays of replies, present and future ones, until it is taken back.
    void hurry(bool on) noexcept;

    /// Everything but the files in the store. No call may be under way.
    void forgetEverything();

    FaultPlan& faults() noexcept { return faults_; }
    ApplicationManager& manager() noexcept { return *manager_; }
    std::uint64_t requestCount() const noexcept { return requestCount_; }

    std::vector<Request> requests() const;
    void forgetRequests();
    void script(std::uint32_t procedure, ScriptedReply reply);
    void scriptAlways(std::uint32_t procedure, ScriptedReply reply);
    void forgetScripts();
    std::string hostTime() const { return files_->hostTime(); }

private:
    kvrpc::RpcReply answer(const kvrpc::RpcCall& call, const std::vector<Fault>& faults);
    kvrpc::RpcReply carryOut(const kvrpc::RpcCall& call);
    kvrpc::RpcReply manage(const kvrpc::RpcCall& call);
    /// Result: how long the target is to be away afterwards; none when it stays.
    std::optional<std::chrono::milliseconds> spoil(const std::vector<Fault>& faults, std::uint64_t connection,
                                                   Answer answer);
    void pause(std::chrono::milliseconds time);
    void record(const kvrpc::RpcCall& call);
    /// Records a call and finds the reply prescribed for it, in one go: the order of the record is that of the replies.
    std::optional<ScriptedReply> admit(const kvrpc::RpcCall& call);

    const Options options_;
    const RebootRequest rebootWanted_;
    const std::optional<Store> store_;
    std::optional<ApplicationManager> manager_{};
    std::optional<FileService> files_{};
    FaultPlan faults_;
    std::atomic<std::uint64_t> requestCount_{0};

    mutable std::mutex mutex_{}; // guards what follows
    std::condition_variable hurried_{};
    bool hurry_ = false;
    std::vector<Request> requests_{};
    std::map<std::uint32_t, std::deque<ScriptedReply>> scripts_{};
    std::map<std::uint32_t, ScriptedReply> lastingScripts_{};
};

} // namespace simulated_target
